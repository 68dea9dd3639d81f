#pragma once

#include <QMap>
#include <QString>

namespace NVB::Info::Plan {

// The kind of job. Note that Base::subtype() answers with these values.
// Scoped, because the job kinds share their names with the plan classes.
enum class Type { Backup = 1, Restore = 2, Sync = 3, Purge = 4 };

// The kind of content. Base::type() answers with these values.
enum class SubType { File = 0, DiskImage = 1, SystemFullFile = 2, Unknown = 3 };

extern const QMap<Type, QString> typeToStr;
extern const QMap<SubType, QString> subtypeToStr;

} // namespace NVB::Info::Plan
