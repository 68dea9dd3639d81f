#pragma once

#include <QString>

namespace NVB::Info {

// Translates between the path forms of plans, of the local machine and of the
// repository database.
//
// Plan items name volumes as "/NVB_VOLUMES/<path>" and network shares as
// "/NVB_SHARES/<host>/<share>/<path>"; the repository database roots every
// local path at "NVB_ROOT" and keeps shares under "/NVB_SHARES".
class DriveShares
{
public:
    enum _Types { Local = 0, Share = 1 };

    static DriveShares* Instance();

    // A plan's item path as a path of this machine. A Local item loses its
    // volume prefix; a Share item becomes "//host/share/path".
    QString get_local_path(const QString& path, _Types type) const;
    // A local path in the form of the repository database.
    QString getSqlPathFromLocal(const QString& localPath) const;

private:
    DriveShares() = default;
};

} // namespace NVB::Info
