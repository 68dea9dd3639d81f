#include "loglevel.h"

#include "nvldebug.h"
#include "stores/defaultsettings.h"

namespace NVB::Defines::Log {

namespace {

const QString Key = QStringLiteral("LogLevel");

} // namespace

Level::Level(NVL::LogManager::LogLevel level)
    : m_level(level)
{ }

QString Level::toString(NVL::LogManager::LogLevel level)
{
    switch (level) {
    case NVL::LogManager::Error:
        return QStringLiteral("Error");
    case NVL::LogManager::Warning:
        return QStringLiteral("Warning");
    case NVL::LogManager::Info:
        return QStringLiteral("Info");
    case NVL::LogManager::Debug:
        return QStringLiteral("Debug");
    }
    return QString();
}

NVL::LogLevel Level::toLogLevel(NVL::LogManager::LogLevel level)
{
    switch (level) {
    case NVL::LogManager::Error:
        return NVL::LogLevel::Error;
    case NVL::LogManager::Warning:
        return NVL::LogLevel::Warning;
    case NVL::LogManager::Info:
        return NVL::LogLevel::Info;
    case NVL::LogManager::Debug:
        return NVL::LogLevel::Debug;
    }
    return NVL::LogLevel::Info;
}

Level Level::getFromDefault()
{
    const QString stored = DefaultSettings::instance()->value(Key).trimmed();
    for (auto level :
        {NVL::LogManager::Error, NVL::LogManager::Warning, NVL::LogManager::Info, NVL::LogManager::Debug}) {
        if (stored.compare(toString(level), Qt::CaseInsensitive) == 0)
            return Level(level);
    }
    return Level(NVL::LogManager::Info);
}

bool Level::saveToDefault() const
{
    if (!DefaultSettings::instance()->setValue(Key, toString(m_level).toLower()))
        return false;
    NVL::NvlDebug::setLevel(toLogLevel(m_level));
    return true;
}

} // namespace NVB::Defines::Log
