#pragma once

#include <QStringList>
#include <QWidget>

class QCheckBox;
class QComboBox;

namespace NVB::GUI::Settings {

// Upload and download speed limits for cloud and for local storage, in
// KByte/s; "-1" in the store means no limit.
class Bandwidth : public QWidget
{
    Q_OBJECT
public:
    // The speeds offered in the lists, KByte/s.
    static const QStringList Speed;

    explicit Bandwidth(QWidget* parent = nullptr);

    QCheckBox* cloudBox() const { return m_cloudBox; }
    QComboBox* cloudSpeed() const { return m_cloudSpeed; }
    QCheckBox* localBox() const { return m_localBox; }
    QComboBox* localSpeed() const { return m_localSpeed; }

signals:
    void saveSettings();

public slots:
    void loadSettings();
    void onSaveSettings();

private:
    QWidget* makeGroup(const QString& title, QCheckBox* box, QComboBox* speed);

    QCheckBox* m_cloudBox;
    QComboBox* m_cloudSpeed;
    QCheckBox* m_localBox;
    QComboBox* m_localSpeed;
};

} // namespace NVB::GUI::Settings
