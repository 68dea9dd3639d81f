#include <QtTest>

#include "cloud/cloudconfig.h"
#include "cloud/info/alibabacloud.h"
#include "cloud/info/amazons3.h"
#include "cloud/info/azureblob.h"
#include "cloud/info/backblaze.h"
#include "cloud/info/googlestorage.h"
#include "cloud/info/infofactory.h"
#include "cloud/info/openstack.h"
#include "testmain.h"

using NVL::Cloud::Type;
using namespace NVL::Cloud::Info;

class TestInfoFactory : public QObject
{
    Q_OBJECT

private slots:
    void shouldMakeTheSubclassOfEachFamily_data();
    void shouldMakeTheSubclassOfEachFamily();
    void shouldRefuseUnknownTypes();
    void shouldReadTypeFromConfiguration();
    void shouldPresetEndpointsOfListedProviders_data();
    void shouldPresetEndpointsOfListedProviders();
    void shouldGiveRegionsWithDisplayTexts_data();
    void shouldGiveRegionsWithDisplayTexts();
    void shouldOfferAzureStackAmongAccountTypes();
    void shouldGiveOpenStackPresetsPerProvider_data();
    void shouldGiveOpenStackPresetsPerProvider();
};

void TestInfoFactory::shouldMakeTheSubclassOfEachFamily_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("family");

    for (Type type : NVL::Cloud::TypeName.keys()) {
        QString family = QStringLiteral("Base");
        if (NVL::Cloud::AmazonS3.contains(type))
            family = QStringLiteral("AmazonS3");
        else if (type == Type::AlibabaCloud)
            family = QStringLiteral("AlibabaCloud");
        else if (NVL::Cloud::S3Compatible.contains(type))
            family = QStringLiteral("AmazonS3Like");
        else if (NVL::Cloud::OpenStack.contains(type))
            family = QStringLiteral("OpenStack");
        else if (type == Type::AzureBlob)
            family = QStringLiteral("AzureBlob");
        else if (type == Type::GoogleStorage)
            family = QStringLiteral("GoogleStorage");
        else if (type == Type::BackBlaze)
            family = QStringLiteral("BackBlaze");
        QTest::addRow("%d", static_cast<int>(type)) << static_cast<int>(type) << family;
    }
}

void TestInfoFactory::shouldMakeTheSubclassOfEachFamily()
{
    QFETCH(int, value);
    QFETCH(QString, family);

    const QSharedPointer<Base> info = InfoFactory::create(static_cast<Type>(value));
    QVERIFY(info);
    QCOMPARE(static_cast<int>(info->type()), value);
    const bool s3like = dynamic_cast<AmazonS3Like*>(info.data()) != nullptr;
    QCOMPARE(s3like,
        family == QLatin1String("AmazonS3") || family == QLatin1String("AlibabaCloud")
            || family == QLatin1String("AmazonS3Like"));
    QCOMPARE(dynamic_cast<AmazonS3*>(info.data()) != nullptr, family == QLatin1String("AmazonS3"));
    QCOMPARE(dynamic_cast<AlibabaCloud*>(info.data()) != nullptr, family == QLatin1String("AlibabaCloud"));
    QCOMPARE(dynamic_cast<OpenStack*>(info.data()) != nullptr, family == QLatin1String("OpenStack"));
    QCOMPARE(dynamic_cast<AzureBlob*>(info.data()) != nullptr, family == QLatin1String("AzureBlob"));
    QCOMPARE(dynamic_cast<GoogleStorage*>(info.data()) != nullptr, family == QLatin1String("GoogleStorage"));
    QCOMPARE(dynamic_cast<BackBlaze*>(info.data()) != nullptr, family == QLatin1String("BackBlaze"));
}

void TestInfoFactory::shouldRefuseUnknownTypes()
{
    QVERIFY(!InfoFactory::create(static_cast<Type>(32)));
    QVERIFY(!InfoFactory::create(static_cast<Type>(0)));
    QVERIFY(!InfoFactory::create(QMap<QString, QVariant>()));
    QVERIFY(!InfoFactory::create(QMap<QString, QVariant> {{NVL::Cloud::Config::Type, QStringLiteral("Dropbox")}}));
}

void TestInfoFactory::shouldReadTypeFromConfiguration()
{
    const QMap<QString, QVariant> config {{NVL::Cloud::Config::Type, NVL::Cloud::Name::AzureBlob}};
    const QSharedPointer<Base> info = InfoFactory::create(config);
    QVERIFY(info);
    QCOMPARE(info->type(), Type::AzureBlob);
    QVERIFY(dynamic_cast<AzureBlob*>(info.data()));
}

