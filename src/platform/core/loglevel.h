#pragma once

#include <QString>

#include "logmanager.h"
#include "nvldebugstream.h"

namespace NVB::Defines::Log {

// The log level the user chose, kept as its name under the default setting
// "LogLevel" so that the console and the engine start with it.
class Level
{
public:
    explicit Level(NVL::LogManager::LogLevel level);

    NVL::LogManager::LogLevel level() const { return m_level; }

    static QString toString(NVL::LogManager::LogLevel level);
    // The stored level; Info when nothing or an unknown name is stored.
    static Level getFromDefault();
    static NVL::LogLevel toLogLevel(NVL::LogManager::LogLevel level);

    // Stores the level and applies it to this process's log at once.
    bool saveToDefault() const;

private:
    NVL::LogManager::LogLevel m_level;
};

} // namespace NVB::Defines::Log
