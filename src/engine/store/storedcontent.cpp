#include "storedcontent.h"

namespace NVB::Engine {

QString StoredContent::parentPath() const
{
    const int slash = path.lastIndexOf(QLatin1Char('/'));
    if (slash <= 0)
        return path == QLatin1String("/") ? QString() : QStringLiteral("/");
    return path.left(slash);
}

bool StoredContent::sameRecord(const StoredContent& other) const
{
    // modifiedUtc is modifiedNs cut to milliseconds and not compared apart.
    return path == other.path && type == other.type && size == other.size && deleted == other.deleted
        && object == other.object && checksum == other.checksum && modifiedNs == other.modifiedNs
        && changedNs == other.changedNs && inode == other.inode && mode == other.mode && owner == other.owner
        && group == other.group && linkTarget == other.linkTarget && encoding == other.encoding
        && storedSize == other.storedSize;
}

QString StoredContent::name() const
{
    const int slash = path.lastIndexOf(QLatin1Char('/'));
    return slash < 0 ? path : path.mid(slash + 1);
}

} // namespace NVB::Engine
