#include <QSslCertificate>
#include <QtTest>

#include "cloud/certificatepins.h"
#include "cloud/cloudconfig.h"
#include "cloud/cloudtype.h"
#include "cloud/listingobject.h"
#include "cloud/operationerror.h"
#include "cloud/providers/azureblobclient.h"
#include "tlsfront.h"

using namespace NVL::Cloud;
namespace AZ = Config::AzureBlob;

// The Azure Blob client against Azurite, which checks SharedKey signatures,
// as an Azure Stack endpoint.
class TestAzureBlobClient : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void shouldCreateListAndPageContainers();
    void shouldRefuseWrongKeyAndBadNames();
    void shouldListBehindTlsOncePinned();

private:
    QMap<QString, QVariant> config() const;

    int m_port = 0;
    CancelToken m_cancel;
};

void TestAzureBlobClient::initTestCase()
{
    const QString dir = qEnvironmentVariable("NVB_TEST_AZURITE_DIR");
    QFile unavailable(dir + QStringLiteral("/unavailable"));
    QFile port(dir + QStringLiteral("/port"));
    if (dir.isEmpty() || unavailable.exists() || !port.open(QIODevice::ReadOnly)) {
        const QByteArray why = unavailable.open(QIODevice::ReadOnly)
            ? unavailable.readAll().trimmed()
            : QByteArray("no Azurite runs (NVB_TEST_AZURITE_DIR)");
        if (qEnvironmentVariableIsSet("CI"))
            QFAIL(why.constData());
        QSKIP(why.constData());
    }
    m_port = port.readAll().trimmed().toInt();
}

QMap<QString, QVariant> TestAzureBlobClient::config() const
{
    return {{Config::Type, Name::AzureBlob}, {AZ::Username, QStringLiteral("devstoreaccount1")},
        {AZ::Password,
            QStringLiteral("Eby8vdM02xNOcqFlqUwJPLlmEtlCDXJ1OUzFT50uSRZ6IFsuFq2UVErCz4I6tq/K1SZFPTOtr/KBHBeksoGMGw==")},
        {AZ::AccountTypes::Key, AZ::AccountTypes::Value::AzureStack},
        {Api::Config::Http::Endpoint, QStringLiteral("127.0.0.1:%1").arg(m_port)}, {Api::Config::Http::UseSsl, false}};
}

void TestAzureBlobClient::shouldCreateListAndPageContainers()
{
    AzureBlobClient client;
    QVERIFY(!client.checkConfig(config(), m_cancel).isError());
    // Azurite keeps its containers while it runs: a name of this run.
    const QString container = QStringLiteral("nvb-%1").arg(QDateTime::currentMSecsSinceEpoch());
    OperationResult result = client.createContainer(
        config(), {{QStringLiteral("Name"), container}, {QStringLiteral("Access"), QStringLiteral("blob")}}, m_cancel);
    QVERIFY2(!result.isError(), qPrintable(result.errorMessage));
    result = client.createContainer(config(), {{QStringLiteral("Name"), container}}, m_cancel);
    QCOMPARE(result.errorCode, int(OperationError::AlreadyExists));
    result = client.listContainers(config(), m_cancel);
    QVERIFY2(!result.isError(), qPrintable(result.errorMessage));
    QVERIFY(result.data.contains(QJsonObject {{QStringLiteral("Name"), container}}));

    QMap<QString, QVariant> settings = config();
    settings.insert(OperationConfig::ContainerName, container);
    for (const char* name : {"NVB_a/1", "NVB_a/2 two", "NVB_b/1", "top"}) {
        AzureBlobClient::Request put;
        put.method = "PUT";
        put.path = container + QLatin1Char('/') + QLatin1String(name);
        put.body = name;
        put.headers = {{"x-ms-blob-type", "BlockBlob"}, {"Content-Type", "application/octet-stream"}};
        HttpExchange exchange;
        result = client.request(settings, put, &exchange, m_cancel);
        QVERIFY2(!result.isError(), qPrintable(result.errorMessage));
    }
    QStringList level;
    QString marker;
    int pages = 0;
    do {
        result = client.listing(settings, {QString(), QStringLiteral("/"), marker, 2}, m_cancel);
        QVERIFY2(!result.isError(), qPrintable(result.errorMessage));
        for (const QJsonValue& value : qAsConst(result.data)) {
            const Api::ListingObject object(value.toObject());
            level << object.name() + (object.isFolder() ? QStringLiteral("/") : QString());
        }
        marker = result.marker;
        QVERIFY(++pages < 10);
    } while (!marker.isEmpty());
    level.sort();
    QCOMPARE(level, QStringList({"NVB_a/", "NVB_b/", "top"}));
    result = client.listing(settings, {QStringLiteral("NVB_a/"), QStringLiteral("/"), QString(), 0}, m_cancel);
    QCOMPARE(result.data.size(), 2);
    const Api::ListingObject second(result.data.at(1).toObject());
    QCOMPARE(second.name(), QStringLiteral("NVB_a/2 two"));
    QCOMPARE(second.size(), qint64(11));
    QVERIFY(second.lastModified().isValid());
}

void TestAzureBlobClient::shouldRefuseWrongKeyAndBadNames()
{
    QMap<QString, QVariant> wrong = config();
    wrong.insert(AZ::Password, QStringLiteral("d3Jvbmc="));
    OperationResult result = AzureBlobClient().listContainers(wrong, m_cancel);
    QCOMPARE(result.errorCode, int(OperationError::AuthenticationFailed));

    for (const char* name : {"ab", "Upper", "double--hyphen", "-start", "end-"})
        QCOMPARE(AzureBlobClient()
                     .createContainer(config(), {{QStringLiteral("Name"), QLatin1String(name)}}, m_cancel)
                     .errorCode,
            int(OperationError::InvalidName));
    QMap<QString, QVariant> missing = config();
    missing.insert(OperationConfig::ContainerName, QStringLiteral("nvb-never-made"));
    result = AzureBlobClient().listing(missing, {}, m_cancel);
    QCOMPARE(result.errorCode, int(OperationError::NotFound));
    QVERIFY(result.errorMessage.contains(QLatin1String("nvb-never-made")));
}

// Azurite behind a TLS front with a certificate no authority signed: refused
// with the certificate offered for trust, then listed once it is pinned for
// that host and port.
void TestAzureBlobClient::shouldListBehindTlsOncePinned()
{
    NvbTest::TlsFront front;
    QVERIFY(front.start(m_port));
    QMap<QString, QVariant> settings = config();
    settings.insert(Api::Config::Http::Endpoint, QStringLiteral("127.0.0.1:%1").arg(front.port()));
    settings.insert(Api::Config::Http::UseSsl, true);
    OperationResult result = AzureBlobClient().listContainers(settings, m_cancel);
    QCOMPARE(result.errorCode, int(OperationError::SslUntrusted));
    const QSslCertificate seen(result.config.value(Api::Config::Http::PeerCertificate).toByteArray());
    QCOMPARE(seen, QSslCertificate(front.certificate()));
    CertificatePins::instance().add({QStringLiteral("127.0.0.1"), front.port(), CertificatePins::fingerprint(seen)});
    result = AzureBlobClient().listContainers(settings, m_cancel);
    CertificatePins::instance().set({});
    QVERIFY2(!result.isError(), qPrintable(result.errorMessage));
}

QTEST_GUILESS_MAIN(TestAzureBlobClient)
#include "tst_azureblobclient.moc"
