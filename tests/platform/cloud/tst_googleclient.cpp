#include <QtTest>

#include "cloud/cloudconfig.h"
#include "cloud/cloudtype.h"
#include "cloud/listingobject.h"
#include "cloud/operationerror.h"
#include "cloud/providers/googleclient.h"

using namespace NVL::Cloud;
namespace Sa = Config::GoogleStorage::Auth_ServiceAccount;

// The Google client's service-account sign-in and JSON API against our fake
// (tests/support/servers/google_fake.py, started here and stopped by its
// pid), which verifies the assertion's RS256 signature with the account's
// public key and the access token on every call.
class TestGoogleClient : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void shouldSignInWithEitherKeyFormAndUseBuckets_data();
    void shouldSignInWithEitherKeyFormAndUseBuckets();
    void shouldRefuseAKeyTheProviderDoesNotKnow();

private:
    QMap<QString, QVariant> config(const QString& keyFile) const;

    QTemporaryDir m_dir;
    QProcess m_fake;
    CancelToken m_cancel;
};

void TestGoogleClient::initTestCase()
{
    m_fake.start(QStringLiteral("python3"), {QStringLiteral(NVB_GOOGLE_FAKE), m_dir.path()});
    QVERIFY(m_fake.waitForStarted(10000));
    QVERIFY(QTest::qWaitFor([&] { return QFile::exists(m_dir.filePath(QStringLiteral("port"))); }, 20000));
    QFile port(m_dir.filePath(QStringLiteral("port")));
    QVERIFY(port.open(QIODevice::ReadOnly));
    // A PKCS #12 key names no token endpoint; the usual one is replaced.
    qputenv("NVB_GOOGLE_TOKEN_URL", "http://127.0.0.1:" + port.readAll() + "/token");
}

void TestGoogleClient::cleanupTestCase()
{
    m_fake.kill();
    m_fake.waitForFinished(5000);
}

QMap<QString, QVariant> TestGoogleClient::config(const QString& keyFile) const
{
    QFile key(m_dir.filePath(keyFile));
    key.open(QIODevice::ReadOnly);
    const QString endpoint = QString::fromUtf8(qgetenv("NVB_GOOGLE_TOKEN_URL")).remove(QStringLiteral("/token"));
    return {{Config::Type, Name::GoogleStorage}, {Config::GoogleStorage::AuthType, 1},
        {Sa::ProjectId, QStringLiteral("nvb-project")},
        {Sa::ServiceAccount, QStringLiteral("backup@nvb-project.iam.gserviceaccount.com")},
        {Sa::PrivateKey, QString::fromLatin1(key.readAll().toBase64())}, {Api::Config::Http::Endpoint, endpoint}};
}

void TestGoogleClient::shouldSignInWithEitherKeyFormAndUseBuckets_data()
{
    QTest::addColumn<QString>("keyFile");
    QTest::addColumn<QString>("bucket");
    QTest::newRow("JSON key") << "key.json"
                              << "nvb-from-json";
    QTest::newRow("PKCS #12 key") << "key.p12"
                                  << "nvb-from-p12";
}

void TestGoogleClient::shouldSignInWithEitherKeyFormAndUseBuckets()
{
    QFETCH(QString, keyFile);
    QFETCH(QString, bucket);
    GoogleClient client;
    OperationResult result = client.createContainer(config(keyFile),
        {{QStringLiteral("Name"), bucket}, {QStringLiteral("Location"), QStringLiteral("EU")},
            {QStringLiteral("StorageClass"), QStringLiteral("NEARLINE")}},
        m_cancel);
    QVERIFY2(!result.isError(), qPrintable(result.errorMessage));
    result = client.createContainer(config(keyFile), {{QStringLiteral("Name"), bucket}}, m_cancel);
    QCOMPARE(result.errorCode, int(OperationError::AlreadyExists));
    result = client.listContainers(config(keyFile), m_cancel);
    QVERIFY2(!result.isError(), qPrintable(result.errorMessage));
    QStringList names;
    for (const QJsonValue& value : qAsConst(result.data))
        names << value.toObject().value(QStringLiteral("Name")).toString() + QLatin1Char('@')
                + value.toObject().value(QStringLiteral("Location")).toString();
    QVERIFY2(names.contains(bucket + QStringLiteral("@EU")) && names.contains(QStringLiteral("nvb-seeded@US")),
        qPrintable(names.join(QLatin1Char(' '))));

    QMap<QString, QVariant> settings = config(keyFile);
    settings.insert(OperationConfig::ContainerName, QStringLiteral("nvb-seeded"));
    QVERIFY(!client.checkConfig(settings, m_cancel).isError());
    QStringList level;
    ListingRequest request {QString(), QStringLiteral("/"), QString(), 2};
    do {
        result = client.listing(settings, request, m_cancel);
        QVERIFY2(!result.isError(), qPrintable(result.errorMessage));
        for (const QJsonValue& value : qAsConst(result.data)) {
            const Api::ListingObject object(value.toObject());
            level << object.name() + (object.isFolder() ? QStringLiteral("/") : QString());
        }
        request.marker = result.marker;
    } while (!request.marker.isEmpty());
    QCOMPARE(level, QStringList({"NVB_a/", "NVB_b/", "top"}));
}

void TestGoogleClient::shouldRefuseAKeyTheProviderDoesNotKnow()
{
    GoogleClient client;
    OperationResult result = client.listContainers(config(QStringLiteral("stranger.json")), m_cancel);
    QCOMPARE(result.errorCode, int(OperationError::AuthenticationFailed));
    QVERIFY2(result.errorMessage.contains(QStringLiteral("not valid")), qPrintable(result.errorMessage));

    QMap<QString, QVariant> settings = config(QStringLiteral("key.json"));
    settings.insert(Sa::PrivateKey, QString::fromLatin1(QByteArray("not a key").toBase64()));
    result = client.listContainers(settings, m_cancel);
    QCOMPARE(result.errorCode, int(OperationError::InvalidConfig));
}

QTEST_GUILESS_MAIN(TestGoogleClient)
#include "tst_googleclient.moc"
