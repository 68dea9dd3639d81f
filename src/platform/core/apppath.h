#pragma once

#include <QString>

namespace NVB::Defines {

// The directories of an installation and of the user's data.
//
// Each defaults to the user's XDG directory (or, for the program and share
// directories, to where the programs were installed) and can be moved by an
// environment variable, so that tests and demos run in temporary directories:
//
//   NVB_HOME          moves every per-user directory below it at once
//   NVB_CONFIG_DIR    settings, the cipher key, the installation config file
//   NVB_DATA_DIR      the engine's store
//   NVB_LOG_DIR       log files
//   NVB_RUNTIME_DIR   the engine's socket
//   NVB_CACHE_DIR     caches
//   NVB_SHARE_DIR     shipped read-only data (images, rebranding)
//   NVB_BIN_DIR       the programs
//
// Paths are read from the environment on every call; none is cached.
class AppPath
{
public:
    static const AppPath& to();

    QString config() const;
    QString data() const;
    QString runtime() const;
    QString cache() const;
    QString share() const;
    QString bin() const;
    QString guiImageDir() const;

    // Where logs go: the "LogPath" setting when set, else defaultLogs().
    static QString logs();
    static QString defaultLogs();

private:
    AppPath() = default;
};

} // namespace NVB::Defines
