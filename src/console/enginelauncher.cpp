#include "enginelauncher.h"

#include <QDeadlineTimer>
#include <QFileInfo>
#include <QLocalSocket>
#include <QProcess>
#include <QThread>

#include "channel/socketpath.h"
#include "core/defines.h"

namespace NVB::Console {

bool EngineLauncher::isAnswering(int timeoutMs)
{
    QLocalSocket probe;
    probe.connectToServer(NVB::Channel::SocketPath::engine());
    const bool answering = probe.waitForConnected(timeoutMs);
    probe.abort();
    return answering;
}

EngineLauncher::Result EngineLauncher::ensureEngine(QString* message)
{
    if (isAnswering())
        return Result::AlreadyRunning;
    const QString program = SHARED::defines::Path::bin_path() + QStringLiteral("nvbengine");
    if (!QFileInfo(program).isExecutable()) {
        *message = QObject::tr("No engine answers and %1 cannot be started").arg(program);
        return Result::Failed;
    }
    // The engine keeps its own log; it must not hold the console's terminal
    // open once the console has gone.
    QProcess engine;
    engine.setProgram(program);
    engine.setStandardInputFile(QProcess::nullDevice());
    engine.setStandardOutputFile(QProcess::nullDevice());
    engine.setStandardErrorFile(QProcess::nullDevice());
    qint64 pid = 0;
    if (!engine.startDetached(&pid)) {
        *message = QObject::tr("The engine %1 could not be started").arg(program);
        return Result::Failed;
    }
    // The channel reconnects by itself; waiting here only spares the user a
    // first "disconnected" flash.
    QDeadlineTimer deadline(5000);
    while (!deadline.hasExpired()) {
        if (isAnswering(100)) {
            *message = QObject::tr("Started the engine (process %1)").arg(pid);
            return Result::Started;
        }
        QThread::msleep(50);
    }
    *message = QObject::tr("Started the engine (process %1); it does not answer yet").arg(pid);
    return Result::Started;
}

} // namespace NVB::Console
