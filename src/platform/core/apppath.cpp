#include "apppath.h"

#include <unistd.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include "stores/defaultsettings.h"

namespace NVB::Defines {

namespace {

const QString AppDirName = QStringLiteral("nvb");

QString fromEnvironment(const char* name)
{
    const QString value = qEnvironmentVariable(name);
    return value.isEmpty() ? QString() : QDir::cleanPath(value);
}

// NVB_HOME/<sub>, the XDG variable's folder, or the XDG default below $HOME.
QString userDir(const char* own, const char* homeSub, const char* xdgVariable, const char* xdgDefault)
{
    QString dir = fromEnvironment(own);
    if (!dir.isEmpty())
        return dir;
    const QString home = fromEnvironment("NVB_HOME");
    if (!home.isEmpty())
        return home + QLatin1Char('/') + QLatin1String(homeSub);
    QString base = fromEnvironment(xdgVariable);
    if (base.isEmpty())
        base = QDir::homePath() + QLatin1Char('/') + QLatin1String(xdgDefault);
    return base + QLatin1Char('/') + AppDirName;
}

} // namespace

const AppPath& AppPath::to()
{
    static const AppPath path;
    return path;
}

QString AppPath::config() const
{
    return userDir("NVB_CONFIG_DIR", "config", "XDG_CONFIG_HOME", ".config");
}

QString AppPath::data() const
{
    return userDir("NVB_DATA_DIR", "data", "XDG_DATA_HOME", ".local/share");
}

QString AppPath::cache() const
{
    return userDir("NVB_CACHE_DIR", "cache", "XDG_CACHE_HOME", ".cache");
}

QString AppPath::runtime() const
{
    QString dir = fromEnvironment("NVB_RUNTIME_DIR");
    if (!dir.isEmpty())
        return dir;
    const QString home = fromEnvironment("NVB_HOME");
    if (!home.isEmpty())
        return home + QStringLiteral("/run");
    const QString xdg = fromEnvironment("XDG_RUNTIME_DIR");
    if (!xdg.isEmpty())
        return xdg + QLatin1Char('/') + AppDirName;
    // No session runtime directory (a plain ssh login, a container): a
    // per-user folder in /tmp; the engine makes it 0700 and checks its owner.
    return QStringLiteral("/tmp/%1-%2").arg(AppDirName).arg(::getuid());
}

QString AppPath::share() const
{
    QString dir = fromEnvironment("NVB_SHARE_DIR");
    if (!dir.isEmpty())
        return dir;
    // A relocated installation keeps share/ beside bin/.
    if (QCoreApplication::instance()) {
        const QString beside = QDir::cleanPath(QCoreApplication::applicationDirPath()
                                               + QStringLiteral("/../share/") + AppDirName);
        if (QFileInfo(beside).isDir())
            return beside;
    }
    return QStringLiteral(NVB_INSTALL_DATADIR);
}

QString AppPath::bin() const
{
    QString dir = fromEnvironment("NVB_BIN_DIR");
    if (!dir.isEmpty())
        return dir;
    if (QCoreApplication::instance())
        return QCoreApplication::applicationDirPath();
    return QStringLiteral(NVB_INSTALL_BINDIR);
}

QString AppPath::guiImageDir() const
{
    return share() + QStringLiteral("/gui/images");
}

QString AppPath::logs()
{
    const QString configured = NVB::DefaultSettings::instance()->value(QStringLiteral("LogPath"));
    return configured.isEmpty() ? defaultLogs() : configured;
}

QString AppPath::defaultLogs()
{
    const QString own = fromEnvironment("NVB_LOG_DIR");
    if (!own.isEmpty())
        return own;
    const QString home = fromEnvironment("NVB_HOME");
    if (!home.isEmpty())
        return home + QStringLiteral("/logs");
    return userDir("NVB_LOG_DIR", "logs", "XDG_STATE_HOME", ".local/state") + QStringLiteral("/logs");
}

} // namespace NVB::Defines
