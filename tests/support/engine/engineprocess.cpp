#include "engineprocess.h"

#include <csignal>

#include <QDeadlineTimer>
#include <QFileInfo>

namespace NvbTest {

EngineProcess::EngineProcess(const QString& home)
    : m_home(home.isEmpty() ? m_dir.path() : home)
{
}

EngineProcess::~EngineProcess()
{
    if (isRunning())
        kill();
}

QString EngineProcess::binary()
{
    return QStringLiteral(NVB_ENGINE_BINARY);
}

void EngineProcess::exportSocketPath() const
{
    qputenv("NVB_ENGINE_SOCKET", socketPath().toUtf8());
}

bool EngineProcess::start(int timeoutMs)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("NVB_HOME"), m_home);
    environment.insert(QStringLiteral("NVB_ENGINE_SOCKET"), socketPath());
    environment.insert(QStringLiteral("NVB_LOG_STDERR"), QStringLiteral("1"));
    environment.remove(QStringLiteral("NVB_DATA_DIR"));
    m_process.setProcessEnvironment(environment);
    m_process.setProgram(binary());
    m_process.start();
    if (!m_process.waitForStarted(timeoutMs))
        return false;
    // The engine says so in its log once it serves its socket; another
    // engine's socket at the same path must not count as this one's.
    QDeadlineTimer deadline(timeoutMs);
    while (!deadline.hasExpired() && isRunning()) {
        m_process.waitForReadyRead(50);
        m_output += m_process.readAllStandardError();
        if (m_output.contains("serving"))
            return true;
    }
    m_output += m_process.readAllStandardError();
    return false;
}

bool EngineProcess::stop(int timeoutMs)
{
    if (!isRunning())
        return true;
    ::kill(pid_t(m_process.processId()), SIGTERM);
    return m_process.waitForFinished(timeoutMs);
}

void EngineProcess::kill()
{
    m_process.kill();
    m_process.waitForFinished(5000);
}

} // namespace NvbTest
