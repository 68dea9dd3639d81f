#include <QtTest>

#include "cloud/containerparams/amazons3like.h"
#include "cloud/containerparams/azureblob.h"
#include "cloud/containerparams/backblaze.h"
#include "cloud/containerparams/googlestorage.h"
#include "cloud/containerparams/openstack.h"
#include "testmain.h"

using namespace NVL::Cloud::ContainerParams;

class TestContainerParams : public QObject
{
    Q_OBJECT

private slots:
    void shouldWriteEachProvidersObject_data();
    void shouldWriteEachProvidersObject();
};

void TestContainerParams::shouldWriteEachProvidersObject_data()
{
    QTest::addColumn<QJsonObject>("actual");
    QTest::addColumn<QJsonObject>("expected");

    QTest::newRow("S3") << AmazonS3Like(QStringLiteral(" backups "), QStringLiteral("eu-west-1")).json()
                        << QJsonObject {{"Name", "backups"}, {"Location", "eu-west-1"}};
    QTest::newRow("S3 without region") << AmazonS3Like(QStringLiteral("b"), QString()).json()
                                       << QJsonObject {{"Name", "b"}, {"Location", ""}};
    QTest::newRow("Azure") << AzureBlob(QStringLiteral("c1"), QStringLiteral("private")).json()
                           << QJsonObject {{"Name", "c1"}, {"Access", "private"}};
    QTest::newRow("Google")
        << GoogleStorage(QStringLiteral("g"), QStringLiteral("EU"), QStringLiteral("NEARLINE")).json()
        << QJsonObject {{"Name", "g"}, {"Location", "EU"}, {"StorageClass", "NEARLINE"}};
    QTest::newRow("B2") << BackBlaze(QStringLiteral("bucket1"), QStringLiteral("allPrivate")).json()
                        << QJsonObject {{"Name", "bucket1"}, {"Access", "allPrivate"}};
    QTest::newRow("OpenStack") << OpenStack(QStringLiteral("my container")).json()
                               << QJsonObject {{"Name", "my container"}};
}

void TestContainerParams::shouldWriteEachProvidersObject()
{
    QFETCH(QJsonObject, actual);
    QFETCH(QJsonObject, expected);

    QCOMPARE(actual, expected);
}

NVB_TEST_GUILESS_MAIN(TestContainerParams)
#include "tst_containerparams.moc"
