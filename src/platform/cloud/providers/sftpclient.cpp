#include "sftpclient.h"

#include <sys/socket.h>

#include <libssh/libssh.h>
#include <libssh/sftp.h>

#include <QDir>
#include <QJsonArray>

#include "cloud/cloudconfig.h"
#include "listingpager.h"

namespace NVL::Cloud {

namespace {

namespace Net = Config::Network;

OperationResult cancelled()
{
    return OperationResult::failure(OperationError::Cancelled, QStringLiteral("Operation cancelled"));
}

QString joinPath(const QString& folder, const QString& name)
{
    if (folder.isEmpty())
        return name;
    if (folder.endsWith(QLatin1Char('/')))
        return folder + name;
    return folder + QLatin1Char('/') + name;
}

QString defaultKnownHostsFile()
{
    return QDir::homePath() + QStringLiteral("/.ssh/known_hosts");
}

} // namespace

SftpClient::SftpClient() = default;

SftpClient::~SftpClient()
{
    close();
}

void SftpClient::close()
{
    if (m_sftp) {
        sftp_free(m_sftp);
        m_sftp = nullptr;
    }
    if (m_session) {
        if (ssh_is_connected(m_session))
            ssh_disconnect(m_session);
        ssh_free(m_session);
        m_session = nullptr;
    }
}

QString SftpClient::sshError() const
{
    return m_session ? QString::fromUtf8(ssh_get_error(m_session)) : QString();
}

OperationResult SftpClient::open(const QMap<QString, QVariant>& config, const CancelToken& cancel)
{
    close();
    m_host = config.value(Net::Address).toString().trimmed();
    m_user = config.value(Net::Sftp::User).toString().trimmed();
    m_root = config.value(Net::Sftp::Path).toString().trimmed();
    if (m_host.isEmpty())
        return OperationResult::failure(OperationError::InvalidConfig, QStringLiteral("SFTP server is empty"));
    if (m_user.isEmpty())
        return OperationResult::failure(OperationError::InvalidConfig, QStringLiteral("SFTP user is empty"));
    if (m_root.isEmpty())
        return OperationResult::failure(OperationError::InvalidConfig, QStringLiteral("SFTP path is empty"));
    if (config.value(Net::UseProxy).toBool())
        return OperationResult::failure(
            OperationError::NotSupported, QStringLiteral("SFTP through a proxy is not supported yet"));
    m_port = DefaultPort;
    if (config.contains(Net::Port) && !config.value(Net::Port).toString().trimmed().isEmpty()) {
        bool ok = false;
        m_port = config.value(Net::Port).toString().trimmed().toInt(&ok);
        if (!ok || m_port < 1 || m_port > 65535)
            return OperationResult::failure(OperationError::InvalidConfig,
                QStringLiteral("SFTP port \"%1\" is not valid").arg(config.value(Net::Port).toString()));
    }
    QString knownHosts = config.value(Net::Sftp::KnownHostsFile).toString().trimmed();
    if (knownHosts.isEmpty())
        knownHosts = defaultKnownHostsFile();

    m_session = ssh_new();
    if (!m_session)
        return OperationResult::failure(OperationError::InternalError, QStringLiteral("Can't make an SSH session"));
    const QByteArray host = m_host.toUtf8();
    const QByteArray user = m_user.toUtf8();
    const QByteArray hostsFile = QFile::encodeName(knownHosts);
    const unsigned int port = static_cast<unsigned int>(m_port);
    const long timeout = TimeoutSeconds;
    // Only what the account says counts, not the user's ~/.ssh/config.
    const bool processConfig = false;
    if (ssh_options_set(m_session, SSH_OPTIONS_HOST, host.constData()) != SSH_OK
        || ssh_options_set(m_session, SSH_OPTIONS_PORT, &port) != SSH_OK
        || ssh_options_set(m_session, SSH_OPTIONS_USER, user.constData()) != SSH_OK
        || ssh_options_set(m_session, SSH_OPTIONS_TIMEOUT, &timeout) != SSH_OK
        || ssh_options_set(m_session, SSH_OPTIONS_PROCESS_CONFIG, &processConfig) != SSH_OK
        || ssh_options_set(m_session, SSH_OPTIONS_KNOWNHOSTS, hostsFile.constData()) != SSH_OK
        || ssh_options_set(m_session, SSH_OPTIONS_GLOBAL_KNOWNHOSTS, hostsFile.constData()) != SSH_OK)
        return OperationResult::failure(
            OperationError::InvalidConfig, QStringLiteral("Invalid SSH settings: %1").arg(sshError()));

    if (ssh_connect(m_session) != SSH_OK) {
        const QString error = sshError();
        int code = OperationError::ConnectionFailed;
        if (error.contains(QLatin1String("resolve"), Qt::CaseInsensitive))
            code = OperationError::HostNotFound;
        else if (error.contains(QLatin1String("timeout"), Qt::CaseInsensitive))
            code = OperationError::Timeout;
        return OperationResult::failure(
            code, QStringLiteral("Can't connect to %1 port %2: %3").arg(m_host, QString::number(m_port), error));
    }
    if (config.value(Net::KeepAlive).toBool()) {
        const int on = 1;
        setsockopt(ssh_get_fd(m_session), SOL_SOCKET, SO_KEEPALIVE, &on, sizeof(on));
    }
    if (cancel.isCancelled())
        return cancelled();

    OperationResult result = verifyHostKey(knownHosts);
    if (result.isError())
        return result;
    if (cancel.isCancelled())
        return cancelled();
    result = authenticate(config);
    if (result.isError())
        return result;

    m_sftp = sftp_new(m_session);
    if (!m_sftp || sftp_init(m_sftp) != SSH_OK)
        return OperationResult::failure(OperationError::ConnectionFailed,
            QStringLiteral("SFTP is not available on %1: %2").arg(m_host, sshError()));
    return {};
}

OperationResult SftpClient::verifyHostKey(const QString& knownHostsFile)
{
    const QString server = m_port == DefaultPort ? m_host : QStringLiteral("[%1]:%2").arg(m_host).arg(m_port);

    ssh_key key = nullptr;
    if (ssh_get_server_publickey(m_session, &key) != SSH_OK)
        return OperationResult::failure(
            OperationError::ConnectionFailed, QStringLiteral("%1 sent no host key: %2").arg(server, sshError()));
    unsigned char* hash = nullptr;
    size_t hashLength = 0;
    QString fingerprint;
    if (ssh_get_publickey_hash(key, SSH_PUBLICKEY_HASH_SHA256, &hash, &hashLength) == SSH_OK) {
        char* text = ssh_get_fingerprint_hash(SSH_PUBLICKEY_HASH_SHA256, hash, hashLength);
        fingerprint = QString::fromUtf8(text);
        ssh_string_free_char(text);
        ssh_clean_pubkey_hash(&hash);
    }
    const QString keyType = QString::fromUtf8(ssh_key_type_to_char(ssh_key_type(key)));
    ssh_key_free(key);

    switch (ssh_session_is_known_server(m_session)) {
    case SSH_KNOWN_HOSTS_OK:
        return {};
    case SSH_KNOWN_HOSTS_CHANGED:
        return OperationResult::failure(OperationError::HostKeyNotTrusted,
            QStringLiteral("The host key of %1 has changed: it now sends the %2 key %3, which differs from the "
                           "key recorded in %4. Someone may be intercepting the connection. If the server's key "
                           "was replaced on purpose, remove its old line from that file and add the new key.")
                .arg(server, keyType, fingerprint, knownHostsFile));
    case SSH_KNOWN_HOSTS_OTHER:
        return OperationResult::failure(OperationError::HostKeyNotTrusted,
            QStringLiteral("The host key of %1 has changed: it now sends a %2 key (%3), but %4 records a key of "
                           "another type for it. Someone may be intercepting the connection.")
                .arg(server, keyType, fingerprint, knownHostsFile));
    case SSH_KNOWN_HOSTS_UNKNOWN:
    case SSH_KNOWN_HOSTS_NOT_FOUND:
        return OperationResult::failure(OperationError::HostKeyNotTrusted,
            QStringLiteral("The host key of %1 is unknown: its %2 key %3 is not in %4. Check the fingerprint "
                           "with the server's administrator, then add the key to that file (for example with "
                           "\"ssh-keyscan -p %5 %6 >> %4\").")
                .arg(server, keyType, fingerprint, knownHostsFile, QString::number(m_port), m_host));
    case SSH_KNOWN_HOSTS_ERROR:
    default:
        return OperationResult::failure(OperationError::HostKeyNotTrusted,
            QStringLiteral("Can't check the host key of %1 against %2: %3").arg(server, knownHostsFile, sshError()));
    }
}

OperationResult SftpClient::authenticate(const QMap<QString, QVariant>& config)
{
    const QString privateKey = config.value(Net::Sftp::PrivateKey).toString();
    const QString password = config.value(Net::Sftp::Password).toString();

    if (!privateKey.trimmed().isEmpty()) {
        ssh_key key = nullptr;
        const QByteArray keyText = privateKey.toUtf8();
        const QByteArray passphrase = password.toUtf8();
        if (ssh_pki_import_privkey_base64(
                keyText.constData(), password.isEmpty() ? nullptr : passphrase.constData(), nullptr, nullptr, &key)
            != SSH_OK)
            return OperationResult::failure(OperationError::InvalidConfig,
                QStringLiteral("The private key can't be read: it is damaged, of an "
                               "unknown format, or needs another passphrase"));
        const int state = ssh_userauth_publickey(m_session, nullptr, key);
        ssh_key_free(key);
        if (state != SSH_AUTH_SUCCESS)
            return OperationResult::failure(OperationError::AuthenticationFailed,
                QStringLiteral("%1 refused the private key of user \"%2\": %3").arg(m_host, m_user, sshError()));
        return {};
    }
    if (!password.isEmpty()) {
        const QByteArray secret = password.toUtf8();
        if (ssh_userauth_password(m_session, nullptr, secret.constData()) != SSH_AUTH_SUCCESS)
            return OperationResult::failure(OperationError::AuthenticationFailed,
                QStringLiteral("%1 refused the password of user \"%2\": %3").arg(m_host, m_user, sshError()));
        return {};
    }
    return OperationResult::failure(
        OperationError::InvalidConfig, QStringLiteral("Neither a password nor a private key was given"));
}

OperationResult SftpClient::sftpFailure(const QString& what, const QString& path) const
{
    const int error = m_sftp ? sftp_get_error(m_sftp) : SSH_FX_FAILURE;
    switch (error) {
    case SSH_FX_NO_SUCH_FILE:
    case SSH_FX_NO_SUCH_PATH:
        return OperationResult::failure(
            OperationError::NotFound, QStringLiteral("%1: \"%2\" does not exist on %3").arg(what, path, m_host));
    case SSH_FX_PERMISSION_DENIED:
        return OperationResult::failure(
            OperationError::AccessDenied, QStringLiteral("%1: permission denied on \"%2\"").arg(what, path));
    case SSH_FX_FILE_ALREADY_EXISTS:
        return OperationResult::failure(
            OperationError::AlreadyExists, QStringLiteral("%1: \"%2\" already exists").arg(what, path));
    default:
        return OperationResult::failure(
            OperationError::IoError, QStringLiteral("%1 \"%2\": %3").arg(what, path, sshError()));
    }
}

OperationResult SftpClient::checkRoot()
{
    const QByteArray root = m_root.toUtf8();
    sftp_attributes attributes = sftp_stat(m_sftp, root.constData());
    if (!attributes)
        return sftpFailure(QStringLiteral("Can't open the folder"), m_root);
    const bool folder = attributes->type == SSH_FILEXFER_TYPE_DIRECTORY;
    sftp_attributes_free(attributes);
    if (!folder)
        return OperationResult::failure(
            OperationError::InvalidConfig, QStringLiteral("\"%1\" on %2 is not a folder").arg(m_root, m_host));
    return {};
}

OperationResult SftpClient::readFolder(const QString& path, const QString& keyBase, bool recursive,
    QVector<Api::ListingObject>* entries, const CancelToken& cancel)
{
    const QByteArray name = path.toUtf8();
    sftp_dir dir = sftp_opendir(m_sftp, name.constData());
    if (!dir)
        return sftpFailure(QStringLiteral("Can't list the folder"), path);

    QStringList folders;
    while (sftp_attributes attributes = sftp_readdir(m_sftp, dir)) {
        const QString entryName = QString::fromUtf8(attributes->name);
        if (entryName != QLatin1String(".") && entryName != QLatin1String("..")) {
            // readdir does not follow links, so a link to a folder stays a leaf
            // and a loop of links cannot trap a recursive listing.
            const bool folder = attributes->type == SSH_FILEXFER_TYPE_DIRECTORY;
            const QDateTime modified
                = QDateTime::fromSecsSinceEpoch(attributes->mtime64 ? attributes->mtime64 : attributes->mtime, Qt::UTC);
            const QString key = joinPath(keyBase, entryName);
            entries->append(
                Api::ListingObject(key, folder, folder ? 0 : static_cast<qint64>(attributes->size), modified));
            if (folder && recursive)
                folders.append(entryName);
        }
        sftp_attributes_free(attributes);
        if (cancel.isCancelled()) {
            sftp_closedir(dir);
            return cancelled();
        }
    }
    const bool complete = sftp_dir_eof(dir);
    sftp_closedir(dir);
    if (!complete)
        return sftpFailure(QStringLiteral("Listing broke off in"), path);

    for (const QString& folder : qAsConst(folders)) {
        OperationResult result
            = readFolder(joinPath(path, folder), joinPath(keyBase, folder), recursive, entries, cancel);
        if (result.isError())
            return result;
    }
    return {};
}

OperationResult SftpClient::checkConfig(const QMap<QString, QVariant>& config, const CancelToken& cancel)
{
    OperationResult result = open(config, cancel);
    if (result.isError())
        return result;
    result = checkRoot();
    if (result.isError())
        return result;

    result.config = config;
    result.config.insert(Net::Port, m_port);
    const QByteArray root = m_root.toUtf8();
    if (char* canonical = sftp_canonicalize_path(m_sftp, root.constData())) {
        result.config.insert(Net::Sftp::Path, QString::fromUtf8(canonical));
        ssh_string_free_char(canonical);
    }
    return result;
}

OperationResult SftpClient::listContainers(const QMap<QString, QVariant>& config, const CancelToken& cancel)
{
    OperationResult result = open(config, cancel);
    if (result.isError())
        return result;
    QVector<Api::ListingObject> entries;
    result = readFolder(m_root, QString(), false, &entries, cancel);
    if (result.isError())
        return result;
    std::sort(entries.begin(), entries.end(),
        [](const Api::ListingObject& a, const Api::ListingObject& b) { return a.name() < b.name(); });
    for (const Api::ListingObject& entry : qAsConst(entries)) {
        if (entry.isFolder())
            result.data.append(QJsonObject {{QStringLiteral("Name"), entry.name()}});
    }
    return result;
}

OperationResult SftpClient::createContainer(
    const QMap<QString, QVariant>& config, const QJsonObject& params, const CancelToken& cancel)
{
    const QString name = params.value(QStringLiteral("Name")).toString().trimmed();
    const QString nameError = containerNameError(name);
    if (!nameError.isEmpty())
        return OperationResult::failure(OperationError::InvalidName, nameError);
    OperationResult result = open(config, cancel);
    if (result.isError())
        return result;
    result = checkRoot();
    if (result.isError())
        return result;
    const QString folder = joinPath(m_root, name);
    const QByteArray path = folder.toUtf8();
    if (sftp_mkdir(m_sftp, path.constData(), 0755) != SSH_OK)
        return sftpFailure(QStringLiteral("Can't create the folder"), folder);
    return result;
}

OperationResult SftpClient::listing(
    const QMap<QString, QVariant>& config, const ListingRequest& request, const CancelToken& cancel)
{
    if (!ListingPager::isSupportedDelimiter(request.delimiter))
        return OperationResult::failure(
            OperationError::InvalidConfig, QStringLiteral("Unsupported delimiter \"%1\"").arg(request.delimiter));
    OperationResult result = open(config, cancel);
    if (result.isError())
        return result;
    result = checkRoot();
    if (result.isError())
        return result;

    ListingRequest relative = request;
    relative.prefix = ListingPager::relativePrefix(m_root, request.prefix);
    const QString folder = ListingPager::splitPrefix(relative.prefix).first;
    const QString base = folder.isEmpty() ? m_root : joinPath(m_root, folder);

    QVector<Api::ListingObject> entries;
    const QByteArray basePath = base.toUtf8();
    sftp_attributes attributes = sftp_stat(m_sftp, basePath.constData());
    const bool exists = attributes && attributes->type == SSH_FILEXFER_TYPE_DIRECTORY;
    if (attributes)
        sftp_attributes_free(attributes);
    // Like an object store, a prefix below no existing folder lists nothing.
    if (exists) {
        result = readFolder(base, folder, request.delimiter.isEmpty(), &entries, cancel);
        if (result.isError())
            return result;
    }
    return ListingPager::page(entries, relative);
}

} // namespace NVL::Cloud
