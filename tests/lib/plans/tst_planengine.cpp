#include <QSignalSpy>
#include <QTemporaryDir>

#include "engineprocess.h"
#include "planfixture.h"
#include "plans/planeditwait.h"
#include "records/plan/backupfile.h"
#include "synccommand.h"
#include "testmain.h"

using namespace NVB::GUI;

// The plan table against the real engine: a plan saved through the wait
// dialog shows in the table, and its run shows in state and last result.
class TestPlanEngine : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void cleanupTestCase();
    void shouldShowSavedPlanAndItsRun();

private:
    NvbTest::EngineProcess* m_engine = nullptr;
    PlanTableModel* m_table = nullptr;
    QTemporaryDir m_source;
    QTemporaryDir m_storage;
    QUuid m_account = QUuid::createUuid();
};

void TestPlanEngine::initTestCase()
{
    m_engine = new NvbTest::EngineProcess;
    QVERIFY2(m_engine->start(), m_engine->output().constData());
    m_engine->exportSocketPath();
    QVERIFY(NVB::Common::Communication::NotificationCenter::instance());
    QVERIFY(QTest::qWaitFor(
        [] { return NVB::Common::Communication::ConnectionManager::instance()->isLocalManagmentConnected(); }, 10000));
    NVB::GUI::ModelManager::instance()->registrateCreator(PlanTest::creator());

    const auto saved = NvbTest::SyncCommand::run(QStringLiteral("SaveStorage"),
        {{QStringLiteral("ID"), m_account.toString()}, {QStringLiteral("displayName"), QStringLiteral("Local disk")},
            {QStringLiteral("type"), 1}, {QStringLiteral("prefix"), QStringLiteral("tester")},
            {QStringLiteral("params"), QJsonObject {{QStringLiteral("Path"), m_storage.path() + QLatin1Char('/')}}}});
    QVERIFY2(saved.answered && !saved.isError, qPrintable(saved.errorString));

    QFile file(m_source.filePath(QStringLiteral("notes.txt")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("a few words to back up\n");
    file.close();

    m_table = new PlanTableModel(this);
    PlanTest::creator().model = m_table;
    QSignalSpy complite(m_table, &BaseModel::complite);
    QVERIFY(m_table->init());
    QVERIFY(complite.wait(10000));
}

void TestPlanEngine::cleanupTestCase()
{
    PlanTest::creator().model = nullptr;
    if (m_engine)
        QVERIFY(m_engine->stop());
    delete m_engine;
}

void TestPlanEngine::shouldShowSavedPlanAndItsRun()
{
    QAbstractItemModelTester tester(m_table, QAbstractItemModelTester::FailureReportingMode::QtTest);
    namespace Column = Models::Table::NvbPlanModelInfo::Column;
    NVB::Info::Plan::BackupFile plan;
    plan.setName(QStringLiteral("Notes"));
    plan.setStorage(m_account);
    plan.setItems({m_source.path()});
    const int rows = m_table->rowCount();

    // Saved and started as the wizard does it; the dialog returns only once
    // the table has the plan.
    PlanEditWait wait(false);
    bool sawRunning = false;
    connect(m_table, &QAbstractItemModel::dataChanged, &wait, [&](const QModelIndex& topLeft) {
        const QUuid id(m_table->index(topLeft.row(), Column::ID).data().toString());
        if (id == plan.id() && m_table->index(topLeft.row(), Column::Status).data().toInt() == 1)
            sawRunning = true;
    });
    wait.setPlan(plan.id(), plan.toXml(), true);
    QCOMPARE(wait.result(), int(QDialog::Accepted));
    QCOMPARE(m_table->rowCount(), rows + 1);
    const QModelIndexList found
        = m_table->match(m_table->index(0, 0), Qt::DisplayRole, plan.id().toString(), 1, Qt::MatchExactly);
    QCOMPARE(found.size(), 1);
    const int row = found.first().row();
    QCOMPARE(m_table->index(row, Column::Name).data().toString(), QStringLiteral("Notes"));
    QCOMPARE(m_table->index(row, Column::SubType).data().toInt(), 1);

    // The run: the table shows it running, then idle with a successful result.
    QVERIFY(QTest::qWaitFor(
        [&] {
            return sawRunning && m_table->index(row, Column::Status).data().toInt() == 2
                && m_table->index(row, Column::LastRunStatus).data().toInt() == 6;
        },
        30000));
    QVERIFY(m_table->index(row, Column::LastRunTime).data().toDateTime().isValid());
    QCOMPARE(m_table->index(row, Column::LastRunTime).data().toDateTime().timeSpec(), Qt::UTC);
}

NVB_TEST_MAIN(TestPlanEngine)
#include "tst_planengine.moc"
