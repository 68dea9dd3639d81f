#pragma once

#include <memory>

#include <QLockFile>
#include <QString>

namespace NVB::Engine {

// One engine per data directory: two engines writing one store would each
// believe its own picture of what runs.
class InstanceLock
{
public:
    explicit InstanceLock(const QString& dataDirectory);

    // False with a message naming the other engine's process when the
    // directory is taken.
    bool acquire(QString* error);

private:
    QString m_path;
    std::unique_ptr<QLockFile> m_lock;
};

} // namespace NVB::Engine
