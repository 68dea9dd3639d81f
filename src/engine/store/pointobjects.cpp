#include "pointobjects.h"

#include <algorithm>
#include <map>
#include <vector>

#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

#include "storedatabase.h"
#include "storevalues.h"

namespace NVB::Engine {

namespace {

// Rows read at a time: memory stays flat whatever the tree's size.
constexpr int Batch = 4096;

} // namespace

bool PointObjects::forEachBatch(StoreDatabase& database, const QList<qint64>& pointRows, const QUuid& walked,
    const std::function<bool(const QList<StoredContent>&)>& take)
{
    // The points' sequences by generation, ascending.
    std::map<QString, std::vector<qint64>> sequences;
    {
        QSqlQuery q(database.database());
        if (!q.prepare(QStringLiteral("SELECT generation_id, sequence FROM restore_points WHERE id=?")))
            return database.fail(QStringLiteral("Cannot read the restore points: %1").arg(q.lastError().text()));
        for (qint64 row : pointRows) {
            q.bindValue(0, row);
            if (!q.exec())
                return database.fail(QStringLiteral("Cannot read the restore points: %1").arg(q.lastError().text()));
            if (q.next())
                sequences[q.value(0).toString()].push_back(q.value(1).toLongLong());
        }
    }
    QSqlQuery q(database.database());
    q.setForwardOnly(true);
    // In the primary key's order, resumed after the last row of the batch
    // before, so that no batch reads again what an earlier one read.
    if (!q.prepare(QStringLiteral("SELECT path, first_seq, last_seq, size, deleted, object, stored_size, encoding "
                                  "FROM contents WHERE generation=? AND (path, first_seq)>(?, ?) AND type=? "
                                  "AND first_seq<=? AND last_seq>=? AND last_seq<>? ORDER BY path, first_seq LIMIT ?")))
        return database.fail(QStringLiteral("Cannot read the restore points' objects: %1").arg(q.lastError().text()));
    const QString walkedText = walked.isNull() ? QString() : StoreValues::text(walked);
    for (auto& [generation, held] : sequences) {
        std::sort(held.begin(), held.end());
        // A sequence is never negative: nothing is left out but the walked.
        const qint64 skipped = generation == walkedText ? StoreValues::OpenEnd : -1;
        QString afterPath(QLatin1String(""));
        qint64 afterFirst = -1;
        for (;;) {
            int column = 0;
            for (const QVariant& value :
                {QVariant(generation), QVariant(afterPath), QVariant(afterFirst), QVariant(int(StoredContent::File)),
                    QVariant(held.back()), QVariant(held.front()), QVariant(skipped), QVariant(Batch)})
                q.bindValue(column++, value);
            if (!q.exec())
                return database.fail(
                    QStringLiteral("Cannot read the restore points' objects: %1").arg(q.lastError().text()));
            QList<StoredContent> batch;
            int read = 0;
            while (q.next()) {
                ++read;
                afterPath = q.value(0).toString();
                afterFirst = q.value(1).toLongLong();
                // Only a row one of the points holds: its range covers one
                // of their sequences.
                const auto first = std::lower_bound(held.cbegin(), held.cend(), afterFirst);
                if (first == held.cend() || *first > q.value(2).toLongLong())
                    continue;
                StoredContent item;
                item.path = afterPath;
                item.type = StoredContent::File;
                item.size = q.value(3).toLongLong();
                item.deleted = q.value(4).toBool();
                item.object = q.value(5).toString();
                item.storedSize = q.value(6).toLongLong();
                item.encoding = q.value(7).toInt();
                batch.append(item);
            }
            if (!batch.isEmpty() && !take(batch))
                return true;
            if (read < Batch)
                break;
        }
    }
    return true;
}

} // namespace NVB::Engine
