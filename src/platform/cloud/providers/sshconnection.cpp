#include "sshconnection.h"

#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <libssh/libssh.h>
#include <libssh/server.h>

#include <QFile>

#include "cloud/cloudconfig.h"
#include "cloud/knownhosts.h"
#include "sshdeadline.h"

namespace NVL::Cloud {

namespace {

namespace Net = Config::Network;

OperationResult cancelled()
{
    return OperationResult::failure(OperationError::Cancelled, QStringLiteral("Operation cancelled"));
}

QString fingerprintOf(ssh_key key)
{
    unsigned char* hash = nullptr;
    size_t hashLength = 0;
    QString fingerprint;
    if (key && ssh_get_publickey_hash(key, SSH_PUBLICKEY_HASH_SHA256, &hash, &hashLength) == SSH_OK) {
        char* text = ssh_get_fingerprint_hash(SSH_PUBLICKEY_HASH_SHA256, hash, hashLength);
        fingerprint = QString::fromUtf8(text);
        ssh_string_free_char(text);
        ssh_clean_pubkey_hash(&hash);
    }
    return fingerprint;
}

// libssh's own time-out is only a backstop behind our deadline watcher, which
// must fire first so that the message names the step that hung.
constexpr int LibsshBackstopSeconds = 5;

// An idle connection whose host vanished is found by the kernel within
// idle + 3 x 5 s instead of the two hours of the system default, and bytes
// that go unacknowledged for the step deadline (a route that drops
// everything) end the connection as well. Neither notices a server whose
// host still acknowledges but whose sshd no longer answers: that takes the
// SSH keepalive (keepAliveIfIdle).
void tuneTcpKeepAlive(int fd, int idleSeconds, int timeoutSeconds)
{
    const int on = 1;
    const int interval = 5;
    const int count = 3;
    const unsigned int unacknowledged = unsigned(timeoutSeconds) * 1000U;
    setsockopt(fd, SOL_SOCKET, SO_KEEPALIVE, &on, sizeof(on));
    setsockopt(fd, IPPROTO_TCP, TCP_KEEPIDLE, &idleSeconds, sizeof(idleSeconds));
    setsockopt(fd, IPPROTO_TCP, TCP_KEEPINTVL, &interval, sizeof(interval));
    setsockopt(fd, IPPROTO_TCP, TCP_KEEPCNT, &count, sizeof(count));
    setsockopt(fd, IPPROTO_TCP, TCP_USER_TIMEOUT, &unacknowledged, sizeof(unacknowledged));
}

} // namespace

SshConnection::SshConnection() = default;

SshConnection::~SshConnection()
{
    close();
}

void SshConnection::close()
{
    // The watcher lets go of the descriptor before libssh closes it.
    if (m_deadline)
        m_deadline->watch(-1);
    if (m_session) {
        if (ssh_is_connected(m_session))
            ssh_disconnect(m_session);
        ssh_free(m_session);
        m_session = nullptr;
    }
    m_deadline.reset();
}

QString SshConnection::sshError() const
{
    return m_session ? QString::fromUtf8(ssh_get_error(m_session)) : QString();
}

QString SshConnection::serverName() const
{
    return m_port == DefaultPort ? m_host : QStringLiteral("[%1]:%2").arg(m_host).arg(m_port);
}

void SshConnection::keepAliveIfIdle()
{
    if (!m_keepAlive || !m_session || !ssh_is_connected(m_session) || m_deadline->reason() != SshDeadline::None)
        return;
    const auto idle = std::chrono::steady_clock::now() - m_lastActivity;
    if (idle < std::chrono::seconds(m_keepAliveInterval))
        return;
    // A session left idle may have lost its server without a word (a
    // stopped sshd, a host gone behind a route that still takes our bytes).
    // The request wants an answer, and libssh waits for it here on the
    // session's own thread; the watcher cuts the wait at the deadline, and
    // the step that follows then fails at once with this step's message.
    m_deadline->arm(m_timeout,
        QStringLiteral("waiting for the answer to a keepalive after %1 s idle")
            .arg(std::chrono::duration_cast<std::chrono::seconds>(idle).count()));
    ssh_send_keepalive(m_session);
    m_deadline->disarm();
    m_lastActivity = std::chrono::steady_clock::now();
}

void SshConnection::beginStep(const QString& step)
{
    keepAliveIfIdle();
    m_deadline->arm(m_timeout, step);
}

void SshConnection::endStep()
{
    m_deadline->disarm();
    m_lastActivity = std::chrono::steady_clock::now();
}

OperationResult SshConnection::interrupted() const
{
    if (!m_deadline)
        return {};
    switch (m_deadline->reason()) {
    case SshDeadline::Cancelled:
        return cancelled();
    case SshDeadline::Expired:
        return OperationResult::failure(OperationError::Timeout,
            QStringLiteral("The SSH server %1 did not answer within %2 s while %3; the connection was closed")
                .arg(serverName(), QString::number(m_deadline->seconds()), m_deadline->step()));
    case SshDeadline::None:
    default:
        return {};
    }
}

OperationResult SshConnection::connectSocket(const CancelToken& cancel, int* fd)
{
    addrinfo hints {};
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    const QByteArray host = m_host.toUtf8();
    const QByteArray service = QByteArray::number(m_port);
    const int lookup = getaddrinfo(host.constData(), service.constData(), &hints, &found);
    if (lookup != 0)
        return OperationResult::failure(OperationError::HostNotFound,
            QStringLiteral("Can't resolve the SSH server \"%1\": %2")
                .arg(m_host, QString::fromLocal8Bit(gai_strerror(lookup))));

    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(m_timeout);
    QString lastError = QStringLiteral("no address");
    bool timedOut = false;
    for (addrinfo* address = found; address; address = address->ai_next) {
        const int sock
            = ::socket(address->ai_family, address->ai_socktype | SOCK_NONBLOCK | SOCK_CLOEXEC, address->ai_protocol);
        if (sock < 0)
            continue;
        int state = ::connect(sock, address->ai_addr, address->ai_addrlen);
        if (state != 0 && errno == EINPROGRESS) {
            // Short slices, so that a cancel is seen while the SYN hangs.
            for (;;) {
                if (cancel.isCancelled()) {
                    ::close(sock);
                    freeaddrinfo(found);
                    return cancelled();
                }
                const auto left
                    = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now())
                          .count();
                if (left <= 0) {
                    timedOut = true;
                    break;
                }
                pollfd watch {sock, POLLOUT, 0};
                const int ready = ::poll(&watch, 1, int(std::min<long long>(left, 100)));
                if (ready > 0) {
                    int error = 0;
                    socklen_t length = sizeof(error);
                    getsockopt(sock, SOL_SOCKET, SO_ERROR, &error, &length);
                    state = error == 0 ? 0 : -1;
                    errno = error;
                    break;
                }
            }
        }
        if (state == 0) {
            const int flags = fcntl(sock, F_GETFL);
            fcntl(sock, F_SETFL, flags & ~O_NONBLOCK);
            const int on = 1;
            setsockopt(sock, IPPROTO_TCP, TCP_NODELAY, &on, sizeof(on));
            freeaddrinfo(found);
            *fd = sock;
            return {};
        }
        lastError = timedOut ? QStringLiteral("no answer within %1 s").arg(m_timeout)
                             : QString::fromLocal8Bit(strerror(errno));
        ::close(sock);
        if (timedOut)
            break;
    }
    freeaddrinfo(found);
    return OperationResult::failure(timedOut ? OperationError::Timeout : OperationError::ConnectionFailed,
        QStringLiteral("Can't connect to %1 port %2: %3").arg(m_host, QString::number(m_port), lastError));
}

