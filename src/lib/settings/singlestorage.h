#pragma once

#include <QPointer>
#include <QWidget>

class QAbstractItemModel;
class QVBoxLayout;

namespace NVB::GUI::Settings {

// The storage tab of an edition with exactly one account the user may not
// add to: that account's details and a button to edit it.
class SingleStorage : public QWidget
{
    Q_OBJECT
public:
    explicit SingleStorage(QAbstractItemModel* model, QWidget* parent = nullptr);

    QWidget* infoView() const { return m_view; }

public slots:
    void onSettingClicked();

private slots:
    void onModelDataChanged();

private:
    QPointer<QAbstractItemModel> m_model;
    QVBoxLayout* m_layout;
    QWidget* m_view = nullptr;
};

} // namespace NVB::GUI::Settings
