#include "instancelock.h"

#include <QDir>
#include <QFileInfo>

namespace NVB::Engine {

InstanceLock::InstanceLock(const QString& dataDirectory)
    : m_path(dataDirectory + QStringLiteral("/engine.lock"))
{
}

bool InstanceLock::acquire(QString* error)
{
    QDir().mkpath(QFileInfo(m_path).absolutePath());
    m_lock = std::make_unique<QLockFile>(m_path);
    // A lock left by an engine that died is taken over: QLockFile checks
    // whether its process still lives.
    m_lock->setStaleLockTime(0);
    if (m_lock->tryLock(0))
        return true;
    qint64 pid = 0;
    QString host;
    QString application;
    m_lock->getLockInfo(&pid, &host, &application);
    *error = QStringLiteral("Another engine (process %1) is already using the data directory %2")
                 .arg(pid)
                 .arg(QFileInfo(m_path).absolutePath());
    m_lock.reset();
    return false;
}

} // namespace NVB::Engine
