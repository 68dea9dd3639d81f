#include "blockstore.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

#include "store/storedatabase.h"

namespace NVB::Engine {

BlockStore::BlockStore(StoreDatabase& database)
    : m_db(database)
{ }

std::optional<BlockMap> BlockStore::map(const QString& object)
{
    QSqlQuery q(m_db.database());
    q.prepare(QStringLiteral("SELECT checksum, encoding, block_size, size, hashes FROM block_maps WHERE object=?"));
    q.addBindValue(object);
    if (!q.exec() || !q.next())
        return std::nullopt;
    BlockMap map;
    map.object = object;
    map.checksum = q.value(0).toByteArray();
    map.encoding = q.value(1).toInt();
    map.blockSize = q.value(2).toUInt();
    map.size = q.value(3).toLongLong();
    map.hashes = q.value(4).toByteArray();
    // A map that does not cover its version's size is no map at all.
    if (map.blockSize == 0 || map.hashes.size() % BlockMap::HashSize != 0
        || qint64(map.count()) != (map.size + map.blockSize - 1) / map.blockSize)
        return std::nullopt;
    return map;
}

bool BlockStore::save(const QList<BlockMap>& maps)
{
    if (maps.isEmpty())
        return true;
    return m_db.transaction([&] {
        QSqlQuery q(m_db.database());
        q.prepare(QStringLiteral("INSERT OR REPLACE INTO block_maps(object, checksum, encoding, block_size, size, "
                                 "hashes) VALUES(?,?,?,?,?,?)"));
        for (const BlockMap& map : maps) {
            for (const QVariant& value : {QVariant(map.object), QVariant(map.checksum), QVariant(map.encoding),
                     QVariant(map.blockSize), QVariant(map.size), QVariant(map.hashes)})
                q.addBindValue(value);
            if (!q.exec())
                return m_db.fail(QStringLiteral("Cannot record block maps: %1").arg(q.lastError().text()));
        }
        return true;
    });
}

bool BlockStore::forget(const QStringList& objects)
{
    if (objects.isEmpty())
        return true;
    return m_db.transaction([&] {
        QSqlQuery q(m_db.database());
        q.prepare(QStringLiteral("DELETE FROM block_maps WHERE object=?"));
        for (const QString& object : objects) {
            q.addBindValue(object);
            if (!q.exec())
                return m_db.fail(QStringLiteral("Cannot forget block maps: %1").arg(q.lastError().text()));
        }
        return true;
    });
}

} // namespace NVB::Engine
