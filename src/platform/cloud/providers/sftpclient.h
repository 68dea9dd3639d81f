#pragma once

#include <QByteArray>
#include <QVector>

#include "cloud/listingobject.h"
#include "providerclient.h"
#include "sshconnection.h"

struct sftp_session_struct;

namespace NVL::Cloud {

// A destination on an SSH server (Config::Network::*): the folder
// Config::Network::Sftp::Path, whose sub-folders are the containers. Host
// keys, the login and the deadline of every request are SshConnection's.
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

private:
    // Connects, logs in and starts SFTP.
    OperationResult open(const QMap<QString, QVariant>& config, const CancelToken& cancel);
    // The root must exist and be a folder.
    OperationResult checkRoot();
    OperationResult readFolder(const QByteArray& path, const QString& keyBase, bool recursive,
        QVector<Api::ListingObject>* entries, const CancelToken& cancel);
    // status: the server's refusal when known, else libssh's last error.
    OperationResult sftpFailure(const QString& what, const QByteArray& path, int status = -1) const;
    void close();

    SshConnection m_ssh;
    sftp_session_struct* m_sftp = nullptr;
    QByteArray m_root;
};

} // namespace NVL::Cloud
