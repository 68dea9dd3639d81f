#pragma once

#include <QVector>

#include "cloud/listingobject.h"
#include "providerclient.h"

struct ssh_session_struct;
struct sftp_session_struct;

namespace NVL::Cloud {

// A destination on an SSH server (Config::Network::*): the folder
// Config::Network::Sftp::Path, whose sub-folders are the containers. The
// server's host key must already be in known_hosts
// (Config::Network::Sftp::KnownHostsFile, by default ~/.ssh/known_hosts):
// an unknown or changed key is refused, never learnt silently.
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
    static constexpr long TimeoutSeconds = 30;

private:
    // Connects, checks the host key, logs in and starts SFTP.
    OperationResult open(const QMap<QString, QVariant>& config, const CancelToken& cancel);
    OperationResult verifyHostKey(const QString& knownHostsFile);
    OperationResult authenticate(const QMap<QString, QVariant>& config);
    // The root must exist and be a folder.
    OperationResult checkRoot();
    OperationResult readFolder(const QString& path, const QString& keyBase, bool recursive,
        QVector<Api::ListingObject>* entries, const CancelToken& cancel);
    OperationResult sftpFailure(const QString& what, const QString& path) const;
    QString sshError() const;
    void close();

    ssh_session_struct* m_session = nullptr;
    sftp_session_struct* m_sftp = nullptr;
    QString m_host;
    int m_port = DefaultPort;
    QString m_user;
    QString m_root;
};

} // namespace NVL::Cloud
