#include "nvldebug.h"

#include <cstdio>

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMutex>
#include <QMutexLocker>

#include "apppath.h"

namespace NVL {

namespace {

struct Sink
{
    QMutex mutex;
    LogLevel level = NvlDebug::levelFromName(qEnvironmentVariable("NVB_LOG_LEVEL"), LogLevel::Info);
    bool toStderr = qEnvironmentVariable("NVB_LOG_STDERR") != QLatin1String("0");
    QString explicitPath;
    QFile file;
    bool fileFailed = false;

    QString defaultPath() const
    {
        QString name = QCoreApplication::applicationName();
        if (name.isEmpty())
            name = QStringLiteral("nvb");
        // Not AppPath::logs(): that reads the settings store, which may log.
        return NVB::Defines::AppPath::defaultLogs() + QLatin1Char('/') + name + QStringLiteral(".log");
    }

    // Opens lazily: the log directory may be moved by the environment until
    // the first line is written.
    void ensureOpen()
    {
        if (file.isOpen() || fileFailed)
            return;
        const QString path = explicitPath.isEmpty() ? defaultPath() : explicitPath;
        QDir().mkpath(QFileInfo(path).absolutePath());
        file.setFileName(path);
        if (!file.open(QIODevice::Append | QIODevice::Text)) {
            fileFailed = true;
            std::fprintf(stderr, "NVB: cannot open log file %s: %s\n", qUtf8Printable(path),
                         qUtf8Printable(file.errorString()));
        }
    }
};

Sink& sink()
{
    static Sink s;
    return s;
}

} // namespace

NvlDebug::NvlDebug(const QString& tag)
    : m_tag(tag)
{
}

NvlDebugStream NvlDebug::stream(LogLevel lvl) const
{
    return NvlDebugStream(lvl, m_tag, lvl >= level());
}

NvlDebugStream NvlDebug::debug() const { return stream(LogLevel::Debug); }
NvlDebugStream NvlDebug::debugOnly() const { return stream(LogLevel::DebugOnly); }
NvlDebugStream NvlDebug::info() const { return stream(LogLevel::Info); }
NvlDebugStream NvlDebug::infoH() const { return stream(LogLevel::InfoH); }
NvlDebugStream NvlDebug::warning() const { return stream(LogLevel::Warning); }
NvlDebugStream NvlDebug::error() const { return stream(LogLevel::Error); }

LogLevel NvlDebug::level()
{
    Sink& s = sink();
    QMutexLocker lock(&s.mutex);
    return s.level;
}

void NvlDebug::setLevel(LogLevel lvl)
{
    Sink& s = sink();
    QMutexLocker lock(&s.mutex);
    s.level = lvl;
}

LogLevel NvlDebug::levelFromName(const QString& name, LogLevel fallback)
{
    static const struct { const char* name; LogLevel level; } names[] = {
        {"debugonly", LogLevel::DebugOnly}, {"debug", LogLevel::Debug}, {"info", LogLevel::Info},
        {"infoh", LogLevel::InfoH},         {"warning", LogLevel::Warning}, {"error", LogLevel::Error},
        {"off", LogLevel::Off},
    };
    const QString lowered = name.trimmed().toLower();
    for (const auto& entry : names) {
        if (lowered == QLatin1String(entry.name))
            return entry.level;
    }
    return fallback;
}

QString NvlDebug::levelName(LogLevel lvl)
{
    switch (lvl) {
    case LogLevel::DebugOnly: return QStringLiteral("DEBUGONLY");
    case LogLevel::Debug: return QStringLiteral("DEBUG");
    case LogLevel::Info: return QStringLiteral("INFO");
    case LogLevel::InfoH: return QStringLiteral("INFOH");
    case LogLevel::Warning: return QStringLiteral("WARNING");
    case LogLevel::Error: return QStringLiteral("ERROR");
    case LogLevel::Off: break;
    }
    return QStringLiteral("OFF");
}

QString NvlDebug::logFilePath()
{
    Sink& s = sink();
    QMutexLocker lock(&s.mutex);
    return s.file.isOpen() ? s.file.fileName() : QString();
}

void NvlDebug::setLogFile(const QString& path)
{
    Sink& s = sink();
    QMutexLocker lock(&s.mutex);
    s.file.close();
    s.fileFailed = false;
    s.explicitPath = path;
}

void NvlDebug::setStderrEnabled(bool enabled)
{
    Sink& s = sink();
    QMutexLocker lock(&s.mutex);
    s.toStderr = enabled;
}

void NvlDebug::write(LogLevel lvl, const QString& tag, const QString& text)
{
    if (lvl == LogLevel::Off)
        return;
    const QString line = QStringLiteral("%1 [%2] %3: %4\n")
                             .arg(QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs), tag,
                                  levelName(lvl), text);
    const QByteArray bytes = line.toUtf8();

    Sink& s = sink();
    QMutexLocker lock(&s.mutex);
    if (lvl < s.level)
        return;
    if (s.toStderr) {
        std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stderr);
        std::fflush(stderr);
    }
    s.ensureOpen();
    if (s.file.isOpen()) {
        s.file.write(bytes);
        s.file.flush();
    }
}

} // namespace NVL
