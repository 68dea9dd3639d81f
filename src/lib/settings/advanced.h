#pragma once

#include <QMap>
#include <QWidget>

#include "core/logmanager.h"

class QComboBox;
class QLabel;
class QSpinBox;

namespace NVB::GUI::Settings {

class PathSelector;

// The "Advanced" tab: how hard a backup may work, and where and how much
// it logs.
class Advanced : public QWidget
{
    Q_OBJECT
public:
    explicit Advanced(QWidget* parent = nullptr);

    QSpinBox* threadBox() const { return m_threads; }
    QSpinBox* chunkBox() const { return m_chunk; }
    QSpinBox* memoryBox() const { return m_memory; }
    QComboBox* logLevelBox() const { return m_logLevel; }
    QSpinBox* rotationBox() const { return m_rotation; }
    PathSelector* logPathSelector() const { return m_logPath; }

public slots:
    void loadSettings();

protected slots:
    void onLogLevelChanged(int index);
    void onLogRotationChanged(int value);

private:
    QMap<int, NVL::LogManager::LogLevel> m_levels;
    QSpinBox* m_threads;
    QSpinBox* m_chunk;
    QSpinBox* m_memory;
    QSpinBox* m_glacierQueue;
    QComboBox* m_logLevel;
    QSpinBox* m_rotation;
    PathSelector* m_logPath;
};

} // namespace NVB::GUI::Settings
