#pragma once

#include <QString>

namespace NvbTest {

// The SFTP server tests/support/servers/sshd.sh started for ctest, read from
// the folder it leaves its port, user, keys and known_hosts in.
class SftpTestServer
{
public:
    SftpTestServer();

    bool isAvailable() const { return m_reason.isEmpty(); }

    // Fails where the server had everything it needs to run (CI, or the
    // fixture ran as root), skips elsewhere; true when the server runs.
    // A suite skipped in CI would hide a broken SFTP client.
    bool require(const char* file, int line) const;

    QString dir() const { return m_dir; }
    QString path(const QString& name) const { return m_dir + QLatin1Char('/') + name; }
    // The contents of one of the server's files, trimmed.
    QString text(const QString& name) const;
    int port() const { return m_port; }
    QString user() const { return m_user; }
    QString password() const { return m_password; }

    static QString readFile(const QString& path);

private:
    QString m_dir;
    QString m_reason;
    int m_port = 0;
    QString m_user;
    QString m_password;
};

} // namespace NvbTest
