#include "sftptestserver.h"

#include <unistd.h>

#include <QFile>
#include <QFileInfo>
#include <QTest>

namespace NvbTest {

SftpTestServer::SftpTestServer()
    : m_dir(qEnvironmentVariable("NVB_TEST_SSHD_DIR"))
{
    if (m_dir.isEmpty())
        m_reason = QStringLiteral("NVB_TEST_SSHD_DIR is not set; run through ctest or start "
                                  "tests/support/servers/sshd.sh yourself");
    else if (QFileInfo::exists(path(QStringLiteral("unavailable"))))
        m_reason = text(QStringLiteral("unavailable"));
    else if (!QFileInfo::exists(path(QStringLiteral("port"))))
        m_reason = QStringLiteral("no SFTP test server runs in %1").arg(m_dir);
    if (!m_reason.isEmpty())
        return;
    m_port = text(QStringLiteral("port")).toInt();
    m_user = text(QStringLiteral("user"));
    m_password = text(QStringLiteral("password"));
    if (m_port <= 0 || m_user.isEmpty() || m_password.isEmpty())
        m_reason = QStringLiteral("the server's port, user or password is missing in %1").arg(m_dir);
}

bool SftpTestServer::require(const char* file, int line) const
{
    if (m_reason.isEmpty())
        return true;
    const QByteArray message = QStringLiteral("SFTP test server unavailable: %1").arg(m_reason).toUtf8();
    if (qEnvironmentVariableIsSet("CI") || (!m_dir.isEmpty() && ::geteuid() == 0))
        QTest::qFail(message.constData(), file, line);
    else
        QTest::qSkip(message.constData(), file, line);
    return false;
}

QString SftpTestServer::text(const QString& name) const
{
    return readFile(path(name)).trimmed();
}

QString SftpTestServer::readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

} // namespace NvbTest
