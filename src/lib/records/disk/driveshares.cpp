#include "driveshares.h"

namespace NVB::Info {

namespace {
const QString VolumesPrefix = QStringLiteral("/NVB_VOLUMES");
const QString SharesPrefix = QStringLiteral("/NVB_SHARES");
const QString SqlRoot = QStringLiteral("NVB_ROOT");

// The rest of path after prefix when path is the prefix itself or continues
// with a separator; a null string otherwise.
QString after(const QString& path, const QString& prefix)
{
    if (path.compare(prefix, Qt::CaseInsensitive) == 0)
        return QStringLiteral("");
    if (path.startsWith(prefix + QLatin1Char('/'), Qt::CaseInsensitive))
        return path.mid(prefix.size());
    return QString();
}
} // namespace

DriveShares* DriveShares::Instance()
{
    static DriveShares instance;
    return &instance;
}

QString DriveShares::get_local_path(const QString& path, _Types type) const
{
    const QString share = after(path, SharesPrefix);
    if (!share.isNull() || type == Share) {
        QString rest = share.isNull() ? path : share;
        while (rest.startsWith(QLatin1Char('/')))
            rest.remove(0, 1);
        return QStringLiteral("//") + rest;
    }
    const QString volume = after(path, VolumesPrefix);
    if (!volume.isNull())
        return volume.isEmpty() ? QStringLiteral("/") : volume;
    return path;
}

QString DriveShares::getSqlPathFromLocal(const QString& localPath) const
{
    if (localPath.startsWith(QLatin1String("//")))
        return SharesPrefix + localPath.mid(1);
    if (localPath.isEmpty() || localPath == QLatin1String("/"))
        return SqlRoot;
    return SqlRoot + (localPath.startsWith(QLatin1Char('/')) ? localPath : QLatin1Char('/') + localPath);
}

} // namespace NVB::Info
