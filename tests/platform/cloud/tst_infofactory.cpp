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
    void shouldMakeInfoOfEveryKnownType();
    void shouldRefuseUnknownTypes();
    void shouldReadTypeFromConfiguration();
    void shouldPresetEndpointsOfListedProviders();
    void shouldGiveRegionsWithDisplayTexts();
    void shouldOfferAzureStackAmongAccountTypes();
    void shouldGiveValidOpenStackPresets();
};

void TestInfoFactory::shouldMakeInfoOfEveryKnownType()
{
    for (Type type : NVL::Cloud::TypeName.keys()) {
        const QSharedPointer<Base> info = InfoFactory::create(type);
        QVERIFY2(info, qPrintable(NVL::Cloud::TypeName.value(type)));
        QCOMPARE(info->type(), type);
        // The dialogs cast to the family's class to reach its fields.
        if (NVL::Cloud::S3Compatible.contains(type) || NVL::Cloud::AmazonS3.contains(type))
            QVERIFY(info.dynamicCast<AmazonS3Like>());
        if (NVL::Cloud::OpenStack.contains(type))
            QVERIFY(info.dynamicCast<OpenStack>());
    }
    QVERIFY(InfoFactory::create(Type::AmazonS3Chinese).dynamicCast<AmazonS3>());
    QVERIFY(InfoFactory::create(Type::AlibabaCloud).dynamicCast<AlibabaCloud>());
    QVERIFY(InfoFactory::create(Type::AzureBlob).dynamicCast<AzureBlob>());
    QVERIFY(InfoFactory::create(Type::GoogleStorage).dynamicCast<GoogleStorage>());
    QVERIFY(InfoFactory::create(Type::BackBlaze).dynamicCast<BackBlaze>());
    QVERIFY(!InfoFactory::create(Type::FileSystem).dynamicCast<AmazonS3Like>());
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
}

void TestInfoFactory::shouldPresetEndpointsOfListedProviders()
{
    // A provider with a preset and the generic one that leaves it to the user.
    const auto wasabi = InfoFactory::create(Type::Wasabi).dynamicCast<AmazonS3Like>();
    QVERIFY(wasabi);
    QVERIFY(!wasabi->defaultEndpoint().host().isEmpty());
    QCOMPARE(wasabi->defaultEndpoint().scheme(), QStringLiteral("https"));
    const auto generic = InfoFactory::create(Type::S3Compatible).dynamicCast<AmazonS3Like>();
    QVERIFY(generic);
    QVERIFY(generic->defaultEndpoint().host().isEmpty());
}

void TestInfoFactory::shouldGiveRegionsWithDisplayTexts()
{
    const auto regions = InfoFactory::create(Type::AmazonS3).dynamicCast<AmazonS3Like>()->regions();
    QVERIFY(regions.contains(QStringLiteral("eu-central-1")));
    for (auto it = regions.cbegin(); it != regions.cend(); ++it) {
        QVERIFY2(!it.value().first.isEmpty(), qPrintable(it.key()));
        QVERIFY2(!it.key().contains(QLatin1Char(' ')), qPrintable(it.key()));
    }
    const auto china = InfoFactory::create(Type::AmazonS3Chinese).dynamicCast<AmazonS3Like>()->regions();
    QVERIFY(china.contains(QStringLiteral("cn-north-1")));
    QVERIFY(!china.contains(QStringLiteral("us-east-1")));
}

void TestInfoFactory::shouldOfferAzureStackAmongAccountTypes()
{
    const auto azure = InfoFactory::create(Type::AzureBlob).dynamicCast<AzureBlob>();
    QStringList literals;
    for (const auto& item : azure->accountTypes())
        literals.append(item.second);
    QVERIFY(literals.contains(QStringLiteral("AzureStack")));
}

void TestInfoFactory::shouldGiveValidOpenStackPresets()
{
    for (Type type : NVL::Cloud::OpenStack) {
        const auto info = InfoFactory::create(type).dynamicCast<OpenStack>();
        for (const auto& endpoint : info->endpoints()) {
            QVERIFY(!endpoint.first.isEmpty());
            const QUrl url(endpoint.second);
            QVERIFY2(url.isValid() && !url.host().isEmpty(), qPrintable(endpoint.second));
        }
    }
    // Plain OpenStack has no provider to preset.
    QVERIFY(InfoFactory::create(Type::Openstack).dynamicCast<OpenStack>()->endpoints().isEmpty());
    QVERIFY(!InfoFactory::create(Type::SoftLayer).dynamicCast<OpenStack>()->endpoints().isEmpty());
}

NVB_TEST_GUILESS_MAIN(TestInfoFactory)
#include "tst_infofactory.moc"
