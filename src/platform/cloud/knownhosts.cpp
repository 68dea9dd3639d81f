#include "knownhosts.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include "cloudconfig.h"

namespace NVL::Cloud {

namespace Net = Config::Network;

QString KnownHosts::userFile(const QMap<QString, QVariant>& config)
{
    const QString file = config.value(Net::Sftp::KnownHostsFile).toString().trimmed();
    return file.isEmpty() ? QDir::homePath() + QStringLiteral("/.ssh/known_hosts") : file;
}

QString KnownHosts::globalFile(const QMap<QString, QVariant>& config)
{
    const QString file = config.value(Net::Sftp::GlobalKnownHostsFile).toString().trimmed();
    return file.isEmpty() ? QStringLiteral("/etc/ssh/ssh_known_hosts") : file;
}

QString KnownHosts::hostPattern(const QString& host, int port)
{
    return port == 22 ? host : QStringLiteral("[%1]:%2").arg(host).arg(port);
}

QString KnownHosts::accept(const QMap<QString, QVariant>& refusedConfig)
{
    const QString key = refusedConfig.value(Net::Sftp::OfferedHostKey).toString().trimmed();
    const QString host = refusedConfig.value(Net::Address).toString().trimmed();
    bool ok = true;
    const QString portText = refusedConfig.value(Net::Port).toString().trimmed();
    const int port = portText.isEmpty() ? 22 : portText.toInt(&ok);
    // The line is written as is, so nothing in it may start a new one or
    // widen the pattern to other hosts.
    static const QRegularExpression keyShape(QStringLiteral("^[a-z0-9@.-]+ [A-Za-z0-9+/=]+$"));
    static const QRegularExpression hostShape(QStringLiteral("^[A-Za-z0-9.:_-]+$"));
    if (!keyShape.match(key).hasMatch())
        return QStringLiteral("There is no host key to accept");
    if (!hostShape.match(host).hasMatch() || !ok || port < 1 || port > 65535)
        return QStringLiteral("The server \"%1\" port \"%2\" can't be written to known_hosts").arg(host, portText);

    const QString path = userFile(refusedConfig);
    const QFileInfo info(path);
    if (!QDir().mkpath(info.absolutePath()))
        return QStringLiteral("Can't create the folder %1").arg(info.absolutePath());
    if (info.absolutePath() == QDir::homePath() + QStringLiteral("/.ssh"))
        QFile::setPermissions(info.absolutePath(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    QFile file(path);
    const bool existed = file.exists();
    if (!file.open(QIODevice::Append | QIODevice::Text))
        return QStringLiteral("Can't write %1: %2").arg(path, file.errorString());
    if (!existed)
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    const QByteArray line = (hostPattern(host, port) + QLatin1Char(' ') + key + QLatin1Char('\n')).toUtf8();
    if (file.write(line) != line.size() || !file.flush())
        return QStringLiteral("Can't write %1: %2").arg(path, file.errorString());
    return QString();
}

} // namespace NVL::Cloud
