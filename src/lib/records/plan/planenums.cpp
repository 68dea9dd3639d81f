#include "planenums.h"

namespace NVB::Info::Plan {

const QMap<Type, QString> typeToStr {{Backup, QStringLiteral("Backup")}, {Restore, QStringLiteral("Restore")},
    {Sync, QStringLiteral("Sync")}, {Purge, QStringLiteral("Purge")}};

const QMap<SubType, QString> subtypeToStr {{File, QStringLiteral("File")}, {DiskImage, QStringLiteral("Disk Image")},
    {SystemFullFile, QStringLiteral("System Full File")}, {Unknown, QStringLiteral("Unknown")}};

} // namespace NVB::Info::Plan
