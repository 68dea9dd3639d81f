#include "planenums.h"

namespace NVB::Info::Plan {

const QMap<Type, QString> typeToStr {{Type::Backup, QStringLiteral("Backup")},
    {Type::Restore, QStringLiteral("Restore")}, {Type::Sync, QStringLiteral("Sync")},
    {Type::Purge, QStringLiteral("Purge")}};

const QMap<SubType, QString> subtypeToStr {{SubType::File, QStringLiteral("File")},
    {SubType::DiskImage, QStringLiteral("Disk Image")}, {SubType::SystemFullFile, QStringLiteral("System Full File")},
    {SubType::Unknown, QStringLiteral("Unknown")}};

} // namespace NVB::Info::Plan
