#include <QtTest>

#include "cloud/amazonoperationmanager.h"
#include "cloud/cloudconfig.h"
#include "cloud/cloudtype.h"
#include "cloud/operationerror.h"
#include "cloud/operationmanager.h"
#include "cloud/operations/amazon/loadlifecyclepolicy.h"
#include "cloud/operations/amazon/savelifecyclepolicy.h"
#include "testmain.h"

using namespace NVL::Cloud;
using CloudConfig = QMap<QString, QVariant>;

class TestAmazonOperationManager : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void shouldMakeEachLifecycleOperation_data();
    void shouldMakeEachLifecycleOperation();
    void shouldSayWhenProviderHasNoPolicies();
    void shouldMakeNothingForUnknownType();

private:
    static QSharedPointer<IOperation> runToEnd(const QSharedPointer<IOperation>& operation);
};

void TestAmazonOperationManager::cleanup()
{
    QVERIFY(OperationManager::instance().waitForDone(30000));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(OperationManager::instance().count(), 0);
}

QSharedPointer<IOperation> TestAmazonOperationManager::runToEnd(const QSharedPointer<IOperation>& operation)
{
    QSignalSpy spy(operation.data(), &IOperation::finished);
    operation->run();
    if (!spy.wait(30000))
        qWarning("operation did not finish");
    return operation;
}

void TestAmazonOperationManager::shouldMakeEachLifecycleOperation_data()
{
    QTest::addColumn<int>("which");
    QTest::addColumn<QString>("type");

    QTest::newRow("load") << 0 << "Amazon_LoadLifecyclePolicy";
    QTest::newRow("save") << 1 << "Amazon_SaveLifecyclePolicy";
    QTest::newRow("delete") << 2 << "Amazon_DeleteLifecyclePolicy";
}

void TestAmazonOperationManager::shouldMakeEachLifecycleOperation()
{
    QFETCH(int, which);
    QFETCH(QString, type);

    const CloudConfig config {{Config::Type, Name::AmazonS3}, {OperationConfig::ContainerName, "bucket"}};
    const QByteArray xml("<LifecycleConfiguration/>");
    QSharedPointer<IOperation> operation;
    if (which == 0)
        operation = AmazonOperationManager::instance().loadLifecyclePolicy(config);
    else if (which == 1)
        operation = AmazonOperationManager::instance().saveLifecyclePolicy(config, xml);
    else
        operation = AmazonOperationManager::instance().deleteLifecyclePolicy(config);
    QVERIFY(operation);
    QCOMPARE(operation->type(), type);
    QCOMPARE(OperationManager::instance().operation(operation->id()), operation);
    if (which == 0)
        QVERIFY(qobject_cast<Operation::Amazon::LoadLifecyclePolicy*>(operation.data()));
    if (which == 1)
        QCOMPARE(qobject_cast<Operation::Amazon::SaveLifecyclePolicy*>(operation.data())->xml(), xml);

    runToEnd(operation);
    // The S3 client refuses an account without keys before any request.
    QCOMPARE(operation->errorCode(), int(OperationError::InvalidConfig));
    QCOMPARE(operation->errorMessage(), QStringLiteral("Access key or secret key is empty"));
    operation->remove();
}

void TestAmazonOperationManager::shouldSayWhenProviderHasNoPolicies()
{
    QTemporaryDir dir;
    const CloudConfig config {{Config::Type, Name::FileSystem}, {Config::FileSystem::Path, dir.path()}};
    const auto operation = runToEnd(AmazonOperationManager::instance().loadLifecyclePolicy(config));
    QCOMPARE(operation->errorCode(), int(OperationError::NotSupported));
    QVERIFY(operation->errorMessage().contains(QStringLiteral("no lifecycle policies")));
    QVERIFY(qobject_cast<Operation::Amazon::LoadLifecyclePolicy*>(operation.data())->data().isEmpty());
    operation->remove();
}

void TestAmazonOperationManager::shouldMakeNothingForUnknownType()
{
    QVERIFY(!AmazonOperationManager::instance().loadLifecyclePolicy(CloudConfig()));
    QVERIFY(!AmazonOperationManager::instance().saveLifecyclePolicy(CloudConfig {{Config::Type, "S3"}}, "<x/>"));
    QVERIFY(!AmazonOperationManager::instance().deleteLifecyclePolicy(CloudConfig {{Config::Type, "s3compatible"}}));
}

NVB_TEST_GUILESS_MAIN(TestAmazonOperationManager)
#include "tst_amazonoperationmanager.moc"
