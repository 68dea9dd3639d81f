#include "memorydriver.h"

#include <utility>

#include <QMutexLocker>

namespace NVB::Engine {

QString MemoryDriver::description() const
{
    return QStringLiteral("memory storage");
}

StorageListing MemoryDriver::list(const QString& prefix) const
{
    StorageListing listing;
    listing.error = prefixError(prefix);
    if (!listing.ok())
        return listing;
    const QString folder = prefix.isEmpty() ? QString() : prefix + QLatin1Char('/');
    QMutexLocker locker(&m_mutex);
    for (auto it = m_objects.lowerBound(folder); it != m_objects.cend() && it.key().startsWith(folder); ++it)
        listing.objects.append({it.key(), it.value().size()});
    return listing;
}

StorageStat MemoryDriver::stat(const QString& key) const
{
    StorageStat result;
    result.error = keyError(key);
    if (!result.ok())
        return result;
    QMutexLocker locker(&m_mutex);
    const auto it = m_objects.constFind(key);
    result.exists = it != m_objects.cend();
    result.size = result.exists ? it.value().size() : 0;
    return result;
}

StorageRead MemoryDriver::read(const QString& key, qint64 offset, qint64 length) const
{
    StorageRead result;
    result.error = keyError(key);
    if (!result.ok())
        return result;
    if (offset < 0) {
        result.error = QStringLiteral("Cannot read \"%1\" from the negative offset %2.").arg(key).arg(offset);
        return result;
    }
    QMutexLocker locker(&m_mutex);
    const auto it = m_objects.constFind(key);
    if (it == m_objects.cend()) {
        result.error = QStringLiteral("The object \"%1\" does not exist in %2.").arg(key, description());
        return result;
    }
    const qint64 size = it.value().size();
    if (offset < size) {
        const qint64 available = size - offset;
        result.data = it.value().mid(int(offset), int(length < 0 ? available : qMin(length, available)));
    }
    return result;
}

StorageStatus MemoryDriver::write(const QString& key, const QByteArray& data)
{
    StorageStatus status {keyError(key)};
    if (!status.ok())
        return status;
    QMutexLocker locker(&m_mutex);
    // A key may not be both an object and the folder of others, as on a file
    // system; refusing it here keeps the two drivers interchangeable.
    const QString folder = key + QLatin1Char('/');
    const auto below = std::as_const(m_objects).lowerBound(folder);
    if (below != m_objects.cend() && below.key().startsWith(folder))
        return {QStringLiteral("Cannot write \"%1\": it is a folder of other objects.").arg(key)};
    for (int slash = key.indexOf(QLatin1Char('/')); slash > 0; slash = key.indexOf(QLatin1Char('/'), slash + 1)) {
        if (m_objects.contains(key.left(slash)))
            return {
                QStringLiteral("Cannot write \"%1\": \"%2\" is an object, not a folder.").arg(key, key.left(slash))};
    }
    m_objects.insert(key, data);
    return status;
}

StorageStatus MemoryDriver::remove(const QString& key)
{
    StorageStatus status {keyError(key)};
    if (!status.ok())
        return status;
    QMutexLocker locker(&m_mutex);
    m_objects.remove(key);
    return status;
}

} // namespace NVB::Engine
