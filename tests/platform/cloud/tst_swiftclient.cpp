#include <QSslCertificate>
#include <QtTest>

#include "cloud/certificatepins.h"
#include "cloud/cloudconfig.h"
#include "cloud/cloudtype.h"
#include "cloud/listingobject.h"
#include "cloud/operationerror.h"
#include "cloud/providers/curlhttp.h"
#include "cloud/providers/swiftclient.h"
#include "swifttestserver.h"
#include "tlsfront.h"

using namespace NVL::Cloud;
namespace OS = Config::OpenStack;
using Settings = QMap<QString, QVariant>;

// The Swift client against a real OpenStack Swift: auth v1.0 straight, and
// Keystone v2.0 and v3 through our identity fake, whose catalog points at it.
class TestSwiftClient : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void shouldLogInCreateAndListWithEveryAuth_data();
    void shouldLogInCreateAndListWithEveryAuth();
    void shouldRefuseWrongKeysAndUnknownRegions();
    void shouldRenewARefusedTokenOnlyOnce();
    void shouldLogInBehindTlsOncePinned_data();
    void shouldLogInBehindTlsOncePinned();

private:
    // Asks the identity fake (see keystone_fake.py) and answers its JSON.
    QJsonObject keystoneControl(const QString& path) const;
    Settings v1() const;
    Settings keystone(int version) const;

    NvbTest::SwiftTestServer m_server;
    CancelToken m_cancel;
};

void TestSwiftClient::initTestCase()
{
    m_server.require(__FILE__, __LINE__);
}

Settings TestSwiftClient::v1() const
{
    return {{Config::Type, Name::Openstack}, {OS::Username, m_server.accessKey()}, {OS::ApiKey, m_server.secretKey()},
        {Api::Config::Http::Endpoint, m_server.endpoint() + QStringLiteral("/auth/v1.0")},
        {Api::Config::Http::UseSsl, false}, {OS::AuthType, 1}};
}

Settings TestSwiftClient::keystone(int version) const
{
    return {{Config::Type, Name::Openstack}, {OS::Username, QStringLiteral("demo")},
        {OS::ApiKey, QStringLiteral("secret")},
        {Api::Config::Http::Endpoint,
            QStringLiteral("127.0.0.1:%1/%2").arg(m_server.keystonePort()).arg(version == 2 ? "v2.0" : "v3")},
        {Api::Config::Http::UseSsl, false}, {OS::AuthType, version}};
}

void TestSwiftClient::shouldLogInCreateAndListWithEveryAuth_data()
{
    if (!m_server.isAvailable())
        QSKIP("no server");
    QTest::addColumn<Settings>("settings");
    QTest::addColumn<QString>("region");
    QTest::newRow("v1") << v1() << QString();
    Settings byName = keystone(2);
    byName.insert(OS::Auth_Keystore_V2::TenantName, QStringLiteral("demo"));
    QTest::newRow("v2 tenant name") << byName << "RegionOne";
    Settings byId = keystone(2);
    byId.insert(OS::Auth_Keystore_V2::TenantId, QStringLiteral("p-demo"));
    byId.insert(OS::Auth_Keystore_V2::Region, QStringLiteral("RegionOne"));
    QTest::newRow("v2 tenant id, region") << byId << "RegionOne";
    Settings scoped = keystone(3);
    scoped.insert(OS::Auth_Keystore_V3::DomainName, QStringLiteral("Default"));
    scoped.insert(OS::Auth_Keystore_V3::UseScope::Key, 1);
    scoped.insert(OS::Auth_Keystore_V3::UseScope::ProjectName, QStringLiteral("demo"));
    QTest::newRow("v3 names, project scope") << scoped << "RegionOne";
    Settings ids = keystone(3);
    ids.insert(OS::Auth_Keystore_V3::DomainId, QStringLiteral("default"));
    ids.insert(OS::Auth_Keystore_V3::UseScope::Key, 1);
    ids.insert(OS::Auth_Keystore_V3::UseScope::ProjectId, QStringLiteral("p-demo"));
    ids.insert(OS::UseInternalUrl, true);
    QTest::newRow("v3 ids, internal URL") << ids << "RegionOne";
}

