#include <QtTest>

#include "cloud/cloudtype.h"
#include "testmain.h"

using NVL::Cloud::Type;

class TestCloudType : public QObject
{
    Q_OBJECT

private slots:
    void shouldNameEveryType_data();
    void shouldNameEveryType();
    void shouldHaveNoMemberForThirtyTwo();
    void shouldKeepTheSetsApart_data();
    void shouldKeepTheSetsApart();
    void shouldOfferTypesInSelectorOrder();
    void shouldOfferOnlyTypesWithDisplayName();
    void shouldReadTypeBackFromItsName();
};

void TestCloudType::shouldNameEveryType_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("literal");
    QTest::addColumn<QString>("display");

    const QVector<std::tuple<int, const char*, const char*>> rows = {
        {1, "FileSystem", "File System"},
        {2, "AmazonS3", "Amazon S3 & Glacier"},
        {3, "AzureBlob", "Azure"},
        {4, "OracleCloud", "Oracle Cloud"},
        {5, "Rackspace", "Rackspace"},
        {6, "Openstack", "OpenStack"},
        {7, "GoogleStorage", "Google Cloud"},
        {8, "SoftLayer", "SoftLayer"},
        {9, "HPCloud", "HP Cloud"},
        {10, "HPHelion", ""},
        {11, "S3Compatible", "S3 Compatible"},
        {12, "Scality", "Scality"},
        {13, "DreamObjects", "DreamObjects"},
        {14, "Cloudian", "Cloudian"},
        {15, "ThinkOn", "ThinkOn"},
        {16, "Aruba", ""},
        {17, "Tiscali", ""},
        {18, "Seeweb", ""},
        {19, "CenturyLink", "CenturyLink"},
        {20, "AmazonS3Chinese", "Amazon S3 (China)"},
        {21, "Minio", "Minio"},
        {22, "Dunkel", ""},
        {23, "Connectria", ""},
        {24, "HostEurope", ""},
        {25, "GreenQloud", ""},
        {26, "Constant", ""},
        {27, "Webzilla", ""},
        {28, "Verizon", "Verizon"},
        {29, "Wasabi", "Wasabi"},
        {30, "AlibabaCloud", "Alibaba Cloud"},
        {31, "BackBlaze", "Backblaze B2"},
        {33, "Sftp", "SFTP"},
        {34, "Wasabi (UB)", ""},
        {35, "Wasabi (UB) Stage", ""},
        {36, "Wasabi Stage", ""},
        {37, "AmazonS3 (UB)", ""},
        {38, "MNS_CLOUD", ""},
    };
    for (const auto& [value, literal, display] : rows)
        QTest::addRow("%d", value) << value << QString::fromUtf8(literal) << QString::fromUtf8(display);
}

void TestCloudType::shouldNameEveryType()
{
    QFETCH(int, value);
    QFETCH(QString, literal);
    QFETCH(QString, display);

    const auto type = static_cast<Type>(value);
    QCOMPARE(NVL::Cloud::TypeName.value(type), literal);
    QCOMPARE(NVL::Cloud::displayName(type), display);
    QVERIFY(NVL::Cloud::isKnownType(value));
}

void TestCloudType::shouldHaveNoMemberForThirtyTwo()
{
    QCOMPARE(NVL::Cloud::TypeName.size(), 37);
    QVERIFY(!NVL::Cloud::isKnownType(32));
    QVERIFY(!NVL::Cloud::isKnownType(0));
    QVERIFY(!NVL::Cloud::isKnownType(39));
    QCOMPARE(NVL::Cloud::Name::AmazonS3Like, QStringLiteral("S3Compatible"));
    QCOMPARE(NVL::Cloud::Name::NvlUbWasabi, QStringLiteral("Wasabi (UB)"));
    QCOMPARE(NVL::Cloud::Name::NvlUbWasabiStage, QStringLiteral("Wasabi (UB) Stage"));
    QCOMPARE(NVL::Cloud::Name::WasabiStage, QStringLiteral("Wasabi Stage"));
    QCOMPARE(NVL::Cloud::Name::NvlUbAmazonS3, QStringLiteral("AmazonS3 (UB)"));
    QCOMPARE(NVL::Cloud::Name::MNS_CLOUD, QStringLiteral("MNS_CLOUD"));
}

