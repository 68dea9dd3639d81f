#pragma once

#include <QFileSystemWatcher>
#include <QObject>
#include <QStringList>
#include <QTimer>

namespace NVB {
class DefaultSettings;
}

namespace NVB::Engine {

class Notifier;

// Keeps the engine's view of the default settings current while it runs.
// The console writes the settings file by renaming a new one over it, which
// ends a watch on the file itself, so the folder is watched too and the file
// is watched again whenever it reappears. A change is read after a short
// pause (one save may touch the file more than once), applied, announced to
// the consoles by System::DefaultSettingsChanged and signalled by changed().
class SettingsWatcher : public QObject
{
    Q_OBJECT

public:
    SettingsWatcher(NVB::DefaultSettings* settings, Notifier* notifier, QObject* parent = nullptr);

    // Applies the values in use now; called once at start.
    void applyAll();
    // Reads the file now rather than after the pause.
    void reload();

    // The local bandwidth as bytes per second, 0 for none, from the stored
    // KByte/s text ("-1" for no limit).
    static qint64 bytesPerSecond(const QString& kiloBytesPerSecond);

signals:
    void changed(const QStringList& keys);

private:
    void watch();
    void apply(const QStringList& keys);

    NVB::DefaultSettings* m_settings;
    Notifier* m_notifier;
    QFileSystemWatcher m_watcher;
    QTimer m_pause;
};

} // namespace NVB::Engine
