#pragma once

#include <QDateTime>
#include <QString>

namespace NVB::Defines::Log {

// Applies the user's log settings to this process: level, folder and the
// rotation of old files. Programs call apply() once at start, after their
// application name is set; the settings page applies later changes itself.
class Configuration
{
public:
    // The environment variable NVB_LOG_LEVEL, when set, wins over the stored
    // level so that a developer can raise it for one run.
    static void apply();

    // In `folder`, renames "<name>.log" to "<name>.log.<date and time>" when
    // it was begun before today, and removes rotated files of that name last
    // written more than `keepDays` days before `now`. Returns how many files
    // it removed.
    static int rotate(
        const QString& folder, const QString& name, int keepDays, const QDateTime& now = QDateTime::currentDateTime());
};

} // namespace NVB::Defines::Log
