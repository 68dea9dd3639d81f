#pragma once

#include <QString>

#include "nvldebugstream.h"

namespace NVL {

// The product's log. Every line carries the tag it was made with ("NVB" in the
// library) and goes to stderr and to a log file in the log directory.
//
// The level is read once from the environment variable NVB_LOG_LEVEL
// ("debugonly", "debug", "info", "warning", "error", "off"; "info" when unset)
// and can be changed at run time with setLevel().
class NvlDebug
{
public:
    explicit NvlDebug(const QString& tag);

    NvlDebugStream debug() const;
    NvlDebugStream debugOnly() const;
    NvlDebugStream info() const;
    NvlDebugStream infoH() const;
    NvlDebugStream warning() const;
    NvlDebugStream error() const;

    static LogLevel level();
    static void setLevel(LogLevel level);
    static LogLevel levelFromName(const QString& name, LogLevel fallback);
    static QString levelName(LogLevel level);

    // The file lines are appended to; empty until the first line was written.
    static QString logFilePath();
    // Moves the log to another file; an empty path goes back to the default
    // "<log dir>/<application name>.log".
    static void setLogFile(const QString& path);
    static void setStderrEnabled(bool enabled);

    static void write(LogLevel level, const QString& tag, const QString& text);

private:
    NvlDebugStream stream(LogLevel level) const;

    QString m_tag;
};

} // namespace NVL
