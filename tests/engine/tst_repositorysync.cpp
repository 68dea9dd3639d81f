#include <QDirIterator>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QSqlQuery>
#include <QtTest>

#include "records/plan/backupfile.h"
#include "records/plan/planresult.h"
#include "records/plan/restorefile.h"
#include "runs/runmanager.h"
#include "store/enginestore.h"
#include "sync/repositorysync.h"
#include "testmain.h"

using namespace NVB::Engine;
using NVB::Info::Plan::PlanResult;

// Reading a storage back into a store that never saw it, or that holds
// points whose data went.
class TestRepositorySync : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_storage;
    std::unique_ptr<QTemporaryDir> m_source;

    static StoredAccount account(EngineStore& store, const QString& path)
    {
        StoredAccount made {QUuid::createUuid(), {}, QStringLiteral("Disk"), 1, QStringLiteral("rs"),
            QJsonObject {{QStringLiteral("Path"), path}}};
        return store.saveAccount(made) ? made : StoredAccount();
    }

    static bool save(EngineStore& store, const NVB::Info::Plan::Base& record)
    {
        StoredPlan plan;
        plan.describe(record);
        return store.savePlan(plan);
    }

    static int run(EngineStore& store, const QUuid& plan)
    {
        RunManager runs(&store);
        QSignalSpy finished(&runs, &RunManager::finished);
        if (!runs.start(plan, false).isEmpty() || !finished.wait(30000))
            return -1;
        return finished.first().at(2).toInt();
    }

    static QMap<QString, QByteArray> files(const QString& root)
    {
        QMap<QString, QByteArray> result;
        QDirIterator it(root, QDir::Files, QDirIterator::Subdirectories);
        while (it.hasNext()) {
            QFile file(it.next());
            result.insert(file.fileName().mid(root.size()), file.open(QIODevice::ReadOnly) ? file.readAll() : "?");
        }
        return result;
    }

    static QStringList filePaths(EngineStore& store, qint64 point)
    {
        QStringList result;
        for (const StoredContent& item : store.content(point)) {
            if (item.type == StoredContent::File)
                result << QStringLiteral("%1 %2").arg(item.path).arg(item.size);
        }
        return result;
    }

    bool put(const QString& name, const QByteArray& bytes)
    {
        QDir().mkpath(QFileInfo(m_source->filePath(name)).absolutePath());
        QFile file(m_source->filePath(name));
        return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
    }

