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
        plan.describe(record);
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

    void shouldKeepEachPointsExactContentAcrossRuns()
    {
        QTemporaryDir data;
        QTemporaryDir source;
        QTemporaryDir storage;
        const auto write = [&](const QString& name, const QByteArray& bytes) {
            QDir().mkpath(QFileInfo(source.filePath(name)).absolutePath());
            QFile file(source.filePath(name));
            return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
        };
        for (const char* name : {"a.txt", "keep/b.txt", "gone/c.txt", "gone/deep/d.txt"})
            QVERIFY(write(QLatin1String(name), name));
        EngineStore store;
        QVERIFY(store.open(data.filePath(QStringLiteral("engine.db"))));
        StoredAccount account {QUuid::createUuid(), {}, QStringLiteral("Disk"), 1, QStringLiteral("pc"),
            QJsonObject {{QStringLiteral("Path"), storage.path()}}};
        QVERIFY(store.saveAccount(account));
        NVB::Info::Plan::BackupFile record;
        record.setId(QUuid::createUuid());
        record.setStorage(account.id);
        record.setItems({source.path()});
        record.setIsArchive(false);
        StoredPlan plan;
        plan.id = record.id();
        plan.name = QStringLiteral("Points");
        plan.xml = record.toXml();
        plan.subtype = record.subtype();
        plan.storageId = account.id;
        QVERIFY(store.savePlan(plan));
        RunManager runs(&store);
        QSignalSpy finished(&runs, &RunManager::finished);
        const auto run = [&]() -> qint64 {
            finished.clear();
            if (!runs.start(plan.id, false).isEmpty() || !finished.wait(10000))
                return 0;
            return finished.first().at(3).value<StoredRestorePoint>().rowId;
        };
        const auto rows = [&] {
            QSqlQuery q(store.database().database());
            return q.exec(QStringLiteral("SELECT COUNT(*) FROM contents")) && q.next() ? q.value(0).toInt() : -1;
        };
        // What each point must hold, whatever later runs do.
        const auto same = [&](qint64 point, const QList<StoredContent>& expected) {
            const QList<StoredContent> held = store.content(point);
            bool equal = held.size() == expected.size();
            for (int i = 0; equal && i < held.size(); ++i)
                equal = held.at(i).sameRecord(expected.at(i));
            return equal;
        };
        const auto paths = [&](qint64 point) {
            QStringList result;
            for (const StoredContent& item : store.content(point))
                result << item.path.mid(source.path().size());
            return result;
        };

        const qint64 first = run();
        QVERIFY(first > 0);
        const QList<StoredContent> firstContent = store.content(first);
        QCOMPARE(firstContent.size(), 8);
        const int firstRows = rows();

        // Nothing changed: the same content, and not one row more.
        const qint64 second = run();
        QVERIFY(same(second, firstContent));
        QCOMPARE(rows(), firstRows);

        QVERIFY(write(QStringLiteral("a.txt"), "changed"));
        QVERIFY(write(QStringLiteral("new.txt"), "new"));
        QVERIFY(QDir(source.filePath(QStringLiteral("gone"))).removeRecursively());
        const qint64 third = run();
        const QStringList now {"", "/a.txt", "/keep", "/keep/b.txt", "/new.txt"};
        QCOMPARE(paths(third), now);
        QVERIFY(store.content(third).at(1).object != firstContent.at(1).object);
        QVERIFY(same(first, firstContent));
        QVERIFY(same(second, firstContent));
        QCOMPARE(store.contentChildren(second, source.filePath(QStringLiteral("gone")), 0, 10).size(), 2);

        // The latest point deleted outright, as retention may: the next run
        // takes its sequence, and every point still holds what it held.
        QVERIFY(QSqlQuery(store.database().database())
                    .exec(QStringLiteral("DELETE FROM restore_points WHERE id=%1").arg(third)));
        QVERIFY(write(QStringLiteral("keep/b.txt"), "changed too"));
        QVERIFY(QFile::remove(source.filePath(QStringLiteral("new.txt"))));
        const qint64 fourth = run();
        QCOMPARE(paths(fourth), now.mid(0, 4));
        QCOMPARE(store.content(fourth).at(3).checksum,
            QCryptographicHash::hash("changed too", QCryptographicHash::Sha256));
        QVERIFY(same(first, firstContent));
        QVERIFY(same(second, firstContent));

        QVERIFY(store.removeGeneration(store.latestRestorePoint(account.id, plan.id)->generationId));
        QCOMPARE(rows(), 0);
    }

    void shouldRecordLargePointsOnlyByTheirChanges_data()
    {
        QTest::addColumn<bool>("archive");
        QTest::newRow("legacy format") << false;
        QTest::newRow("new format") << true;
    }

    // More entries than a run holds in memory at once (the rest go through
    // the staging table), and an unchanged run that must add no row.
    void shouldRecordLargePointsOnlyByTheirChanges()
    {
        QFETCH(bool, archive);
        QTemporaryDir data;
        QTemporaryDir source;
        QTemporaryDir storage;
        for (int i = 0; i < 4200; ++i)
            QVERIFY(QFile(source.filePath(QStringLiteral("f%1").arg(i))).open(QIODevice::WriteOnly));
        EngineStore store;
        QVERIFY(store.open(data.filePath(QStringLiteral("engine.db"))));
        StoredAccount account {QUuid::createUuid(), {}, QStringLiteral("Disk"), 1, QStringLiteral("pc"),
            QJsonObject {{QStringLiteral("Path"), storage.path()}}};
        QVERIFY(store.saveAccount(account));
        NVB::Info::Plan::BackupFile record;
        record.setId(QUuid::createUuid());
        record.setStorage(account.id);
        record.setItems({source.path()});
        record.setIsArchive(archive);
        StoredPlan plan;
        plan.id = record.id();
        plan.name = QStringLiteral("Large");
        plan.xml = record.toXml();
        plan.subtype = record.subtype();
        plan.storageId = account.id;
        QVERIFY(store.savePlan(plan));
        RunManager runs(&store);
        QSignalSpy finished(&runs, &RunManager::finished);
        const auto count = [&](const char* sql) {
            QSqlQuery q(store.database().database());
            return q.exec(QLatin1String(sql)) && q.next() ? q.value(0).toInt() : -1;
        };
        for (int run = 0; run < 2; ++run) {
            finished.clear();
            QVERIFY(runs.start(plan.id, false).isEmpty());
            QVERIFY(finished.wait(60000));
            const qint64 point = finished.first().at(3).value<StoredRestorePoint>().rowId;
            QVERIFY(point > 0);
            QCOMPARE(store.content(point).size(), 4201);
            QCOMPARE(count("SELECT COUNT(*) FROM contents"), 4201);
            QCOMPARE(count("SELECT COUNT(*) FROM staged_contents"), 0);
        }
    }
};

NVB_TEST_GUILESS_MAIN(TestRunManager)
#include "tst_runmanager.moc"