void TestSwiftClient::shouldLogInCreateAndListWithEveryAuth()
{
    QFETCH(Settings, settings);
    QFETCH(QString, region);
    SwiftClient client;
    OperationResult result = client.checkConfig(settings, m_cancel);
    QVERIFY2(!result.isError(), qPrintable(result.errorMessage));

    const QString container = QStringLiteral("nvb swift %1").arg(QString::fromLatin1(QTest::currentDataTag()));
    result = client.createContainer(settings, {{QStringLiteral("Name"), container}}, m_cancel);
    QVERIFY2(!result.isError() || result.errorCode == OperationError::AlreadyExists, qPrintable(result.errorMessage));
    result = client.listContainers(settings, m_cancel);
    QVERIFY2(!result.isError(), qPrintable(result.errorMessage));
    bool found = false;
    for (const QJsonValue& value : qAsConst(result.data)) {
        const QJsonObject object = value.toObject();
        if (object.value(QStringLiteral("Name")).toString() == container) {
            found = true;
            QCOMPARE(object.value(QStringLiteral("Region")).toString(), region);
        }
    }
    QVERIFY(found);

    settings.insert(OperationConfig::ContainerName, container);
    for (const char* key : {"NVB_a/1", "NVB_a/2", "NVB_b/1", "top"}) {
        HttpExchange put;
        result = client.request(settings, "PUT", container + QLatin1Char('/') + QLatin1String(key), {}, &put, m_cancel);
        QVERIFY2(!result.isError(), qPrintable(result.errorMessage));
    }
    QStringList level;
    QString marker;
    do {
        result = client.listing(settings, {QString(), QStringLiteral("/"), marker, 2}, m_cancel);
        QVERIFY2(!result.isError(), qPrintable(result.errorMessage));
        for (const QJsonValue& value : qAsConst(result.data)) {
            const Api::ListingObject object(value.toObject());
            level << object.name() + (object.isFolder() ? QStringLiteral("/") : QString());
        }
        QVERIFY(result.marker.isEmpty() || result.marker > marker);
        marker = result.marker;
    } while (!marker.isEmpty());
    QCOMPARE(level, QStringList({"NVB_a/", "NVB_b/", "top"}));
}

void TestSwiftClient::shouldRefuseWrongKeysAndUnknownRegions()
{
    if (!m_server.isAvailable())
        QSKIP("no server");
    Settings wrong = v1();
    wrong.insert(OS::ApiKey, QStringLiteral("nope"));
    OperationResult result = SwiftClient().listContainers(wrong, m_cancel);
    QCOMPARE(result.errorCode, int(OperationError::AuthenticationFailed));
    QVERIFY2(result.errorMessage.contains(QLatin1String("API key")), qPrintable(result.errorMessage));

    for (const int version : {2, 3}) {
        Settings refused = keystone(version);
        refused.insert(OS::ApiKey, QStringLiteral("nope"));
        refused.insert(OS::Auth_Keystore_V3::DomainName, QStringLiteral("Default"));
        QCOMPARE(SwiftClient().listContainers(refused, m_cancel).errorCode, int(OperationError::AuthenticationFailed));
    }
    // A v3 login without a project scope gets no catalog: a clear message.
    Settings unscoped = keystone(3);
    unscoped.insert(OS::Auth_Keystore_V3::DomainName, QStringLiteral("Default"));
    result = SwiftClient().listContainers(unscoped, m_cancel);
    QCOMPARE(result.errorCode, int(OperationError::NotFound));
    QVERIFY(result.errorMessage.contains(QLatin1String("catalog")));

    Settings elsewhere = keystone(2);
    elsewhere.insert(OS::Auth_Keystore_V2::Region, QStringLiteral("Nowhere"));
    result = SwiftClient().listContainers(elsewhere, m_cancel);
    QCOMPARE(result.errorCode, int(OperationError::NotFound));
    QVERIFY(result.errorMessage.contains(QLatin1String("Nowhere")));

    Settings missing = v1();
    missing.insert(OperationConfig::ContainerName, QStringLiteral("nvb-never-made"));
    QCOMPARE(SwiftClient().listing(missing, {}, m_cancel).errorCode, int(OperationError::NotFound));
    QCOMPARE(SwiftClient().createContainer(v1(), {{QStringLiteral("Name"), QStringLiteral("a/b")}}, m_cancel).errorCode,
        int(OperationError::InvalidName));
}

