#pragma once

#include <QMap>
#include <QString>
#include <QVariant>

namespace NVL::Cloud {

// The known_hosts files an SFTP account is checked against, and the one
// place where a host key is learnt: only after the user confirmed the
// fingerprint that a refused connection reported.
class KnownHosts
{
public:
    // Config::Network::Sftp::KnownHostsFile, else ~/.ssh/known_hosts.
    static QString userFile(const QMap<QString, QVariant>& config);
    // Config::Network::Sftp::GlobalKnownHostsFile, else /etc/ssh/ssh_known_hosts.
    static QString globalFile(const QMap<QString, QVariant>& config);
    // "host" for port 22, "[host]:port" otherwise, as ssh writes it.
    static QString hostPattern(const QString& host, int port);

    // Appends the key a refused operation offered (its cloudConfig() holds
    // OfferedHostKey) for that host:port to the user's file. Answers the
    // failure text, empty on success. Never fetches the key again: what is
    // written is what the user saw.
    static QString accept(const QMap<QString, QVariant>& refusedConfig);
};

} // namespace NVL::Cloud