OperationResult SshConnection::configure(const QMap<QString, QVariant>& config)
{
    close();
    m_host = config.value(Net::Address).toString().trimmed();
    m_user = config.value(Net::Sftp::User).toString().trimmed();
    if (m_host.isEmpty())
        return OperationResult::failure(OperationError::InvalidConfig, QStringLiteral("SFTP server is empty"));
    if (m_user.isEmpty())
        return OperationResult::failure(OperationError::InvalidConfig, QStringLiteral("SFTP user is empty"));
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
    m_timeout = config.value(Net::Sftp::Timeout).toInt();
    if (m_timeout <= 0)
        m_timeout = DefaultTimeoutSeconds;
    m_keepAlive = config.value(Net::KeepAlive).toBool();
    m_keepAliveInterval = config.value(Net::Sftp::KeepAliveInterval).toInt();
    if (m_keepAliveInterval <= 0)
        m_keepAliveInterval = KeepAliveSeconds;
    return {};
}

OperationResult SshConnection::connect(const QMap<QString, QVariant>& config, const CancelToken& cancel)
{
    const QString knownHosts = KnownHosts::userFile(config);
    const QString globalKnownHosts = KnownHosts::globalFile(config);

    m_deadline = std::make_unique<SshDeadline>(cancel);
    int fd = -1;
    OperationResult result = connectSocket(cancel, &fd);
    if (result.isError())
        return result;

    m_session = ssh_new();
    if (!m_session) {
        ::close(fd);
        return OperationResult::failure(OperationError::InternalError, QStringLiteral("Can't make an SSH session"));
    }
    // From here libssh owns the descriptor and closes it with the session.
    const socket_t socket = fd;
    ssh_options_set(m_session, SSH_OPTIONS_FD, &socket);
    m_deadline->watch(fd);
    if (m_keepAlive)
        tuneTcpKeepAlive(fd, m_keepAliveInterval, m_timeout);

    const QByteArray host = m_host.toUtf8();
    const QByteArray user = m_user.toUtf8();
    const QByteArray hostsFile = QFile::encodeName(knownHosts);
    const QByteArray globalHostsFile = QFile::encodeName(globalKnownHosts);
    const unsigned int port = static_cast<unsigned int>(m_port);
    const long timeout = m_timeout + LibsshBackstopSeconds;
    // Only what the account says counts, not the user's ~/.ssh/config.
    const bool processConfig = false;
    if (ssh_options_set(m_session, SSH_OPTIONS_HOST, host.constData()) != SSH_OK
        || ssh_options_set(m_session, SSH_OPTIONS_PORT, &port) != SSH_OK
        || ssh_options_set(m_session, SSH_OPTIONS_USER, user.constData()) != SSH_OK
        || ssh_options_set(m_session, SSH_OPTIONS_TIMEOUT, &timeout) != SSH_OK
        || ssh_options_set(m_session, SSH_OPTIONS_PROCESS_CONFIG, &processConfig) != SSH_OK
        || ssh_options_set(m_session, SSH_OPTIONS_KNOWNHOSTS, hostsFile.constData()) != SSH_OK
        || ssh_options_set(m_session, SSH_OPTIONS_GLOBAL_KNOWNHOSTS, globalHostsFile.constData()) != SSH_OK)
        return OperationResult::failure(
            OperationError::InvalidConfig, QStringLiteral("Invalid SSH settings: %1").arg(sshError()));

    beginStep(QStringLiteral("exchanging keys"));
    const int connected = ssh_connect(m_session);
    endStep();
    if (connected != SSH_OK) {
        result = interrupted();
        if (result.isError())
            return result;
        return OperationResult::failure(OperationError::ConnectionFailed,
            QStringLiteral("Can't connect to %1 port %2: %3").arg(m_host, QString::number(m_port), sshError()));
    }

    result = verifyHostKey(config, knownHosts);
    if (result.isError())
        return result;
    result = authenticate(config);
    if (result.isError()) {
        const OperationResult cut = interrupted();
        return cut.isError() ? cut : result;
    }
    return {};
}