QJsonObject TestSwiftClient::keystoneControl(const QString& path) const
{
    HttpExchange exchange;
    exchange.url = QUrl(QStringLiteral("http://127.0.0.1:%1%2").arg(m_server.keystonePort()).arg(path));
    CurlHttp(CurlHttp::Options()).perform(exchange, m_cancel);
    return QJsonDocument::fromJson(exchange.body).object();
}

void TestSwiftClient::shouldRenewARefusedTokenOnlyOnce()
{
    if (!m_server.isAvailable() || !m_server.keystonePort())
        QSKIP("no server");
    // One token that ran out: the client logs in again and the listing goes
    // through on the second try.
    int before = keystoneControl(QStringLiteral("/control/logins")).value(QStringLiteral("logins")).toInt();
    keystoneControl(QStringLiteral("/control/expire?count=1"));
    SwiftClient client;
    OperationResult result = client.listContainers(keystone(2), m_cancel);
    QVERIFY2(!result.isError(), qPrintable(result.errorMessage));
    QCOMPARE(keystoneControl(QStringLiteral("/control/logins")).value(QStringLiteral("logins")).toInt(), before + 2);

    // Tokens refused however often the client logs in: it gives up after one
    // renewal instead of asking for ever.
    before += 2;
    keystoneControl(QStringLiteral("/control/expire?count=5"));
    result = SwiftClient().listContainers(keystone(2), m_cancel);
    QCOMPARE(result.errorCode, int(OperationError::AuthenticationFailed));
    QCOMPARE(keystoneControl(QStringLiteral("/control/logins")).value(QStringLiteral("logins")).toInt(), before + 2);
    keystoneControl(QStringLiteral("/control/expire?count=0"));
}

// The identity service, and Swift's own v1.0 auth, behind a TLS front with
// a certificate no authority signed: refused with the certificate offered,
// then logged in once it is pinned for that host and port. Behind the front
// tempauth names its storage in plain HTTP on the front's port.
void TestSwiftClient::shouldLogInBehindTlsOncePinned_data()
{
    QTest::addColumn<bool>("keystoneLogin");
    QTest::newRow("Keystone v2.0") << true;
    QTest::newRow("v1.0") << false;
}

void TestSwiftClient::shouldLogInBehindTlsOncePinned()
{
    QFETCH(bool, keystoneLogin);
    if (!m_server.isAvailable() || !m_server.keystonePort())
        QSKIP("no server");
    NvbTest::TlsFront front;
    QVERIFY(front.start(keystoneLogin ? m_server.keystonePort() : m_server.port()));
    Settings settings = keystoneLogin ? keystone(2) : v1();
    settings.insert(Api::Config::Http::Endpoint,
        QStringLiteral("127.0.0.1:%1/%2").arg(front.port()).arg(keystoneLogin ? "v2.0" : "auth/v1.0"));
    settings.insert(Api::Config::Http::UseSsl, true);
    OperationResult result = SwiftClient().listContainers(settings, m_cancel);
    QCOMPARE(result.errorCode, int(OperationError::SslUntrusted));
    const QSslCertificate seen(result.config.value(Api::Config::Http::PeerCertificate).toByteArray());
    QCOMPARE(seen, QSslCertificate(front.certificate()));
    CertificatePins::instance().add({QStringLiteral("127.0.0.1"), front.port(), CertificatePins::fingerprint(seen)});
    result = SwiftClient().listContainers(settings, m_cancel);
    CertificatePins::instance().set({});
    QVERIFY2(!result.isError(), qPrintable(result.errorMessage));
}

QTEST_GUILESS_MAIN(TestSwiftClient)
#include "tst_swiftclient.moc"
