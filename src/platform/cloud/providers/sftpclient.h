#pragma once

#include <chrono>
#include <memory>

#include <QByteArray>
#include <QVector>

#include "cloud/listingobject.h"
#include "providerclient.h"

struct ssh_session_struct;
struct sftp_session_struct;

namespace NVL::Cloud {

class SshDeadline;

// A destination on an SSH server (Config::Network::*): the folder
// Config::Network::Sftp::Path, whose sub-folders are the containers. The
// server's host key must already be in the user's known_hosts
// (Config::Network::Sftp::KnownHostsFile, by default ~/.ssh/known_hosts) or
// the machine's (/etc/ssh/ssh_known_hosts): an unknown or changed key is
// refused, never learnt silently; the refusal carries the key for the user to
// confirm (KnownHosts::accept).
//
// No step waits for ever: connecting, the key exchange, the login and every
// SFTP request each get Config::Network::Sftp::Timeout seconds, and a cancel
// shuts the connection down at once (SshDeadline).
class SftpClient : public ProviderClient
{
public:
    SftpClient();
    ~SftpClient() override;

    OperationResult checkConfig(const QMap<QString, QVariant>& config, const CancelToken& cancel) override;
    OperationResult listContainers(const QMap<QString, QVariant>& config, const CancelToken& cancel) override;
    OperationResult createContainer(
        const QMap<QString, QVariant>& config, const QJsonObject& params, const CancelToken& cancel) override;
    OperationResult listing(
        const QMap<QString, QVariant>& config, const ListingRequest& request, const CancelToken& cancel) override;

    static constexpr int DefaultPort = 22;
    static constexpr int DefaultTimeoutSeconds = 30;
    // With Keep alive on, a session idle this long is asked for a keepalive
    // reply before it is trusted with the next request.
    static constexpr int KeepAliveSeconds = 15;

private:
    // Connects, checks the host key, logs in and starts SFTP.
    OperationResult open(const QMap<QString, QVariant>& config, const CancelToken& cancel);
    OperationResult connectSocket(const CancelToken& cancel, int* fd);
    OperationResult verifyHostKey(const QMap<QString, QVariant>& config, const QString& knownHostsFile);
    OperationResult authenticate(const QMap<QString, QVariant>& config);
    OperationResult authenticateInteractively(const QByteArray& password);
    // The root must exist and be a folder.
    OperationResult checkRoot();
    OperationResult readFolder(const QByteArray& path, const QString& keyBase, bool recursive,
        QVector<Api::ListingObject>* entries, const CancelToken& cancel);
    // status: the server's refusal when known, else libssh's last error.
    OperationResult sftpFailure(const QString& what, const QByteArray& path, int status = -1) const;
    // Timeout or cancel when the deadline cut the connection, else no error.
    OperationResult interrupted() const;
    void beginStep(const QString& step);
    void endStep();
    QString sshError() const;
    QString serverName() const;
    void close();

    ssh_session_struct* m_session = nullptr;
    sftp_session_struct* m_sftp = nullptr;
    std::unique_ptr<SshDeadline> m_deadline;
    QString m_host;
    int m_port = DefaultPort;
    int m_timeout = DefaultTimeoutSeconds;
    bool m_keepAlive = false;
    std::chrono::steady_clock::time_point m_lastActivity;
    QString m_user;
    QByteArray m_root;
};

} // namespace NVL::Cloud