OperationResult SshConnection::verifyHostKey(const QMap<QString, QVariant>& config, const QString& knownHostsFile)
{
    const QString server = serverName();
    ssh_key key = nullptr;
    if (ssh_get_server_publickey(m_session, &key) != SSH_OK)
        return OperationResult::failure(
            OperationError::ConnectionFailed, QStringLiteral("%1 sent no host key: %2").arg(server, sshError()));
    const QString fingerprint = fingerprintOf(key);
    const QString keyType = QString::fromUtf8(ssh_key_type_to_char(ssh_key_type(key)));
    QString keyLine;
    char* base64 = nullptr;
    if (ssh_pki_export_pubkey_base64(key, &base64) == SSH_OK) {
        keyLine = keyType + QLatin1Char(' ') + QString::fromLatin1(base64);
        ssh_string_free_char(base64);
    }
    ssh_key_free(key);

    // What the dialog needs to ask the user about exactly this key.
    OperationResult refusal;
    refusal.config = config;
    refusal.config.insert(Net::Sftp::OfferedHostKey, keyLine);
    refusal.config.insert(Net::Sftp::OfferedHostKeyFingerprint, fingerprint);
    refusal.errorCode = OperationError::HostKeyNotTrusted;

    // libssh hands out the entry of a matching key only, so the key on
    // record for a changed one is looked up in the files themselves.
    const auto knownFingerprint = [&]() {
        const QByteArray pattern = KnownHosts::hostPattern(m_host, m_port).toUtf8();
        for (const QString& path : {knownHostsFile, KnownHosts::globalFile(config)}) {
            QFile file(path);
            if (!file.open(QIODevice::ReadOnly))
                continue;
            while (!file.atEnd()) {
                const QByteArray line = file.readLine(64 * 1024).trimmed();
                ssh_knownhosts_entry* entry = nullptr;
                QString found;
                if (!line.isEmpty() && !line.startsWith('#')
                    && ssh_known_hosts_parse_line(pattern.constData(), line.constData(), &entry) == SSH_OK && entry)
                    found = fingerprintOf(entry->publickey);
                SSH_KNOWNHOSTS_ENTRY_FREE(entry);
                if (!found.isEmpty())
                    return found;
            }
        }
        return QString();
    };

    switch (ssh_session_is_known_server(m_session)) {
    case SSH_KNOWN_HOSTS_OK:
        return {};
    case SSH_KNOWN_HOSTS_CHANGED:
    case SSH_KNOWN_HOSTS_OTHER: {
        const QString known = knownFingerprint();
        refusal.config.insert(Net::Sftp::KnownHostKeyFingerprint, known);
        refusal.errorMessage
            = QStringLiteral("WARNING: the host key of %1 has changed. It now sends the %2 key %3, but the key on "
                             "record is %4. Someone may be intercepting the connection. If the server's key was "
                             "replaced on purpose, remove its old line from %5 and connect again.")
                  .arg(server, keyType, fingerprint, known.isEmpty() ? QStringLiteral("of another type") : known,
                      knownHostsFile);
        return refusal;
    }
    case SSH_KNOWN_HOSTS_UNKNOWN:
    case SSH_KNOWN_HOSTS_NOT_FOUND:
        refusal.errorMessage = QStringLiteral("The host key of %1 is unknown. Its %2 key fingerprint is %3. "
                                              "Accept it only if the server's administrator confirms it.")
                                   .arg(server, keyType, fingerprint);
        return refusal;
    case SSH_KNOWN_HOSTS_ERROR:
    default:
        return OperationResult::failure(OperationError::HostKeyNotTrusted,
            QStringLiteral("Can't check the host key of %1 against %2: %3").arg(server, knownHostsFile, sshError()));
    }
}

