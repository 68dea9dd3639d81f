#pragma once

#include <QWidget>

class QCheckBox;
class QToolButton;

namespace NVB::GUI::Settings {

// The proxy switch of the "Network" tab; the address lives in ProxyDialog.
class Proxy : public QWidget
{
    Q_OBJECT
public:
    explicit Proxy(QWidget* parent = nullptr);

    QCheckBox* useProxyBox() const { return m_useProxy; }
    QToolButton* changeButton() const { return m_change; }

public slots:
    void loadSettings();
    void onSetProxyCheckBoxClicked(bool checked);
    void onChangeProxyButtonClicked();

private:
    QCheckBox* m_useProxy;
    QToolButton* m_change;
};

} // namespace NVB::GUI::Settings
