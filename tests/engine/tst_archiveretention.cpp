#include <QtTest>

#include <QRandomGenerator>

#include <atomic>

#include "archive/archivebackupjob.h"
#include "archive/archiverestorejob.h"
#include "archive/archiveretentionjob.h"
#include "records/plan/planresult.h"
#include "repository/repository.h"
#include "storage/memorydriver.h"
#include "store/repositorystore.h"
#include "store/storedatabase.h"
#include "testmain.h"

using namespace NVB::Engine;
using NVB::Info::Plan::PlanResult;

// A year of daily new-format runs with retention after each, on an injected
// clock: exactly the points the policy keeps remain, trimmed as it says, each
// restoring byte for byte, and emptied generations leave the storage.
class TestArchiveRetention : public QObject
{
    Q_OBJECT

private:
    static constexpr auto Root = "NVB_t/plan/archive";
    MemoryDriver m_driver;
    QTemporaryDir m_data;
    QTemporaryDir m_source;

    static QByteArray daily(int day) { return QStringLiteral("day %1 of the ledger\n").arg(day).toUtf8().repeated(50); }
    QByteArray weekly(int day)
    {
        QByteArray data(300 * 1024, Qt::Uninitialized);
        QRandomGenerator(quint32(day)).fillRange(reinterpret_cast<quint32*>(data.data()), data.size() / 4);
        return data;
    }

    void put(const QString& name, const QByteArray& data)
    {
        QFile file(m_source.filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        QCOMPARE(file.write(data), qint64(data.size()));
    }

    QMap<QString, QByteArray> restore(const QUuid& generation, int sequence)
    {
        QTemporaryDir target;
        ArchiveRestoreJob::Parameters parameters;
        parameters.repositoryRoot = QString::fromLatin1(Root);
        parameters.generation = generation;
        parameters.sequence = sequence;
        parameters.destination = target.path();
        parameters.driver = &m_driver;
        std::atomic_bool stop {false};
        const auto result = ArchiveRestoreJob(parameters).run(stop, {});
        QMap<QString, QByteArray> files;
        if (result.planResult != PlanResult::Success)
            files.insert(QStringLiteral("error"), result.message.toUtf8());
        QDirIterator it(target.path() + m_source.path(), QDir::Files);
        while (it.hasNext()) {
            QFile file(it.next());
            if (file.open(QIODevice::ReadOnly))
                files.insert(QFileInfo(file).fileName(), file.readAll());
        }
        return files;
    }

private slots:
    void shouldKeepExactlyWhatThePolicySaysOverAYear()
    {
        const QString storeFile = m_data.filePath(QStringLiteral("engine.db"));
        StoreDatabase database;
        QVERIFY(database.open(storeFile));
        RepositoryStore store(database);
        const StoredBunch bunch {QUuid::createUuid(), QUuid::createUuid(), QStringLiteral("Year"), 0, {}};
        ArchiveRetentionJob::Parameters retention;
        retention.storeFile = storeFile;
        retention.connectionId = bunch.connectionId;
        retention.bunchId = bunch.id;
        retention.repositoryRoot = QString::fromLatin1(Root);
        retention.driver = &m_driver;
        retention.rules.ageDays = 30;
        retention.rules.useBackupDate = true;
        const QDateTime first = QDateTime(QDate(2025, 1, 1), QTime(12, 0), Qt::UTC);

        QList<QUuid> generations;
        QUuid generation;
        int sequence = 0;
        QList<QUuid> removedGenerations;
        for (int day = 0; day < 365; ++day) {
            put(QStringLiteral("daily.txt"), daily(day));
            if (day % 7 == 0)
                put(QStringLiteral("weekly.bin"), weekly(day));
            // A forced full run every 90 days starts a generation.
            const bool full = day % 90 == 0;
            if (full) {
                generation = QUuid::createUuid();
                generations.append(generation);
                sequence = 0;
            }
            ++sequence;
            ArchiveBackupJob::Parameters parameters;
            parameters.repositoryRoot = QString::fromLatin1(Root);
            parameters.generation = generation;
            parameters.sequence = sequence;
            parameters.newGeneration = full;
            parameters.previousSequence = full ? 0 : sequence - 1;
            parameters.startUtc = first.addDays(day);
            parameters.driver = &m_driver;
            parameters.storeFile = storeFile;
            FileSelection selection({m_source.path()}, {}, FileSelection::FilterType::All, {}, {}, false);
            std::atomic_bool stop {false};
            const auto made = ArchiveBackupJob(parameters, selection).run(stop, {});
            QVERIFY2(made.planResult == PlanResult::Success, qPrintable(made.message));
            StoredRestorePoint point;
            point.connectionId = bunch.connectionId;
            point.bunchId = bunch.id;
            point.generationId = generation;
            point.sequenceNumber = sequence;
            point.startUtc = parameters.startUtc;
            QVERIFY(database.transaction([&] { return store.insertRestorePoint(bunch, point, made.content) > 0; }));

            retention.now = parameters.startUtc;
            const RetentionJob::Result pruned = ArchiveRetentionJob::apply(retention);
            QVERIFY2(pruned.error.isEmpty(), qPrintable(pruned.error));
            removedGenerations += pruned.generations;
        }

        // Versions stored more than 30 days before the last run are gone,
        // except the newest weekly file; a point goes once both of its are.
        const int last = 364;
        const int newestWeekly = last - last % 7;
        QList<StoredRestorePoint> points = store.restorePoints(bunch.connectionId, bunch.id);
        QCOMPARE(points.size(), 31);
        for (const StoredRestorePoint& point : std::as_const(points)) {
            const int day = int(first.daysTo(point.startUtc));
            QVERIFY(day >= last - 30);
            const int week = day - day % 7;
            QMap<QString, QByteArray> expected {{QStringLiteral("daily.txt"), daily(day)}};
            if (week + 30 >= last || week == newestWeekly)
                expected.insert(QStringLiteral("weekly.bin"), weekly(week));
            QCOMPARE(restore(point.generationId, point.sequenceNumber), expected);
        }
        QCOMPARE(removedGenerations, generations.mid(0, 3));
        QString error;
        const QList<QUuid> left = Repository(&m_driver, QString::fromLatin1(Root)).generations(&error);
        QCOMPARE(QSet<QUuid>(left.cbegin(), left.cend()), QSet<QUuid>(generations.cbegin() + 3, generations.cend()));
        // Pruned: what remains is about what 31 small points and six weekly
        // files need, not a year of packs.
        qint64 stored = 0;
        for (const StorageObjectInfo& object : m_driver.list(QString::fromLatin1(Root)).objects)
            stored += object.size;
        QVERIFY2(stored < 8 * 300 * 1024, qPrintable(QString::number(stored)));
    }
};

NVB_TEST_GUILESS_MAIN(TestArchiveRetention)
#include "tst_archiveretention.moc"
