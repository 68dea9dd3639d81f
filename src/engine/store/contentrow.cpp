#include "contentrow.h"

#include <QDateTime>
#include <QSqlQuery>
#include <QVariant>

#include "storevalues.h"

namespace NVB::Engine {

const QString& ContentRow::columns()
{
    static const QString list
        = QStringLiteral("c.path, c.type, c.modified_utc, c.size, c.deleted, c.object, c.checksum, c.modified_ns, "
                         "c.changed_ns, c.inode, c.mode, c.owner, c.grp, c.link_target, c.encoding, c.stored_size");
    return list;
}

StoredContent ContentRow::read(const QSqlQuery& q)
{
    StoredContent c;
    c.path = q.value(0).toString();
    c.type = q.value(1).toInt();
    c.modifiedNs = q.value(7).toLongLong();
    // The stamp is the nanoseconds cut to milliseconds; reading it back from
    // them spares parsing a date per row. Rows without them keep their text.
    c.modifiedUtc = c.modifiedNs > 0 ? QDateTime::fromMSecsSinceEpoch(c.modifiedNs / 1000000, Qt::UTC)
                                     : StoreValues::readStamp(q.value(2));
    c.size = q.value(3).toLongLong();
    c.deleted = q.value(4).toBool();
    c.object = q.value(5).toString();
    c.checksum = q.value(6).toByteArray();
    c.changedNs = q.value(8).toLongLong();
    c.inode = quint64(q.value(9).toLongLong());
    c.mode = uint(q.value(10).toLongLong());
    c.owner = q.value(11).toLongLong();
    c.group = q.value(12).toLongLong();
    c.linkTarget = q.value(13).toString();
    c.encoding = q.value(14).toInt();
    c.storedSize = q.value(15).toLongLong();
    return c;
}

} // namespace NVB::Engine
