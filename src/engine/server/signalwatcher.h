#pragma once

#include <QObject>
#include <QSocketNotifier>

namespace NVB::Engine {

// Turns SIGTERM, SIGINT and SIGHUP into a Qt signal on the event loop, where
// the engine can finish its runs and tell the consoles before it exits.
class SignalWatcher : public QObject
{
    Q_OBJECT

public:
    explicit SignalWatcher(QObject* parent = nullptr);
    ~SignalWatcher() override;

signals:
    void terminationRequested(int signal);

private slots:
    void onReadable();

private:
    static void handler(int signal);

    QSocketNotifier* m_notifier = nullptr;
};

} // namespace NVB::Engine
