#include <QAbstractButton>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QtTest>

#include "accounts/storages.h"
#include "accounts/storageseditlist.h"
#include "engineprocess.h"
#include "modaldialog.h"
#include "models/modelcreator.h"
#include "models/modelmanager.h"
#include "models/models.h"
#include "plans/plantablemodel.h"
#include "records/plan/backupfile.h"
#include "service/connectionmanager.h"
#include "storage/storageconnectionsmodelcreator.h"
#include "synccommand.h"
#include "testmain.h"

using NvbTest::SyncCommand;
namespace StorageInfo = NVB::GUI::Models::Table::NvbStorageConnectionModelInfo;

namespace {

// Made at the first request, once the engine's socket is known.
class PlanTableCreator : public NVB::GUI::ModelCreator
{
public:
    QAbstractItemModel* create() override
    {
        if (!model) {
            model.reset(new NVB::GUI::PlanTableModel);
            model->init();
        }
        return model.data();
    }
    QString type() const override { return NVB::GUI::Models::Table::NvbPlanModelInfo::Type; }
    QScopedPointer<NVB::GUI::PlanTableModel> model;
};

} // namespace

// Removing an account from the storage page against the real engine: the
// removal watch never times out, so an account that plans use must be
// refused before anything is sent, and a free one must end the watch.
class TestAccountInUse : public QObject
{
    Q_OBJECT

private:
    NvbTest::EngineProcess m_engine;
    QTemporaryDir m_storage;
    PlanTableCreator m_plans;
    NVB::GUI::StorageConnectionsModelCreator m_storages;

    // Answers "Are you sure?" with Yes, then records the text of the box
    // that follows, if one does.
    void confirmRemoval(QString* refusal)
    {
        NvbTest::whenModal<QMessageBox>([refusal](QMessageBox* question) {
            question->button(QMessageBox::Yes)->click();
            NvbTest::whenModal<QMessageBox>([refusal](QMessageBox* box) {
                *refusal = box->text();
                box->accept();
            });
        });
    }

private slots:
    void initTestCase()
    {
        QVERIFY2(m_engine.start(), m_engine.output().constData());
        m_engine.exportSocketPath();
        QVERIFY(NVB::GUI::ModelManager::instance()->registrateCreator(m_plans));
        QVERIFY(NVB::GUI::ModelManager::instance()->registrateCreator(m_storages));
        const auto connection = NVB::Common::Communication::ConnectionManager::instance();
        QVERIFY(QTest::qWaitFor([&] { return connection && connection->isLocalManagmentConnected(); }, 10000));
    }

    void cleanupTestCase() { QVERIFY(m_engine.stop()); }

    void shouldRefuseAccountOfPlansAtOnceAndRemoveItOnceFree()
    {
        const QUuid account = QUuid::createUuid();
        const auto saved = SyncCommand::run(QStringLiteral("SaveStorage"),
            {{QStringLiteral("ID"), account.toString()}, {QStringLiteral("displayName"), QStringLiteral("Disk")},
                {QStringLiteral("type"), 1}, {QStringLiteral("prefix"), QStringLiteral("tester")},
                {QStringLiteral("params"), QJsonObject {{QStringLiteral("Path"), m_storage.path() + '/'}}}});
        QVERIFY2(saved.answered && !saved.isError, qPrintable(saved.errorString));
        NVB::Info::Plan::BackupFile plan;
        plan.setId(QUuid::createUuid());
        plan.setName(QStringLiteral("Documents"));
        plan.setStorage(account);
        plan.setItems({m_storage.path()});
        const auto edited = SyncCommand::run(QStringLiteral("CommonPlanEdit"),
            {{QStringLiteral("ID"), plan.id().toString()}, {QStringLiteral("planXML"), plan.toXml()},
                {QStringLiteral("profile"), QStringLiteral("tester")}});
        QVERIFY2(edited.answered && !edited.isError, qPrintable(edited.errorString));

        NVB::GUI::Settings::Storages page;
        page.show();
        QAbstractItemModel* storages = page.editList()->model();
        QTRY_COMPARE(storages->rowCount(), 1);
        QTRY_COMPARE(m_plans.create()->rowCount(), 1);

        QString refusal;
        confirmRemoval(&refusal);
        emit page.editList()->removeItem(storages->index(0, StorageInfo::Column::DisplayName));
        QVERIFY2(refusal.contains(QStringLiteral("used by 1 plans")), qPrintable(refusal));
        QVERIFY2(refusal.contains(QStringLiteral("Documents")), qPrintable(refusal));
        QCOMPARE(storages->rowCount(), 1);

        const auto removed
            = SyncCommand::run(QStringLiteral("PlanRemove"), {{QStringLiteral("ID"), plan.id().toString()}});
        QVERIFY(removed.answered && !removed.isError);
        QTRY_COMPARE(m_plans.create()->rowCount(), 0);
        refusal.clear();
        confirmRemoval(&refusal);
        emit page.editList()->removeItem(storages->index(0, StorageInfo::Column::DisplayName));
        QCOMPARE(storages->rowCount(), 0);
        QVERIFY2(refusal.isEmpty(), qPrintable(refusal));
    }
};

NVB_TEST_MAIN(TestAccountInUse)
#include "tst_accountinuse.moc"
