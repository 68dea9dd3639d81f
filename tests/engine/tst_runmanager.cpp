#include <QSignalSpy>
#include <QSqlQuery>
#include <QtTest>

#include "records/plan/backupfile.h"
#include "records/plan/planresult.h"
#include "runs/runmanager.h"
#include "store/enginestore.h"
#include "testmain.h"

using namespace NVB::Engine;
using NVB::Info::Plan::PlanResult;

class TestRunManager : public QObject
{
    Q_OBJECT

private slots:
    void shouldRecordRunsOffTheServingThreadOrFailThem()
    {
        QTemporaryDir data;
        QTemporaryDir source;
        QTemporaryDir storage;
        for (int i = 0; i < 20; ++i) {
            QFile file(source.filePath(QStringLiteral("f%1.txt").arg(i)));
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(QByteArray(100, char('a' + i)));
        }
        EngineStore store;
        QVERIFY(store.open(data.filePath(QStringLiteral("engine.db"))));
        StoredAccount account;
        account.id = QUuid::createUuid();
        account.displayName = QStringLiteral("Disk");
        account.type = 1;
        account.prefix = QStringLiteral("rm");
        account.params = QJsonObject {{QStringLiteral("Path"), storage.path()}};
        QVERIFY(store.saveAccount(account));
        NVB::Info::Plan::BackupFile record;
        record.setId(QUuid::createUuid());
        record.setName(QStringLiteral("Threads"));
        record.setStorage(account.id);
        record.setItems({source.path()});
        record.setUseCompression(false);
        StoredPlan plan;
        plan.id = record.id();
        plan.name = record.name();
        plan.xml = record.toXml();
        plan.type = record.type();
        plan.subtype = record.subtype();
        plan.storageId = account.id;
        QVERIFY(store.savePlan(plan));

        RunManager runs(&store);
        QSignalSpy finished(&runs, &RunManager::finished);
        // Once the run is under way, the serving thread's own connection
        // takes the write lock: a run recorded on that thread would slip into
        // this transaction (and vanish with its rollback) instead of waiting.
        QCOMPARE(runs.start(plan.id, false), QString());
        QSqlDatabase db = store.database().database();
        QVERIFY(db.transaction());
        QVERIFY(QSqlQuery(db).exec(QStringLiteral("UPDATE plans SET last_message='held'")));
        QTest::qWait(600);
        QCOMPARE(finished.count(), 0);
        QVERIFY(db.rollback());

        QVERIFY(finished.wait(10000));
        QCOMPARE(finished.first().at(2).toInt(), int(PlanResult::Success));
        const auto point = store.latestRestorePoint(account.id, plan.id);
        QVERIFY(point.has_value());
        QCOMPARE(finished.first().at(3).value<StoredRestorePoint>().rowId, point->rowId);
        QCOMPARE(store.content(point->rowId).size(), 21);
        QCOMPARE(store.runs(HistoryQuery {}).first().result, int(PlanResult::Success));
        QCOMPARE(store.plan(plan.id)->lastResult, int(PlanResult::Success));

        // A restore point the store refuses makes a failed run that says
        // why, not a success with no point behind it.
        QVERIFY(QSqlQuery(db).exec(QStringLiteral("CREATE TRIGGER refuse BEFORE INSERT ON restore_points "
                                                  "BEGIN SELECT RAISE(ABORT, 'the store says no'); END")));
        QFile changed(source.filePath(QStringLiteral("f0.txt")));
        QVERIFY(changed.open(QIODevice::WriteOnly));
        changed.write("changed");
        changed.close();
        finished.clear();
        QCOMPARE(runs.start(plan.id, false), QString());
        QVERIFY(finished.wait(10000));
        QCOMPARE(finished.first().at(2).toInt(), int(PlanResult::Failed));
        QCOMPARE(finished.first().at(3).value<StoredRestorePoint>().rowId, qint64(0));
        const RunRecord last = store.runs(HistoryQuery{}).first();
        QCOMPARE(last.result, int(PlanResult::Failed));
        QVERIFY2(last.errorMessage.contains(QStringLiteral("the store says no")), qPrintable(last.errorMessage));
        QCOMPARE(store.restorePoints(account.id, plan.id).size(), 1);
    }
};

NVB_TEST_GUILESS_MAIN(TestRunManager)
#include "tst_runmanager.moc"