private slots:
    void init()
    {
        m_storage = std::make_unique<QTemporaryDir>();
        m_source = std::make_unique<QTemporaryDir>();
    }

    void shouldRecordWhatTheStorageHoldsAndDropWhatIsGone_data()
    {
        QTest::addColumn<bool>("archive");
        QTest::newRow("new format") << true;
        QTest::newRow("legacy format") << false;
    }

    void shouldRecordWhatTheStorageHoldsAndDropWhatIsGone()
    {
        QFETCH(bool, archive);
        QByteArray random(300 * 1024, Qt::Uninitialized);
        QRandomGenerator(7).fillRange(reinterpret_cast<quint32*>(random.data()), random.size() / 4);
        QVERIFY(put(QStringLiteral("a.txt"), "first"));
        QVERIFY(put(QStringLiteral("d/b.bin"), random));
        QVERIFY(put(QStringLiteral("d/e/c.txt"), QByteArray(5000, 'c')));

        // The first installation backs up twice.
        QTemporaryDir oldData;
        EngineStore old;
        QVERIFY(old.open(oldData.filePath(QStringLiteral("nvbackup.db"))));
        const StoredAccount oldAccount = account(old, m_storage->path());
        NVB::Info::Plan::BackupFile plan;
        plan.setId(QUuid::createUuid());
        plan.setName(QStringLiteral("Documents"));
        plan.setStorage(oldAccount.id);
        plan.setItems({m_source->path()});
        plan.setIsArchive(archive);
        plan.setUseCompression(true);
        QVERIFY(save(old, plan));
        QCOMPARE(run(old, plan.id()), int(PlanResult::Success));
        QVERIFY(put(QStringLiteral("a.txt"), "second, longer"));
        QVERIFY(put(QStringLiteral("n.txt"), "new"));
        QCOMPARE(run(old, plan.id()), int(PlanResult::Success));
        const QList<StoredRestorePoint> oldPoints = old.restorePoints(oldAccount.id, plan.id());
        QCOMPARE(oldPoints.size(), 2);

        // A fresh engine with its own account on the same folder.
        QTemporaryDir newData;
        EngineStore fresh;
        QVERIFY(fresh.open(newData.filePath(QStringLiteral("nvbackup.db"))));
        const StoredAccount newAccount = account(fresh, m_storage->path());
        const std::atomic_bool keepGoing {false};
        QStringList said;
        RepositorySync::Result result
            = RepositorySync(fresh.filePath(), newAccount.id, keepGoing, [&said](const QString& m) {
                  said << m;
              }).run();
        QVERIFY2(result.error.isEmpty(), qPrintable(result.error));
        QCOMPARE(result.added, 2);
        QVERIFY(!said.isEmpty());
        const QList<StoredRestorePoint> points = fresh.restorePoints(newAccount.id, plan.id());
        QCOMPARE(points.size(), 2);
        QCOMPARE(fresh.bunch(newAccount.id, plan.id())->displayName,
            archive ? QStringLiteral("Documents")
                    : QStringLiteral("Plan %1").arg(plan.id().toString(QUuid::WithoutBraces)));
        for (int i = 0; i < 2; ++i) {
            QCOMPARE(points.at(i).generationId, oldPoints.at(i).generationId);
            QCOMPARE(filePaths(fresh, points.at(i).rowId), filePaths(old, oldPoints.at(i).rowId));
        }

        // The point restores byte for byte through the fresh engine.
        QTemporaryDir target;
        NVB::Info::Plan::RestoreFile restore;
        restore.setId(QUuid::createUuid());
        restore.setName(QStringLiteral("Back"));
        restore.setStorage(newAccount.id);
        restore.setRestorePoint(QStringLiteral("NVB_Archive\\%1\\now").arg(plan.id().toString(QUuid::WithoutBraces)));
        restore.setRestoreToOriginalLocation(false);
        restore.setDestination(target.path());
        QVERIFY(save(fresh, restore));
        QCOMPARE(run(fresh, restore.id()), int(PlanResult::Success));
        QCOMPARE(files(target.path() + m_source->path()), files(m_source->path()));

        // Cancelled after the first point: that point is whole, nothing of
        // the second is there, and the next run goes on from it.
        QTemporaryDir thirdData;
        EngineStore third;
        QVERIFY(third.open(thirdData.filePath(QStringLiteral("nvbackup.db"))));
        const StoredAccount thirdAccount = account(third, m_storage->path());
        std::atomic_bool cancel {false};
        result = RepositorySync(third.filePath(), thirdAccount.id, cancel, [&cancel](const QString& message) {
            if (message.contains(QLatin1String("recorded")))
                cancel = true;
        }).run();
        QVERIFY(result.cancelled);
        QCOMPARE(result.added, 1);
        QSqlQuery stray(third.database().database());
        QVERIFY(stray.exec(QStringLiteral("SELECT COUNT(*) FROM contents c WHERE NOT EXISTS (SELECT 1 FROM "
                                          "restore_points r WHERE r.generation_id=c.generation AND "
                                          "r.sequence BETWEEN c.first_seq AND c.last_seq)")));
        QVERIFY(stray.next());
        QCOMPARE(stray.value(0).toInt(), 0);
        stray.finish(); // its snapshot would hide the next run's points
        const auto firstOnly = third.restorePoints(thirdAccount.id, plan.id());
        QCOMPARE(firstOnly.size(), 1);
        QCOMPARE(filePaths(third, firstOnly.first().rowId), filePaths(old, oldPoints.first().rowId));
        cancel = false;
        result = RepositorySync(third.filePath(), thirdAccount.id, cancel, [](const QString&) {}).run();
        QCOMPARE(result.added, 1);
        QCOMPARE(filePaths(third, third.restorePoints(thirdAccount.id, plan.id()).last().rowId),
            filePaths(old, oldPoints.last().rowId));

        // The second point's data deleted on the storage: it leaves the store.
        const QString generation = points.last().generationId.toString(QUuid::WithoutBraces);
        const QString planFolder
            = m_storage->filePath(QStringLiteral("NVB_rs/%1").arg(plan.id().toString(QUuid::WithoutBraces)));
        if (archive)
            QVERIFY(
                QFile::remove(QStringLiteral("%1/archive/generations/%2/points/000002").arg(planFolder, generation)));
        else
            QVERIFY(QDir(QStringLiteral("%1/%2/000002").arg(planFolder, generation)).removeRecursively());
        result = RepositorySync(fresh.filePath(), newAccount.id, keepGoing, [](const QString&) {}).run();
        QVERIFY2(result.error.isEmpty(), qPrintable(result.error));
        QCOMPARE(result.removed, 1);
        QCOMPARE(result.added, 0);
        QCOMPARE(fresh.restorePoints(newAccount.id, plan.id()).size(), 1);
    }

    void shouldRefuseAFolderThatIsNotThere()
    {
        QTemporaryDir data;
        EngineStore store;
        QVERIFY(store.open(data.filePath(QStringLiteral("nvbackup.db"))));
        const StoredAccount missing = account(store, m_storage->filePath(QStringLiteral("unmounted")));
        const std::atomic_bool cancel {false};
        const auto result = RepositorySync(store.filePath(), missing.id, cancel, [](const QString&) {}).run();
        QVERIFY2(result.error.contains(QLatin1String("is its drive mounted")), qPrintable(result.error));
    }
};

NVB_TEST_MAIN(TestRepositorySync)
#include "tst_repositorysync.moc"
