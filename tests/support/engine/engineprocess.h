#pragma once

#include <QProcess>
#include <QString>
#include <QTemporaryDir>

namespace NvbTest {

// The real engine in a child process, on a socket and a data directory of
// its own, so a test talks to it exactly as the console does. The console
// side of the test is pointed at it by exportSocketPath().
class EngineProcess
{
public:
    // `home` holds the engine's data; by default a fresh temporary folder.
    explicit EngineProcess(const QString& home = QString());
    ~EngineProcess();

    QString home() const { return m_home; }
    QString socketPath() const { return m_home + QStringLiteral("/run/engine.sock"); }
    QString dataDirectory() const { return m_home + QStringLiteral("/data"); }
    void exportSocketPath() const;

    // Starts the engine and waits until it listens.
    bool start(int timeoutMs = 10000);
    // SIGTERM: the engine stops its runs, says CloseAll and exits.
    bool stop(int timeoutMs = 10000);
    // SIGKILL, as a crash would.
    void kill();
    bool isRunning() const { return m_process.state() == QProcess::Running; }
    // What the engine wrote to stderr so far.
    QByteArray output()
    {
        m_output += m_process.readAllStandardError();
        return m_output;
    }
    int exitCode() const { return m_process.exitCode(); }

    static QString binary();

private:
    QTemporaryDir m_dir;
    QString m_home;
    QProcess m_process;
    QByteArray m_output;
};

} // namespace NvbTest
