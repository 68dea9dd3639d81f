#include <sys/wait.h>
#include <unistd.h>

#include <QJsonObject>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QtTest>

#include "store/contentchanges.h"
#include "store/enginestore.h"
#include "store/repositorystore.h"
#include "store/restorepointremoval.h"
#include "store/storemigrations.h"
#include "testmain.h"

using namespace NVB::Engine;

class TestEngineStore : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    QString path(const char* name) const { return m_dir.filePath(QString::fromLatin1(name)); }

    static StoredPlan samplePlan(const QString& name)
    {
        StoredPlan plan;
        plan.id = QUuid::createUuid();
        plan.name = name;
        plan.xml = QStringLiteral("<plan name=\"%1\"/>").arg(name);
        plan.storageId = QUuid::createUuid();
        return plan;
    }

    static RunRecord startedRun(const StoredPlan& plan, const QDateTime& start)
    {
        RunRecord run;
        run.planId = plan.id;
        run.planName = plan.name;
        run.result = 1;
        run.startUtc = start;
        return run;
    }

private slots:
    void shouldKeepPlansAndAccountsAcrossOpenings()
    {
        const QString file = path("keep.db");
        StoredPlan plan = samplePlan(QStringLiteral("Documents"));
        StoredAccount account;
        account.id = plan.storageId;
        account.displayName = QStringLiteral("Local disk");
        account.type = 1;
        account.prefix = QStringLiteral("NVB_host");
        account.params = QJsonObject {{QStringLiteral("Path"), QStringLiteral("/backup")},
            {QStringLiteral("Password"), QStringLiteral("nvb1:sealed")}};
        {
            EngineStore store;
            QVERIFY2(store.open(file), qPrintable(store.lastError()));
            QVERIFY2(store.savePlan(plan), qPrintable(store.lastError()));
            QVERIFY(store.saveAccount(account));
            plan.name = QStringLiteral("Documents (renamed)");
            QVERIFY(store.savePlan(plan));
        }
        EngineStore store;
        QVERIFY(store.open(file));
        QCOMPARE(store.plans().size(), 1);
        QCOMPARE(store.plan(plan.id)->name, QStringLiteral("Documents (renamed)"));
        QCOMPARE(store.plan(plan.id)->storageId, plan.storageId);
        const auto kept = store.account(account.id);
        QVERIFY(kept.has_value());
        QCOMPARE(kept->params, account.params);
        QCOMPARE(kept->prefix, account.prefix);
        QCOMPARE(store.plansUsingAccount(account.id), QList<QUuid> {plan.id});
    }

    void shouldRefuseUnknownIds()
    {
        EngineStore store;
        QVERIFY(store.open(path("unknown.db")));
        QVERIFY(!store.removePlan(QUuid::createUuid()));
        QVERIFY(store.lastError().contains(QStringLiteral("No plan")));
        QVERIFY(!store.removeAccount(QUuid::createUuid()));
        QVERIFY(!store.plan(QUuid::createUuid()).has_value());
    }

    void shouldRecordRunWithRestorePointAtOnce()
    {
        EngineStore store;
        QVERIFY(store.open(path("runs.db")));
        StoredPlan plan = samplePlan(QStringLiteral("Photos"));
        QVERIFY(store.savePlan(plan));
        RunRecord run = startedRun(plan, QDateTime(QDate(2026, 5, 1), QTime(10, 0), Qt::UTC));
        const auto id = store.beginRun(run);
        QVERIFY(id.has_value());
        run.id = *id;
        run.result = 6;
        run.fileCount = 2;

        RunFileRecord file;
        file.planId = plan.id;
        file.file = QStringLiteral("/home/ann/a.jpg");
        file.finishUtc = run.startUtc.addSecs(5);
        StoredBunch bunch {plan.storageId, plan.id, plan.name, 0, plan.xml};
        StoredRestorePoint point;
        point.connectionId = plan.storageId;
        point.bunchId = plan.id;
        point.generationId = QUuid::createUuid();
        point.sequenceNumber = 1;
        point.startUtc = run.startUtc;
        StoredContent folder;
        folder.path = QStringLiteral("/home/ann");
        folder.type = StoredContent::Folder;
        StoredContent content;
        content.path = QStringLiteral("/home/ann/a.jpg");
        content.size = 10;
        content.object = QStringLiteral("NVB_x/a.jpg");
        plan.lastResult = 6;
        plan.lastRunUtc = run.startUtc;
        QVERIFY2(store.finishRun(run, {file}, plan, &bunch, &point, {folder, content}), qPrintable(store.lastError()));

        QCOMPARE(store.plan(plan.id)->lastResult, 6);
        QCOMPARE(store.runs(HistoryQuery {}).first().result, 6);
        QCOMPARE(store.bunches(plan.storageId).size(), 1);
        const auto latest = store.latestRestorePoint(plan.storageId, plan.id);
        QVERIFY(latest.has_value());
        QCOMPARE(latest->startUtc, run.startUtc);
        QCOMPARE(store.contentChildren(latest->rowId, QStringLiteral("/home/ann"), 0, 10).first().object,
            QStringLiteral("NVB_x/a.jpg"));
        QCOMPARE(store.contentChildren(latest->rowId, QStringLiteral("/home"), 0, 10).first().path,
            QStringLiteral("/home/ann"));
        const auto generation = store.generation(point.generationId);
        QVERIFY(generation.has_value());
        QCOMPARE(generation->firstRestorePoint, run.startUtc);

        // A second restore point with the same sequence in the generation is
        // refused, and with it the whole run: nothing of it may stay.
        RunRecord again = startedRun(plan, run.startUtc.addDays(1));
        again.id = *store.beginRun(again);
        again.result = 6;
        plan.lastResult = 8;
        QVERIFY(!store.finishRun(again, {file}, plan, &bunch, &point, {content}));
        QCOMPARE(store.plan(plan.id)->lastResult, 6);
        QCOMPARE(store.runFiles(HistoryQuery {}).size(), 1);
        QCOMPARE(store.restorePoints(plan.storageId, plan.id).size(), 1);
    }

    void shouldPageHistoryBehindLastId()
    {
        EngineStore store;
        QVERIFY(store.open(path("pages.db")));
        const StoredPlan plan = samplePlan(QStringLiteral("Mail"));
        QVERIFY(store.savePlan(plan));
        const QDateTime now = QDateTime::currentDateTimeUtc();
        for (int day : {40, 10, 3, 0}) {
            RunRecord run = startedRun(plan, now.addDays(-day));
            run.id = *store.beginRun(run);
        }
        HistoryQuery all;
        all.limit = 2;
        const QList<RunRecord> first = store.runs(all);
        QCOMPARE(first.size(), 2);
        QVERIFY(first.at(0).id > first.at(1).id);
        all.lastId = first.last().id;
        const QList<RunRecord> second = store.runs(all);
        QCOMPARE(second.size(), 2);
        QVERIFY(second.first().id < first.last().id);

        HistoryQuery week;
        week.period = HistoryQuery::Period::WeekLast;
        QCOMPARE(store.runs(week).size(), 2);
        week.period = HistoryQuery::Period::MonthLast;
        QCOMPARE(store.runs(week).size(), 3);
        week.planId = QUuid::createUuid();
        QCOMPARE(store.runs(week).size(), 0);
        HistoryQuery filtered;
        filtered.filter = QStringLiteral("mAI");
        QCOMPARE(store.runs(filtered).size(), 4);
    }

    void shouldCloseRunsOfADeadEngine()
    {
        const QString file = path("dead.db");
        const StoredPlan plan = samplePlan(QStringLiteral("Work"));
        // The child plays an engine that dies in the middle of a run.
        const pid_t child = ::fork();
        QVERIFY(child >= 0);
        if (child == 0) {
            EngineStore store;
            if (!store.open(file) || !store.savePlan(plan) || !store.setPlanStatus(plan.id, 1))
                ::_exit(1);
            RunRecord run;
            run.planId = plan.id;
            run.result = 1;
            run.startUtc = QDateTime::currentDateTimeUtc();
            if (!store.beginRun(run))
                ::_exit(1);
            ::_exit(0);
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        QCOMPARE(WEXITSTATUS(status), 0);

        EngineStore store;
        QVERIFY(store.open(file));
        QCOMPARE(store.plan(plan.id)->name, plan.name);
        QCOMPARE(store.closeInterruptedRuns(1, 5, 2), 1);
        QCOMPARE(store.runs(HistoryQuery {}).first().result, 5);
        QCOMPARE(store.plan(plan.id)->status, 2);
        QCOMPARE(store.closeInterruptedRuns(1, 5, 2), 0);
    }

    void shouldKeepEveryOtherPointWhole_data()
    {
        // Points 1 to 4 all hold one unchanged file in one row: removing it
        // from one point must leave every other point as it was.
        QTest::addColumn<QList<int>>("takenFrom");
        QTest::addColumn<QList<int>>("removedPoints");
        QTest::addColumn<QList<int>>("holding");
        QTest::newRow("from a middle point") << QList<int> {2} << QList<int> {} << QList<int> {1, 3, 4, 5};
        QTest::newRow("from the first") << QList<int> {1} << QList<int> {} << QList<int> {2, 3, 4, 5};
        QTest::newRow("from the latest") << QList<int> {4} << QList<int> {} << QList<int> {1, 2, 3};
        QTest::newRow("latest point whole") << QList<int> {} << QList<int> {4} << QList<int> {1, 2, 3, 5};
        QTest::newRow("middle points whole") << QList<int> {} << QList<int> {2, 3} << QList<int> {1, 4, 5};
        QTest::newRow("from all but the first") << QList<int> {2, 3, 4} << QList<int> {} << QList<int> {1};
    }

    void shouldKeepEveryOtherPointWhole()
    {
        QFETCH(QList<int>, takenFrom);
        QFETCH(QList<int>, removedPoints);
        QFETCH(QList<int>, holding);
        EngineStore store;
        QVERIFY(store.open(path(QTest::currentDataTag())));
        RepositoryStore& repository = store.repositoryStore();
        const StoredBunch bunch {QUuid::createUuid(), QUuid::createUuid(), QStringLiteral("Notes"), 0, QString()};
        StoredRestorePoint point;
        point.connectionId = bunch.connectionId;
        point.bunchId = bunch.id;
        point.generationId = QUuid::createUuid();
        StoredContent file;
        file.path = QStringLiteral("/notes/a.txt");
        file.object = QStringLiteral("NVB_x/a.txt");
        StoredContent other = file;
        other.path = QStringLiteral("/notes/b.txt");
        QHash<int, qint64> rows;
        auto record = [&](int sequence, const ContentChanges& changes) {
            point.sequenceNumber = sequence;
            point.startUtc = QDateTime(QDate(2026, 5, sequence), QTime(10, 0), Qt::UTC);
            rows.insert(sequence, repository.insertRestorePoint(bunch, point, changes));
            return rows.value(sequence) > 0;
        };
        QVERIFY(record(1, ContentChanges {{file, other}, {}, {}, false}));
        for (int sequence = 2; sequence <= 4; ++sequence)
            QVERIFY(record(sequence, ContentChanges {}));
        QHash<qint64, QStringList> paths;
        for (int sequence : takenFrom)
            paths.insert(rows.value(sequence), {file.path});
        QList<qint64> points;
        for (int sequence : removedPoints)
            points << rows.value(sequence);
        QVERIFY(RestorePointRemoval(store.database()).removeFromRestorePoints(paths, points));
        // The next point names no change: it holds what the latest kept
        // point holds, so a file taken out of that one does not come back.
        QVERIFY(record(5, ContentChanges {}));
        for (int sequence = 1; sequence <= 5; ++sequence) {
            if (removedPoints.contains(sequence))
                continue;
            QStringList held;
            for (const StoredContent& item : store.content(rows.value(sequence)))
                held << item.path;
            const QStringList expected
                = holding.contains(sequence) ? QStringList {file.path, other.path} : QStringList {other.path};
            QCOMPARE(held, expected);
        }
    }

    void shouldBringAFirstVersionStoreUpToDate()
    {
        // A store as the first engine left it: schema 1 with a restore point.
        const QString file = path("v1.db");
        const QUuid connection = QUuid::createUuid();
        const QUuid bunch = QUuid::createUuid();
        const QUuid generation = QUuid::createUuid();
        {
            QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("v1"));
            db.setDatabaseName(file);
            QVERIFY(db.open());
            QSqlQuery q(db);
            for (const QString& statement : StoreMigrations::all().first().statements)
                QVERIFY2(q.exec(statement), qPrintable(q.lastError().text()));
            QVERIFY(q.exec(QStringLiteral("INSERT INTO generations(id, bunch_id, connection_id) VALUES('%1','%2','%3')")
                               .arg(generation.toString(), bunch.toString(), connection.toString())));
            QVERIFY(
                q.exec(QStringLiteral("INSERT INTO restore_points(connection_id, bunch_id, generation_id, sequence, "
                                      "start_utc, backup_type, type, status) "
                                      "VALUES('%1','%2','%3',1,'2026-01-01T00:00:00.000Z',0,2,0)")
                           .arg(connection.toString(), bunch.toString(), generation.toString())));
            QVERIFY(q.exec(QStringLiteral("INSERT INTO contents(restore_point, path, parent, name, type, size, object) "
                                          "VALUES(1,'/a','/','a',2,3,'NVB_x/a')")));
            QVERIFY(q.exec(QStringLiteral("PRAGMA user_version=1")));
            db.close();
        }
        QSqlDatabase::removeDatabase(QStringLiteral("v1"));

        EngineStore store;
        QVERIFY2(store.open(file), qPrintable(store.lastError()));
        QCOMPARE(store.database().userVersion(), StoreMigrations::latestVersion());
        QVERIFY(StoreMigrations::latestVersion() > 1);
        const auto old = store.content(1);
        QCOMPARE(old.size(), 1);
        QCOMPARE(old.first().object, QStringLiteral("NVB_x/a"));
        QVERIFY(old.first().checksum.isEmpty());
        QCOMPARE(old.first().modifiedNs, 0);

        // New points keep what change detection and verification need, and
        // the last recorded point is the latest even when the clock went
        // back between the two runs.
        StoredPlan plan = samplePlan(QStringLiteral("Migrated"));
        plan.storageId = connection;
        QVERIFY(store.savePlan(plan));
        RunRecord run = startedRun(plan, QDateTime(QDate(2025, 6, 1), QTime(9, 0), Qt::UTC));
        run.id = *store.beginRun(run);
        StoredBunch bunchRecord {connection, bunch, plan.name, 0, plan.xml};
        StoredRestorePoint point;
        point.connectionId = connection;
        point.bunchId = bunch;
        point.generationId = generation;
        point.sequenceNumber = 2;
        point.startUtc = run.startUtc;
        StoredContent file2;
        file2.path = QStringLiteral("/a");
        file2.size = 4;
        file2.object = QStringLiteral("NVB_x/2/a");
        file2.checksum = QByteArray(32, '\x5a');
        file2.modifiedNs = 1700000000123456789;
        file2.changedNs = 1700000001987654321;
        file2.inode = 424242;
        qint64 row = 0;
        QVERIFY2(store.finishRun(run, {}, plan, &bunchRecord, &point, {file2}, &row), qPrintable(store.lastError()));
        QVERIFY(row > 1);
        QCOMPARE(store.latestRestorePoint(connection, bunch)->rowId, row);
        const StoredContent back = store.content(row).first();
        QCOMPARE(back.checksum, file2.checksum);
        QCOMPARE(back.modifiedNs, file2.modifiedNs);
        QCOMPARE(back.changedNs, file2.changedNs);
        QCOMPARE(back.inode, file2.inode);
        QCOMPARE(store.restorePoints(connection, bunch).last().rowId, row);
    }

    void shouldRefuseStoreOfNewerEngine()
    {
        const QString file = path("newer.db");
        {
            EngineStore store;
            QVERIFY(store.open(file));
        }
        {
            QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("raw"));
            db.setDatabaseName(file);
            QVERIFY(db.open());
            QSqlQuery(db).exec(QStringLiteral("PRAGMA user_version=99"));
            db.close();
        }
        QSqlDatabase::removeDatabase(QStringLiteral("raw"));
        EngineStore store;
        QVERIFY(!store.open(file));
        QVERIFY(store.lastError().contains(QStringLiteral("newer")));
    }
};

NVB_TEST_GUILESS_MAIN(TestEngineStore)
#include "tst_enginestore.moc"
