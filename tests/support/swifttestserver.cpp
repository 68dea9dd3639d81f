#include "swifttestserver.h"

#include <QFile>
#include <QFileInfo>
#include <QTest>

namespace NvbTest {

namespace {

QString readTrimmed(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).trimmed() : QString();
}

} // namespace

SwiftTestServer::SwiftTestServer()
    : m_dir(qEnvironmentVariable("NVB_TEST_SWIFT_DIR"))
{
    if (m_dir.isEmpty())
        m_reason = QStringLiteral("NVB_TEST_SWIFT_DIR is not set; run through ctest or start "
                                  "tests/support/servers/swift.sh yourself");
    else if (QFileInfo::exists(m_dir + QStringLiteral("/unavailable")))
        m_reason = readTrimmed(m_dir + QStringLiteral("/unavailable"));
    else {
        m_port = readTrimmed(m_dir + QStringLiteral("/port")).toInt();
        m_keystonePort = readTrimmed(m_dir + QStringLiteral("/keystone_port")).toInt();
    }
    if (m_reason.isEmpty() && m_port <= 0)
        m_reason = QStringLiteral("no Swift test server runs in %1").arg(m_dir);
}

bool SwiftTestServer::require(const char* file, int line) const
{
    if (m_reason.isEmpty())
        return true;
    const QByteArray message = QStringLiteral("Swift test server unavailable: %1").arg(m_reason).toUtf8();
    if (qEnvironmentVariableIsSet("CI"))
        QTest::qFail(message.constData(), file, line);
    else
        QTest::qSkip(message.constData(), file, line);
    return false;
}

QString SwiftTestServer::endpoint() const
{
    return QStringLiteral("127.0.0.1:%1").arg(m_port);
}

} // namespace NvbTest
