#pragma once

#include <QString>

namespace NvbTest {

// The OpenStack Swift (with S3) that tests/support/servers/swift.sh started
// for ctest's "swift" fixture; its folder comes in NVB_TEST_SWIFT_DIR.
class SwiftTestServer
{
public:
    SwiftTestServer();

    bool isAvailable() const { return m_reason.isEmpty(); }
    // Fails under CI (a skipped suite would hide a broken client), skips
    // elsewhere; true when the server runs.
    bool require(const char* file, int line) const;

    int port() const { return m_port; }
    // "127.0.0.1:PORT"
    QString endpoint() const;
    // The identity fake's port (Keystone v2.0 and v3), 0 when it is not there.
    int keystonePort() const { return m_keystonePort; }
    static QString accessKey() { return QStringLiteral("test:tester"); }
    static QString secretKey() { return QStringLiteral("testing"); }

private:
    QString m_dir;
    QString m_reason;
    int m_port = 0;
    int m_keystonePort = 0;
};

} // namespace NvbTest
