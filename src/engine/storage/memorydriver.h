#pragma once

#include "storage/storagedriver.h"

#include <QMap>
#include <QMutex>

namespace NVB::Engine {

// Objects in memory: the repository's tests run against it, and it is the
// reference the driver-conformance suite holds every other driver to.
class MemoryDriver : public StorageDriver
{
public:
    QString description() const override;
    StorageListing list(const QString& prefix) const override;
    StorageStat stat(const QString& key) const override;
    StorageRead read(const QString& key, qint64 offset = 0, qint64 length = -1) const override;
    StorageStatus write(const QString& key, const QByteArray& data) override;
    StorageStatus remove(const QString& key) override;

private:
    mutable QMutex m_mutex;
    QMap<QString, QByteArray> m_objects;
};

} // namespace NVB::Engine
