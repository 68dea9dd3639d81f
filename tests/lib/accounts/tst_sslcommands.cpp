#include <QFile>
#include <QSslCertificate>
#include <QSslKey>
#include <QSslSocket>
#include <QTcpServer>
#include <QtTest>

#include "engineprocess.h"
#include "service/commands/system.h"
#include "service/connectionmanager.h"
#include "synccommand.h"
#include "testmain.h"

using NvbTest::EngineProcess;
using NvbTest::SyncCommand;
namespace System = NVB::Common::Communication::Commands::Format::System;

namespace {

QByteArray readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// A TLS server with the test certificate, served from the test's own loop
// while the engine connects to it.
class TlsServer : public QTcpServer
{
public:
    explicit TlsServer(bool handshake)
        : m_handshake(handshake)
        , m_certificate(readFile(QStringLiteral(NVB_TEST_DATA_DIR "/test-cert.pem")))
        , m_key(readFile(QStringLiteral(NVB_TEST_DATA_DIR "/test-key.pem")), QSsl::Rsa)
    { }

protected:
    void incomingConnection(qintptr descriptor) override
    {
        auto* socket = new QSslSocket(this);
        socket->setSocketDescriptor(descriptor);
        if (!m_handshake)
            return;
        socket->setLocalCertificate(m_certificate);
        socket->setPrivateKey(m_key);
        socket->startServerEncryption();
    }

private:
    bool m_handshake;
    QSslCertificate m_certificate;
    QSslKey m_key;
};

} // namespace

class TestSslCommands : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void shouldFetchTheServersCertificate_data();
    void shouldFetchTheServersCertificate();
    void shouldExplainWhyNoCertificateCame_data();
    void shouldExplainWhyNoCertificateCame();
    void shouldGiveUpOnServerThatNeverAnswers();
    void shouldKeepEachTrustedCertificateOnce();
    void shouldRefuseTextThatIsNoCertificate_data();
    void shouldRefuseTextThatIsNoCertificate();

private:
    QString trustedFile() const { return m_engine->dataDirectory() + QStringLiteral("/trusted-certificates.pem"); }

    EngineProcess* m_engine = nullptr;
    QByteArray m_pem;
};

void TestSslCommands::initTestCase()
{
    if (!QSslSocket::supportsSsl())
        QSKIP("Qt has no SSL support here");
    m_pem = readFile(QStringLiteral(NVB_TEST_DATA_DIR "/test-cert.pem"));
    QVERIFY(!QSslCertificate(m_pem).isNull());
    m_engine = new EngineProcess;
    QVERIFY2(m_engine->start(), m_engine->output().constData());
    m_engine->exportSocketPath();
    QVERIFY(QTest::qWaitFor(
        [] {
            const auto connection = NVB::Common::Communication::ConnectionManager::instance();
            return connection && connection->isLocalManagmentConnected();
        },
        10000));
}

void TestSslCommands::cleanupTestCase()
{
    if (m_engine)
        QVERIFY(m_engine->stop());
    delete m_engine;
}

void TestSslCommands::shouldFetchTheServersCertificate_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::newRow("URL") << "https://127.0.0.1:%1";
    QTest::newRow("URL with path") << "https://127.0.0.1:%1/bucket/";
    QTest::newRow("host and port") << "127.0.0.1:%1";
}

void TestSslCommands::shouldFetchTheServersCertificate()
{
    QFETCH(QString, pattern);
    TlsServer server(true);
    QVERIFY(server.listen(QHostAddress::LocalHost));
    const auto reply = SyncCommand::run(QLatin1String(System::GetPeerSslCertificate::Name),
        {{QStringLiteral("endpoint"), pattern.arg(server.serverPort())}}, 30000);
    QVERIFY(reply.answered);
    QVERIFY2(!reply.isError, qPrintable(reply.errorString));
    const QSslCertificate got(reply.data.value(QStringLiteral("pem")).toString().toUtf8());
    QCOMPARE(got, QSslCertificate(m_pem));
    QVERIFY(reply.data.value(QStringLiteral("success")).toBool());
}