void TestCloudType::shouldKeepTheSetsApart_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("set");

    const QVector<int> s3 = {11, 12, 13, 14, 15, 16, 17, 18, 19, 22, 23, 24, 25, 26, 27, 21, 28, 29, 30, 34, 35, 36};
    for (int value : s3)
        QTest::addRow("%d", value) << value << QStringLiteral("S3Compatible");
    for (int value : {2, 20, 37})
        QTest::addRow("%d", value) << value << QStringLiteral("AmazonS3");
    for (int value : {4, 5, 6, 8, 9, 10})
        QTest::addRow("%d", value) << value << QStringLiteral("OpenStack");
    QTest::addRow("33") << 33 << QStringLiteral("NetworkConnection");
    for (int value : {1, 3, 7, 31, 38})
        QTest::addRow("%d", value) << value << QString();
}

void TestCloudType::shouldKeepTheSetsApart()
{
    QFETCH(int, value);
    QFETCH(QString, set);

    const auto type = static_cast<Type>(value);
    QCOMPARE(NVL::Cloud::S3Compatible.contains(type), set == QLatin1String("S3Compatible"));
    QCOMPARE(NVL::Cloud::AmazonS3.contains(type), set == QLatin1String("AmazonS3"));
    QCOMPARE(NVL::Cloud::OpenStack.contains(type), set == QLatin1String("OpenStack"));
    QCOMPARE(NVL::Cloud::NetworkConnection.contains(type), set == QLatin1String("NetworkConnection"));
    QCOMPARE(NVL::Cloud::S3Compatible.size(), 22);
    QCOMPARE(NVL::Cloud::AmazonS3.size(), 3);
    QCOMPARE(NVL::Cloud::OpenStack.size(), 6);
    QCOMPARE(NVL::Cloud::NetworkConnection.size(), 1);
}

void TestCloudType::shouldOfferTypesInSelectorOrder()
{
    const QVector<int> expected = {2, 3, 1, 7, 6, 5, 20, 31, 19, 4, 12, 8, 11, 14, 13, 9, 15, 28, 21, 29, 30, 33};
    QVector<int> actual;
    for (Type type : NVL::Cloud::SelectorOrder)
        actual.append(static_cast<int>(type));
    QCOMPARE(actual, expected);

    QStringList names;
    for (Type type : NVL::Cloud::SelectorOrder)
        names.append(NVL::Cloud::displayName(type));
    QCOMPARE(names.join(QLatin1Char(',')),
        QStringLiteral("Amazon S3 & Glacier,Azure,File System,Google Cloud,OpenStack,Rackspace,Amazon S3 "
                       "(China),Backblaze B2,CenturyLink,Oracle Cloud,Scality,SoftLayer,S3 "
                       "Compatible,Cloudian,DreamObjects,HP Cloud,ThinkOn,Verizon,Minio,Wasabi,Alibaba Cloud,SFTP"));
}

void TestCloudType::shouldOfferOnlyTypesWithDisplayName()
{
    int named = 0;
    for (auto it = NVL::Cloud::TypeName.cbegin(); it != NVL::Cloud::TypeName.cend(); ++it) {
        const bool offered = NVL::Cloud::SelectorOrder.contains(it.key());
        QCOMPARE(!NVL::Cloud::displayName(it.key()).isEmpty(), offered);
        named += offered ? 1 : 0;
    }
    QCOMPARE(named, 22);
}

void TestCloudType::shouldReadTypeBackFromItsName()
{
    for (auto it = NVL::Cloud::TypeName.cbegin(); it != NVL::Cloud::TypeName.cend(); ++it) {
        bool ok = false;
        QCOMPARE(NVL::Cloud::typeFromName(it.value(), &ok), it.key());
        QVERIFY(ok);
    }
    bool ok = true;
    NVL::Cloud::typeFromName(QStringLiteral("Dropbox"), &ok);
    QVERIFY(!ok);
    NVL::Cloud::typeFromName(QStringLiteral("filesystem"), &ok);
    QVERIFY2(!ok, "names are case-sensitive");
}

NVB_TEST_GUILESS_MAIN(TestCloudType)
#include "tst_cloudtype.moc"
