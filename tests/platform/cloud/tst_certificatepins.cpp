#include <QtTest>

#include <QProcess>
#include <QTcpServer>
#include <QTemporaryDir>

#include "cloud/certificatepins.h"
#include "cloud/cloudconfig.h"
#include "cloud/operationerror.h"
#include "cloud/tlspeercheck.h"
#include "testmain.h"

using namespace NVL::Cloud;

// Against a real TLS server on 127.0.0.1 (openssl s_server) whose
// self-signed certificate no authority vouches for.
class TestCertificatePins : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void shouldTrustPinnedLeafForItsHostAndPortOnly();

private:
    QTemporaryDir m_dir;
    QProcess m_server;
    int m_port = 0;
    QSslCertificate m_certificate;
};

void TestCertificatePins::initTestCase()
{
    if (QStandardPaths::findExecutable(QStringLiteral("openssl")).isEmpty())
        QSKIP("openssl is not installed (package openssl)");
    const QString cert = m_dir.filePath(QStringLiteral("cert.pem"));
    const QString key = m_dir.filePath(QStringLiteral("key.pem"));
    QProcess make;
    make.start(QStringLiteral("openssl"),
        {"req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "2", "-subj", "/CN=nvb-test-server", "-addext",
            "subjectAltName=DNS:localhost,IP:127.0.0.1", "-keyout", key, "-out", cert});
    QVERIFY(make.waitForFinished(60000));
    QCOMPARE(make.exitCode(), 0);
    const QList<QSslCertificate> certificates = QSslCertificate::fromPath(cert);
    QCOMPARE(certificates.size(), 1);
    m_certificate = certificates.first();

    QTcpServer probe;
    QVERIFY(probe.listen(QHostAddress::LocalHost));
    m_port = probe.serverPort();
    probe.close();
    m_server.setProcessChannelMode(QProcess::MergedChannels);
    m_server.start(QStringLiteral("openssl"),
        {"s_server", "-accept", QStringLiteral("127.0.0.1:%1").arg(m_port), "-cert", cert, "-key", key, "-www",
            "-quiet"});
    QVERIFY(m_server.waitForStarted(10000));
    QVERIFY(QTest::qWaitFor(
        [this] {
            QTcpSocket socket;
            socket.connectToHost(QHostAddress::LocalHost, quint16(m_port));
            return socket.waitForConnected(200);
        },
        10000));
}

void TestCertificatePins::cleanupTestCase()
{
    if (m_server.state() != QProcess::NotRunning) {
        m_server.kill();
        m_server.waitForFinished(5000);
    }
}

void TestCertificatePins::shouldTrustPinnedLeafForItsHostAndPortOnly()
{
    CertificatePins::instance().set({});
    const TlsPeerCheck::Result refused = TlsPeerCheck::run(QStringLiteral("127.0.0.1"), m_port, 10000);
    QVERIFY(!refused.trusted);
    // What the dialog shows is what this connection saw, and why it failed.
    QCOMPARE(refused.leaf, m_certificate);
    QVERIFY2(refused.reasons.join(' ').contains(QStringLiteral("self-signed"), Qt::CaseInsensitive),
        qPrintable(refused.reasons.join(' ')));
    const OperationResult answer = refused.toOperationResult({{Config::Type, QStringLiteral("S3Compatible")}});
    QCOMPARE(answer.errorCode, int(OperationError::SslUntrusted));
    QCOMPARE(QSslCertificate(answer.config.value(Api::Config::Http::PeerCertificate).toByteArray()), m_certificate);
    QVERIFY(!answer.config.value(Api::Config::Http::PeerCertificateErrors).toStringList().isEmpty());

    CertificatePins::instance().add({QStringLiteral("127.0.0.1"), m_port, CertificatePins::fingerprint(m_certificate)});
    const TlsPeerCheck::Result pinned = TlsPeerCheck::run(QStringLiteral("127.0.0.1"), m_port, 10000);
    QVERIFY2(pinned.trusted, qPrintable(pinned.error + pinned.reasons.join(' ')));
    QVERIFY(!pinned.toOperationResult({}).isError());

    // The same server under another name is not the endpoint the user trusted.
    const TlsPeerCheck::Result otherHost = TlsPeerCheck::run(QStringLiteral("localhost"), m_port, 10000);
    QVERIFY(!otherHost.trusted);
    QCOMPARE(otherHost.leaf, m_certificate);

    // A pin is not an authority: a different certificate for the pinned
    // endpoint is refused.
    CertificatePins::instance().add({QStringLiteral("127.0.0.1"), m_port, QByteArray(32, '\x01')});
    QVERIFY(!TlsPeerCheck::run(QStringLiteral("127.0.0.1"), m_port, 10000).trusted);
    CertificatePins::instance().set({});
}

NVB_TEST_GUILESS_MAIN(TestCertificatePins)
#include "tst_certificatepins.moc"