void TestSslCommands::shouldExplainWhyNoCertificateCame_data()
{
    QTest::addColumn<QString>("endpoint");
    QTest::addColumn<QString>("message");
    QTcpServer closed;
    QVERIFY(closed.listen(QHostAddress::LocalHost));
    const quint16 port = closed.serverPort();
    closed.close();
    QTest::newRow("nobody listens") << QStringLiteral("127.0.0.1:%1").arg(port)
                                    << QStringLiteral("Can't get the certificate of 127.0.0.1:%1").arg(port);
    QTest::newRow("empty") << QString() << QStringLiteral("endpoint");
    QTest::newRow("no host") << QStringLiteral("https://:443") << QStringLiteral("is no endpoint");
    QTest::newRow("bad port") << QStringLiteral("host:99999") << QStringLiteral("is no endpoint");
}

void TestSslCommands::shouldExplainWhyNoCertificateCame()
{
    QFETCH(QString, endpoint);
    QFETCH(QString, message);
    const auto reply = SyncCommand::run(
        QLatin1String(System::GetPeerSslCertificate::Name), {{QStringLiteral("endpoint"), endpoint}}, 30000);
    QVERIFY(reply.answered);
    QVERIFY(reply.isError);
    QVERIFY2(reply.errorString.contains(message), qPrintable(reply.errorString));
}

void TestSslCommands::shouldGiveUpOnServerThatNeverAnswers()
{
    TlsServer silent(false);
    QVERIFY(silent.listen(QHostAddress::LocalHost));
    const auto reply = SyncCommand::run(QLatin1String(System::GetPeerSslCertificate::Name),
        {{QStringLiteral("endpoint"), QStringLiteral("127.0.0.1:%1").arg(silent.serverPort())}}, 45000);
    QVERIFY(reply.answered);
    QVERIFY(reply.isError);
    QVERIFY2(reply.errorString.startsWith(QStringLiteral("Can't get the certificate")), qPrintable(reply.errorString));
    // The engine is free again afterwards.
    QVERIFY(SyncCommand::run(
        QLatin1String(System::AppendToSslStorage::Name), {{QStringLiteral("pem"), QString::fromLatin1(m_pem)}})
                .answered);
}

void TestSslCommands::shouldKeepEachTrustedCertificateOnce()
{
    const QByteArray other = readFile(QStringLiteral(NVB_TEST_DATA_DIR "/other-cert.pem"));
    for (const QByteArray& pem : {m_pem, m_pem, other, m_pem}) {
        const auto reply = SyncCommand::run(
            QLatin1String(System::AppendToSslStorage::Name), {{QStringLiteral("pem"), QString::fromLatin1(pem)}});
        QVERIFY(reply.answered);
        QVERIFY2(!reply.isError, qPrintable(reply.errorString));
        QVERIFY(reply.data.value(QStringLiteral("success")).toBool());
    }
    const QList<QSslCertificate> kept = QSslCertificate::fromPath(trustedFile());
    QCOMPARE(kept.size(), 2);
    QVERIFY(kept.contains(QSslCertificate(m_pem)));
    QVERIFY(kept.contains(QSslCertificate(other)));
    QCOMPARE(QFile(trustedFile()).permissions() & (QFileDevice::ReadOther | QFileDevice::WriteOther),
        QFileDevice::Permissions());
}

void TestSslCommands::shouldRefuseTextThatIsNoCertificate_data()
{
    QTest::addColumn<QJsonObject>("params");
    QTest::newRow("garbage") << QJsonObject {{QStringLiteral("pem"), QStringLiteral("not a certificate")}};
    QTest::newRow("empty") << QJsonObject {{QStringLiteral("pem"), QString()}};
    QTest::newRow("missing") << QJsonObject {};
    QTest::newRow("wrong type") << QJsonObject {{QStringLiteral("pem"), 7}};
}

void TestSslCommands::shouldRefuseTextThatIsNoCertificate()
{
    QFETCH(QJsonObject, params);
    const QByteArray before = readFile(trustedFile());
    const auto reply = SyncCommand::run(QLatin1String(System::AppendToSslStorage::Name), params);
    QVERIFY(reply.answered);
    QVERIFY(reply.isError);
    QVERIFY(!reply.errorString.isEmpty());
    QCOMPARE(readFile(trustedFile()), before);
}

NVB_TEST_MAIN(TestSslCommands)
#include "tst_sslcommands.moc"