OperationResult SshConnection::authenticate(const QMap<QString, QVariant>& config)
{
    const QString privateKey = config.value(Net::Sftp::PrivateKey).toString();
    const QString password = config.value(Net::Sftp::Password).toString();
    // Older records kept a key's passphrase in the password field.
    const QString passphrase
        = config.contains(Net::Sftp::Passphrase) ? config.value(Net::Sftp::Passphrase).toString() : password;

    if (!privateKey.trimmed().isEmpty()) {
        ssh_key key = nullptr;
        const QByteArray keyText = privateKey.toUtf8();
        const QByteArray secret = passphrase.toUtf8();
        if (ssh_pki_import_privkey_base64(
                keyText.constData(), passphrase.isEmpty() ? nullptr : secret.constData(), nullptr, nullptr, &key)
            != SSH_OK)
            return OperationResult::failure(OperationError::InvalidConfig,
                passphrase.isEmpty() ? QStringLiteral("The private key can't be read: it is damaged, of an unknown "
                                                      "format, or encrypted and needs its passphrase")
                                     : QStringLiteral("The private key can't be read: the passphrase is wrong, or "
                                                      "the key is damaged or of an unknown format"));
        beginStep(QStringLiteral("logging in"));
        const int state = ssh_userauth_publickey(m_session, nullptr, key);
        endStep();
        ssh_key_free(key);
        if (state != SSH_AUTH_SUCCESS)
            return OperationResult::failure(OperationError::AuthenticationFailed,
                QStringLiteral("%1 refused the private key of user \"%2\": %3").arg(m_host, m_user, sshError()));
        return {};
    }
    if (password.isEmpty())
        return OperationResult::failure(
            OperationError::InvalidConfig, QStringLiteral("Neither a password nor a private key was given"));

    const QByteArray secret = password.toUtf8();
    beginStep(QStringLiteral("logging in"));
    ssh_userauth_none(m_session, nullptr);
    const int methods = ssh_userauth_list(m_session, nullptr);
    endStep();
    if (!(methods & SSH_AUTH_METHOD_PASSWORD) && (methods & SSH_AUTH_METHOD_INTERACTIVE))
        return authenticateInteractively(secret);
    beginStep(QStringLiteral("logging in"));
    const int state = ssh_userauth_password(m_session, nullptr, secret.constData());
    endStep();
    if (state != SSH_AUTH_SUCCESS)
        return OperationResult::failure(OperationError::AuthenticationFailed,
            QStringLiteral("%1 refused the password of user \"%2\": %3").arg(m_host, m_user, sshError()));
    return {};
}

