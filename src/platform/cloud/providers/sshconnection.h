#pragma once

#include <chrono>
#include <memory>

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QVariant>

#include "cloud/canceltoken.h"
#include "cloud/operationresult.h"

struct ssh_session_struct;

namespace NVL::Cloud {

class SshDeadline;

// A logged-in SSH connection to the server of an account
// (Config::Network::*), for one operation. The server's host key must
// already be in the user's known_hosts (Config::Network::Sftp::KnownHostsFile,
// by default ~/.ssh/known_hosts) or the machine's (/etc/ssh/ssh_known_hosts):
// an unknown or changed key is refused, never learnt silently; the refusal
// carries the key for the user to confirm (KnownHosts::accept).
//
// No step waits for ever: connecting, the key exchange, the login and every
// request made between beginStep() and endStep() each get
// Config::Network::Sftp::Timeout seconds, and a cancel shuts the connection
// down at once (SshDeadline).
class SshConnection
{
public:
    static constexpr int DefaultPort = 22;
    static constexpr int DefaultTimeoutSeconds = 30;
    // With Keep alive on, a session idle this long (by default; see
    // Config::Network::Sftp::KeepAliveInterval) must answer an SSH keepalive
    // before it is trusted with the next request, and the socket's own TCP
    // keepalive starts after as long.
    static constexpr int KeepAliveSeconds = 15;

    SshConnection();
    ~SshConnection();

    SshConnection(const SshConnection&) = delete;
    SshConnection& operator=(const SshConnection&) = delete;

    // Reads the server, user, port and timeout; no network yet.
    OperationResult configure(const QMap<QString, QVariant>& config);
    // After configure(): connects, checks the host key and logs in.
    OperationResult connect(const QMap<QString, QVariant>& config, const CancelToken& cancel);
    void close();

    ssh_session_struct* session() const { return m_session; }
    QString host() const { return m_host; }
    int port() const { return m_port; }

    // Bracket every blocking libssh call on the session.
    void beginStep(const QString& step);
    void endStep();
    // Timeout or cancel when the deadline cut the connection, else no error.
    OperationResult interrupted() const;
    QString sshError() const;
    // host, or [host]:port as known_hosts writes it.
    QString serverName() const;

private:
    OperationResult connectSocket(const CancelToken& cancel, int* fd);
    OperationResult verifyHostKey(const QMap<QString, QVariant>& config, const QString& knownHostsFile);
    OperationResult authenticate(const QMap<QString, QVariant>& config);
    OperationResult authenticateInteractively(const QByteArray& password);
    void keepAliveIfIdle();

    ssh_session_struct* m_session = nullptr;
    std::unique_ptr<SshDeadline> m_deadline;
    QString m_host;
    int m_port = DefaultPort;
    int m_timeout = DefaultTimeoutSeconds;
    bool m_keepAlive = false;
    int m_keepAliveInterval = KeepAliveSeconds;
    std::chrono::steady_clock::time_point m_lastActivity;
    QString m_user;
};

} // namespace NVL::Cloud
