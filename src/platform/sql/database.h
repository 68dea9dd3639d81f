#pragma once

#include <QString>

namespace NVB::SQL {

// The engine's store file as the console sees it.
class Database
{
public:
    // The full path of the store: the default setting "DatabasePath" when set,
    // else "nvbackup.db" in the engine's data folder.
    static QString connectionString();
    // Gives the free pages of the store back to the file system (VACUUM).
    // False when the file is missing, busy beyond the timeout or unwritable.
    static bool shrink();
    static bool shrink(const QString& filePath);
};

} // namespace NVB::SQL
