#include <QFile>
#include <QJsonArray>
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
    void shouldPinOneLeafPerEndpoint();
    void shouldRefuseTextThatIsNoCertificate_data();
    void shouldRefuseTextThatIsNoCertificate();

private:
    QJsonArray pins() const;

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

QJsonArray TestSslCommands::pins() const
{
    const auto reply = SyncCommand::run(QLatin1String(System::ReadFromSslStorage::Name), {});
    return reply.data.value(QStringLiteral("certificates")).toArray();
}

void TestSslCommands::shouldPinOneLeafPerEndpoint()
{
    const QByteArray other = readFile(QStringLiteral(NVB_TEST_DATA_DIR "/other-cert.pem"));
    const auto append = [](const QByteArray& pem, const QString& endpoint) {
        return SyncCommand::run(QLatin1String(System::AppendToSslStorage::Name),
            {{QStringLiteral("pem"), QString::fromLatin1(pem)}, {QStringLiteral("endpoint"), endpoint}});
    };
    for (const QByteArray& pem : {m_pem, m_pem, other}) {
        const auto reply = append(pem, QStringLiteral("https://S3.Example.com:9000/bucket"));
        QVERIFY2(!reply.isError, qPrintable(reply.errorString));
        QVERIFY(reply.data.value(QStringLiteral("success")).toBool());
    }
    QVERIFY(!append(m_pem, QStringLiteral("other.example.com")).isError);

    // The last certificate trusted for an endpoint replaces the earlier one.
    const QJsonArray kept = pins();
    QCOMPARE(kept.size(), 2);
    QCOMPARE(kept.at(0).toObject().value("endpoint").toString(), QStringLiteral("other.example.com:443"));
    QCOMPARE(QSslCertificate(kept.at(0).toObject().value("pem").toString().toLatin1()), QSslCertificate(m_pem));
    QCOMPARE(kept.at(1).toObject().value("endpoint").toString(), QStringLiteral("s3.example.com:9000"));
    QCOMPARE(QSslCertificate(kept.at(1).toObject().value("pem").toString().toLatin1()), QSslCertificate(other));

    // A bundle or a pin without its endpoint is refused.
    const auto bundle = append(m_pem + other, QStringLiteral("third.example.com"));
    QVERIFY(bundle.isError);
    QVERIFY2(bundle.errorString.contains(QStringLiteral("Exactly one")), qPrintable(bundle.errorString));
    QVERIFY(SyncCommand::run(
        QLatin1String(System::AppendToSslStorage::Name), {{QStringLiteral("pem"), QString::fromLatin1(m_pem)}})
                .isError);
    QCOMPARE(pins().size(), 2);

    // The pins are the engine's: they outlive it, and can be taken back.
    QVERIFY(m_engine->stop());
    QVERIFY2(m_engine->start(), m_engine->output().constData());
    QVERIFY(QTest::qWaitFor([this] { return pins().size() == 2; }, 10000));
    QVERIFY(!SyncCommand::run(
        QLatin1String(System::RemoveFromSslStorage::Name), {{QStringLiteral("pem"), QString::fromLatin1(m_pem)}})
                 .isError);
    QCOMPARE(pins().size(), 1);
    QFile database(m_engine->dataDirectory() + QStringLiteral("/nvbackup.db"));
    QCOMPARE(database.permissions() & (QFileDevice::ReadOther | QFileDevice::ReadGroup), QFileDevice::Permissions());
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
    params.insert(QStringLiteral("endpoint"), QStringLiteral("fourth.example.com"));
    const int before = pins().size();
    const auto reply = SyncCommand::run(QLatin1String(System::AppendToSslStorage::Name), params);
    QVERIFY(reply.answered);
    QVERIFY(reply.isError);
    QVERIFY(!reply.errorString.isEmpty());
    QCOMPARE(pins().size(), before);
}

NVB_TEST_MAIN(TestSslCommands)
#include "tst_sslcommands.moc"
