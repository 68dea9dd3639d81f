#include <QStandardItemModel>
#include <QTest>

#include "models/basemodel.h"
#include "models/modelcreator.h"
#include "models/modelmanager.h"
#include "models/models.h"
#include "testmain.h"

using NVB::GUI::ModelCreator;
using NVB::GUI::ModelManager;
namespace Models = NVB::GUI::Models;

namespace {

class SharedCreator : public ModelCreator
{
public:
    explicit SharedCreator(const QString& type)
        : m_type(type)
    { }
    QAbstractItemModel* create() override
    {
        ++calls;
        return &model;
    }
    QString type() const override { return m_type; }

    QStandardItemModel model;
    int calls = 0;

private:
    QString m_type;
};

} // namespace

class TestModelManager : public QObject
{
    Q_OBJECT

private slots:
    void shouldHandOutRegisteredModel();
    void shouldKeepFirstCreatorOfAName();
    void shouldGiveNullForUnknownName();
    void shouldBeGoneAfterQuit();
    void shouldNumberColumns_data();
    void shouldNumberColumns();
    void shouldNameModelsAndHeaders();
    void shouldExportPropertyNames();
};

void TestModelManager::shouldHandOutRegisteredModel()
{
    static SharedCreator plans(Models::Table::NvbPlanModelInfo::Type);
    QPointer<ModelManager> manager = ModelManager::instance();
    QVERIFY(!manager.isNull());
    QCOMPARE(ModelManager::instance().data(), manager.data());
    QVERIFY(manager->registrateCreator(plans));
    QCOMPARE(manager->create(QStringLiteral("NvbPlanTableModel")), &plans.model);
    QCOMPARE(manager->create(QStringLiteral("NvbPlanTableModel")), &plans.model);
    QCOMPARE(plans.calls, 2);
}

void TestModelManager::shouldKeepFirstCreatorOfAName()
{
    static SharedCreator first(Models::Table::NvbStorageConnectionModelInfo::Type);
    static SharedCreator second(Models::Table::NvbStorageConnectionModelInfo::Type);
    QPointer<ModelManager> manager = ModelManager::instance();
    QVERIFY(manager->registrateCreator(first));
    QVERIFY(!manager->registrateCreator(second));
    QCOMPARE(manager->create(QStringLiteral("NvbStorageConnectionModel")), &first.model);
    QCOMPARE(second.calls, 0);
}

void TestModelManager::shouldGiveNullForUnknownName()
{
    QCOMPARE(ModelManager::instance()->create(QStringLiteral("NoSuchModel")), nullptr);
}

void TestModelManager::shouldBeGoneAfterQuit()
{
    QPointer<ModelManager> manager = ModelManager::instance();
    QVERIFY(!manager.isNull());
    QMetaObject::invokeMethod(qApp, "aboutToQuit");
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(manager.isNull());
    QVERIFY(ModelManager::instance().isNull());
}