OperationResult SshConnection::authenticateInteractively(const QByteArray& password)
{
    // The usual PAM conversation asks once for the password; a server that
    // asks for more than that (a one-time code) can't be served unattended.
    beginStep(QStringLiteral("logging in"));
    int state = ssh_userauth_kbdint(m_session, nullptr, nullptr);
    int rounds = 0;
    bool unanswerable = false;
    while (state == SSH_AUTH_INFO && rounds++ < 5) {
        const int prompts = ssh_userauth_kbdint_getnprompts(m_session);
        for (int i = 0; i < prompts; ++i) {
            char echo = 0;
            ssh_userauth_kbdint_getprompt(m_session, unsigned(i), &echo);
            if (echo || prompts > 1)
                unanswerable = true;
            ssh_userauth_kbdint_setanswer(m_session, unsigned(i), password.constData());
        }
        state = ssh_userauth_kbdint(m_session, nullptr, nullptr);
    }
    endStep();
    if (state == SSH_AUTH_SUCCESS)
        return {};
    return OperationResult::failure(OperationError::AuthenticationFailed,
        unanswerable ? QStringLiteral("%1 asked user \"%2\" for more than a password").arg(m_host, m_user)
                     : QStringLiteral("%1 refused the password of user \"%2\": %3").arg(m_host, m_user, sshError()));
}

} // namespace NVL::Cloud
