#pragma once

#include <QWidget>

class QCheckBox;
class QComboBox;
class QSpinBox;

namespace NVB::GUI::Settings {

// The default retention of the legacy backup format, written through to the
// default-settings store on every change. The age is stored as a duration
// text, days then ".00:00:00".
class RetentionPolicy : public QWidget
{
    Q_OBJECT
public:
    explicit RetentionPolicy(QWidget* parent = nullptr);

    // "60.00:00:00" for 60; the off constant for a negative count.
    static QString durationText(int days);
    // Days of a duration text, or -1 for the off constant or a text without
    // the ".".
    static int durationDays(const QString& text);

    QCheckBox* deleteOlderBox() const { return m_deleteOlder; }
    QSpinBox* ageBox() const { return m_age; }
    QComboBox* ageTypeBox() const { return m_ageType; }
    QComboBox* dateTypeBox() const { return m_dateType; }
    QCheckBox* keepLastBox() const { return m_keepLast; }
    QCheckBox* keepVersionBox() const { return m_keepVersion; }
    QSpinBox* versionsBox() const { return m_versions; }

signals:
    void saveSettings();

public slots:
    void loadSettings();
    void onDeleteVersionStateChanged(int state);
    void onKeepVersionstateChanged(int state);
    void onAgeIntervalTypeChanged();
    void onSaveConfig();

private:
    QCheckBox* m_deleteOlder;
    QSpinBox* m_age;
    QComboBox* m_ageType;
    QComboBox* m_dateType;
    QCheckBox* m_keepLast;
    QCheckBox* m_keepVersion;
    QSpinBox* m_versions;
};

} // namespace NVB::GUI::Settings