void TestModelManager::shouldNumberColumns_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<int>("number");
    namespace Plan = Models::Table::NvbPlanModelInfo::Column;
    namespace Backup = Models::Table::NvbPlanBackupModelInfo::Column;
    namespace Restore = Models::Table::NvbPlanRestoreModelInfo::Column;
    QTest::newRow("plan LastRunMessage") << Plan::LastRunMessage << 6;
    QTest::newRow("plan LastRunTime") << Plan::LastRunTime << 8;
    QTest::newRow("plan Type") << Plan::Type << 14;
    QTest::newRow("plan ProgressSteps beyond Count") << Plan::ProgressSteps << 15;
    QTest::newRow("plan Count") << Plan::Count << 15;
    QTest::newRow("backup LastRunTime") << Backup::LastRunTime << 6;
    QTest::newRow("backup LastRunMessage") << Backup::LastRunMessage << 8;
    QTest::newRow("backup PlanXML") << Backup::PlanXML << 14;
    QTest::newRow("backup Count") << Backup::Count << 16;
    QTest::newRow("restore ProgressSteps") << Restore::ProgressSteps << 15;
    QTest::newRow("lifecycle IsChangeable skips 2")
        << Models::Tree::NvbAmazonLifececlyPolicyModelInfo::Column::IsChangeable << 3;
    QTest::newRow("lifecycle Type") << Models::Tree::NvbAmazonLifececlyPolicyModelInfo::Column::Type << 5;
    QTest::newRow("lifecycle Count") << Models::Tree::NvbAmazonLifececlyPolicyModelInfo::Column::Count << 7;
    QTest::newRow("file tree IsHidden") << Models::Tree::NvbFileModelBaseModelInfo::Column::IsHidden << 6;
    QTest::newRow("checked tree Count") << Models::Tree::NvbFileSystemCheckedModelInfo::Column::Count << 7;
    QTest::newRow("checked tree Type") << Models::Tree::NvbFileSystemCheckedModelInfo::Column::Type << 5;
    QTest::newRow("full backup Delimiter") << Models::Tree::NvbStorageBackupFullModelInfo::Column::Delimiter << 12;
    QTest::newRow("full backup Count") << Models::Tree::NvbStorageBackupFullModelInfo::Column::Count << 14;
    QTest::newRow("disk MountPoint") << Models::Tree::NvbDiskInfoModelInfo::Column::MountPoint << 8;
    QTest::newRow("connection SyncStatus") << Models::Table::NvbStorageConnectionModelInfo::Column::SyncStatus << 9;
    QTest::newRow("history by plan ErrorMessage")
        << Models::Table::HistoryGetByPlanModelInfo::Column::ErrorMessage << 7;
    QTest::newRow("restore content IsDeleted") << Models::Tree::NvbRestoreContentModelInfo::Column::IsDeleted << 5;
}

void TestModelManager::shouldNumberColumns()
{
    QFETCH(int, column);
    QFETCH(int, number);
    QCOMPARE(column, number);
}

void TestModelManager::shouldNameModelsAndHeaders()
{
    QCOMPARE(Models::Table::NvbPlanBackupModelInfo::Type, QStringLiteral("NvbPlanBackupTableModel"));
    QCOMPARE(Models::Table::NvbStorageContentByNameModel::Type, QStringLiteral("NvbStorageBackupTableModel"));
    QCOMPARE(Models::Tree::NvbAmazonLifececlyPolicyModelInfo::Type, QStringLiteral("NvbAmazonLifececlyPolicyModel"));
    QCOMPARE(Models::Table::NvbPlanModelInfo::Name::StorageID, QStringLiteral("Storage name"));
    QCOMPARE(Models::Table::NvbPlanBackupModelInfo::Name::ProgressSteps, QStringLiteral("Progress Steps"));
    QCOMPARE(Models::Table::NvbStorageConnectionModelInfo::Name::PrefixArray, QStringLiteral("Prefixs"));
    QCOMPARE(Models::Tree::NvbDiskInfoModelInfo::Name::IsEnabled, QString());
    QCOMPARE(Models::Tree::NvbDiskInfoModelInfo::Name::MountPoint, QStringLiteral("Mountpoint"));
    QCOMPARE(Models::Tree::NvbStorageBackupFullModelInfo::Name::Size, QStringLiteral("Size on Storage"));
    QCOMPARE(Models::Tree::NvbStorageBackupFullModelInfo::Name::IsFull, QStringLiteral("isFull"));
}

void TestModelManager::shouldExportPropertyNames()
{
    QCOMPARE(QByteArray(NVB::GUI::Key), QByteArray("loaded"));
    QCOMPARE(QByteArray(NVB::GUI::Checked), QByteArray("checked"));
    QCOMPARE(QByteArray(NVB::GUI::Row), QByteArray("row"));
}

NVB_TEST_MAIN(TestModelManager)
#include "tst_modelmanager.moc"
