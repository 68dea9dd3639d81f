#include "userprofiles.h"

#include <pwd.h>
#include <unistd.h>

namespace NVB::INFO::UserProfiles {

QString currentFullName()
{
    const passwd* entry = getpwuid(getuid());
    if (!entry)
        return QString::fromLocal8Bit(qgetenv("USER"));
    // The comment field may carry more after a comma (room, telephone).
    const QString full = QString::fromLocal8Bit(entry->pw_gecos ? entry->pw_gecos : "").section(QLatin1Char(','), 0, 0);
    return full.trimmed().isEmpty() ? QString::fromLocal8Bit(entry->pw_name) : full.trimmed();
}

} // namespace NVB::INFO::UserProfiles