void TestInfoFactory::shouldPresetEndpointsOfListedProviders_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<bool>("hasEndpoint");

    // Those whose dialogs take a preset endpoint, and the two that leave it to the user.
    for (int value : {2, 20, 29, 30, 28, 15, 19, 12, 14, 13})
        QTest::addRow("%d", value) << value << true;
    for (int value : {11, 21})
        QTest::addRow("%d", value) << value << false;
}

void TestInfoFactory::shouldPresetEndpointsOfListedProviders()
{
    QFETCH(int, value);
    QFETCH(bool, hasEndpoint);

    const auto info = InfoFactory::create(static_cast<Type>(value)).dynamicCast<AmazonS3Like>();
    QVERIFY(info);
    const QUrl endpoint = info->defaultEndpoint();
    QCOMPARE(endpoint.isValid() && !endpoint.host().isEmpty(), hasEndpoint);
    if (hasEndpoint)
        QCOMPARE(endpoint.scheme(), QStringLiteral("https"));
    QVERIFY(info->defaultSignature() == AmazonS3Like::V2 || info->defaultSignature() == AmazonS3Like::V4);
}

void TestInfoFactory::shouldGiveRegionsWithDisplayTexts_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("someCode");

    QTest::newRow("Amazon S3") << 2 << "eu-central-1";
    QTest::newRow("Amazon S3 China") << 20 << "cn-north-1";
    QTest::newRow("Wasabi") << 29 << "us-east-1";
    QTest::newRow("Alibaba") << 30 << "oss-eu-central-1";
}

void TestInfoFactory::shouldGiveRegionsWithDisplayTexts()
{
    QFETCH(int, value);
    QFETCH(QString, someCode);

    const auto info = InfoFactory::create(static_cast<Type>(value)).dynamicCast<AmazonS3Like>();
    QVERIFY(info);
    const auto regions = info->regions();
    QVERIFY(regions.contains(someCode));
    for (auto it = regions.cbegin(); it != regions.cend(); ++it) {
        QVERIFY2(!it.value().first.isEmpty(), qPrintable(it.key()));
        QVERIFY2(!it.key().contains(QLatin1Char(' ')), qPrintable(it.key()));
    }
    const auto china = InfoFactory::create(Type::AmazonS3Chinese).dynamicCast<AmazonS3Like>()->regions();
    QVERIFY(!china.contains(QStringLiteral("us-east-1")));
}

void TestInfoFactory::shouldOfferAzureStackAmongAccountTypes()
{
    const auto azure = InfoFactory::create(Type::AzureBlob).dynamicCast<AzureBlob>();
    QStringList literals;
    for (const auto& item : azure->accountTypes())
        literals.append(item.second);
    QCOMPARE(literals, QStringList({"Public", "Government", "Germany", "China", "AzureStack"}));
    QVERIFY(!azure->accessType().isEmpty());
    QCOMPARE(azure->defaultEndpoint().scheme(), QStringLiteral("https"));

    const auto google = InfoFactory::create(Type::GoogleStorage).dynamicCast<GoogleStorage>();
    QVERIFY(google->regions().contains(QStringLiteral("EU")));
    QVERIFY(!google->storageType().isEmpty());
    const auto b2 = InfoFactory::create(Type::BackBlaze).dynamicCast<BackBlaze>();
    QCOMPARE(b2->containerAccessType().size(), 2);
    QVERIFY(!b2->defaultEndpoint().host().isEmpty());
}

void TestInfoFactory::shouldGiveOpenStackPresetsPerProvider_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("pathEnd");

    QTest::newRow("OpenStack") << 6 << 0 << "";
    QTest::newRow("HP Cloud") << 9 << 1 << "/v1.0/";
    QTest::newRow("Oracle") << 4 << 7 << "/auth/v1.0";
    QTest::newRow("Rackspace") << 5 << 2 << "/v1.0";
    QTest::newRow("SoftLayer") << 8 << 17 << "/auth/v1.0";
}

void TestInfoFactory::shouldGiveOpenStackPresetsPerProvider()
{
    QFETCH(int, value);
    QFETCH(int, count);
    QFETCH(QString, pathEnd);

    const auto info = InfoFactory::create(static_cast<Type>(value)).dynamicCast<OpenStack>();
    QVERIFY(info);
    const auto endpoints = info->endpoints();
    QCOMPARE(endpoints.size(), count);
    for (const auto& endpoint : endpoints) {
        QVERIFY(!endpoint.first.isEmpty());
        QVERIFY2(endpoint.second.endsWith(pathEnd), qPrintable(endpoint.second));
        QVERIFY(QUrl(endpoint.second).isValid());
    }
    if (value == 9)
        QCOMPARE(QUrl(endpoints.first().second).port(), 35357);
}

NVB_TEST_GUILESS_MAIN(TestInfoFactory)
#include "tst_infofactory.moc"
