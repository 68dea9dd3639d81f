#include <QtTest>

#include <QRandomGenerator>

#include <atomic>

#include "archive/archivebackupjob.h"
#include "archive/archiverestorejob.h"
#include "archive/archiveretentionjob.h"
#include "records/plan/planresult.h"
#include "repository/chunktransform.h"
#include "repository/repository.h"
#include "storage/memorydriver.h"
#include "store/chunkindexstore.h"
#include "store/contentchanges.h"
#include "store/repositorystore.h"
#include "store/storedatabase.h"
#include "testmain.h"

using namespace NVB::Engine;
using NVB::Info::Plan::PlanResult;

// Encryption and retention of the new format on real trees: what restores,
// what the storage shows, what damage costs and what a year of policy keeps.
class TestArchiveDataOptions : public QObject
{
    Q_OBJECT

private:
    using Files = QMap<QString, QByteArray>; // name: content
    static constexpr auto Root = "NVB_t/plan/archive";
    const QString m_password = QStringLiteral("correct horse");
    MemoryDriver m_driver;
    QTemporaryDir m_source;

    static QByteArray random(int size, quint32 seed)
    {
        QByteArray data(size, Qt::Uninitialized);
        QRandomGenerator(seed).fillRange(reinterpret_cast<quint32*>(data.data()), size / 4);
        return data;
    }

    void put(const QString& name, const QByteArray& data)
    {
        QFile file(m_source.filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(data) == data.size());
    }

    ArchiveBackupJob::Result backup(ArchiveBackupJob::Parameters parameters)
    {
        parameters.repositoryRoot = QString::fromLatin1(Root);
        parameters.driver = &m_driver;
        FileSelection selection({m_source.path()}, {}, FileSelection::FilterType::All, {}, {}, false);
        std::atomic_bool stop {false};
        return ArchiveBackupJob(parameters, selection).run(stop, {});
    }

    ArchiveRestoreJob::Result restore(const QUuid& generation, int sequence, const QString& password, Files* files)
    {
        QTemporaryDir target;
        ArchiveRestoreJob::Parameters parameters;
        parameters.repositoryRoot = QString::fromLatin1(Root);
        parameters.generation = generation;
        parameters.sequence = sequence;
        parameters.destination = target.path();
        parameters.password = password;
        parameters.driver = &m_driver;
        std::atomic_bool stop {false};
        const auto result = ArchiveRestoreJob(parameters).run(stop, {});
        files->clear();
        QDirIterator it(target.path(), QDir::Files, QDirIterator::Subdirectories);
        while (it.hasNext()) {
            QFile file(it.next());
            if (file.open(QIODevice::ReadOnly))
                files->insert(QFileInfo(file).fileName(), file.readAll());
        }
        return result;
    }

    ArchiveBackupJob::Parameters enciphered(const QUuid& generation, int keyBytes, bool compress, qint64 packSize = 0)
    {
        ArchiveBackupJob::Parameters parameters;
        parameters.generation = generation;
        parameters.compress = compress;
        parameters.password = m_password;
        parameters.keyBytes = keyBytes;
        parameters.packSize = packSize;
        return parameters;
    }

private slots:
    void init()
    {
        for (const StorageObjectInfo& object : m_driver.list({}).objects)
            m_driver.remove(object.key);
        QDir(m_source.path()).removeRecursively();
        QDir().mkpath(m_source.path());
    }

    void shouldRoundTripAndHideEverything_data()
    {
        QTest::addColumn<int>("keyBytes");
        QTest::addColumn<bool>("compress");
        for (int bytes : {16, 24, 32}) {
            QTest::addRow("aes-%d", bytes * 8) << bytes << false;
            QTest::addRow("zstd+aes-%d", bytes * 8) << bytes << true;
        }
    }

    // The storage holds no name, sentence or plain run of a file, ids are
    // keyed, a wrong password writes nothing, the right one restores.
    void shouldRoundTripAndHideEverything()
    {
        QFETCH(int, keyBytes);
        QFETCH(bool, compress);
        const QByteArray sentence("The quick brown fox guards the pension fund ledger.");
        const Files source {{QStringLiteral("payroll-confidential.txt"), sentence.repeated(3000)},
            {QStringLiteral("random.bin"), random(3 << 20, 7)}};
        for (auto it = source.cbegin(); it != source.cend(); ++it)
            put(it.key(), it.value());
        const QUuid generation = QUuid::createUuid();
        const auto made = backup(enciphered(generation, keyBytes, compress));
        QVERIFY2(made.planResult == PlanResult::Success, qPrintable(made.message));
        for (const StorageObjectInfo& object : m_driver.list({}).objects) {
            const QByteArray stored = m_driver.read(object.key).data;
            QVERIFY2(!stored.contains(sentence) && !stored.contains("payroll")
                    && !stored.contains(source.last().mid(1 << 20, 64)),
                qPrintable(object.key));
        }
        Repository repository(&m_driver, QString::fromLatin1(Root));
        const OpenedGeneration opened = repository.openGeneration(generation, m_password);
        QVERIFY(opened.enciphered);
        QVERIFY(opened.identifier.id(sentence) != ChunkIdentifier().id(sentence));

        Files restored;
        const auto refused = restore(generation, 1, QStringLiteral("Correct horse"), &restored);
        QCOMPARE(refused.planResult, int(PlanResult::Failed));
        QVERIFY2(refused.message.contains(QStringLiteral("wrong password")), qPrintable(refused.message));
        QVERIFY(restored.isEmpty());
        QCOMPARE(restore(generation, 1, m_password, &restored).planResult, int(PlanResult::Success));
        QCOMPARE(restored, source);
    }

    // A flipped byte, a truncated pack and two swapped chunks each fail
    // exactly the files they touch, by name; the others restore.
    void shouldNameFilesOfDamagedChunks()
    {
        for (int n = 0; n < 30; ++n)
            put(QStringLiteral("f%1.bin").arg(n), random(40 * 1024, quint32(n)));
        const QUuid generation = QUuid::createUuid();
        QCOMPARE(backup(enciphered(generation, 32, false, 200 * 1024)).planResult, int(PlanResult::Success));
        Repository repository(&m_driver, QString::fromLatin1(Root));
        const OpenedGeneration opened = repository.openGeneration(generation, m_password);
        QVector<PackSummary> packs;
        QVERIFY(repository.packSummaries(generation, *opened.transform, &packs).isEmpty());
        QString error;
        QHash<QByteArray, QString> fileOf;
        for (const TreeEntry& entry : repository.readTree(generation, 1, *opened.transform, &error).entries)
            fileOf.insert(entry.chunks.value(0), QFileInfo(entry.item.path).fileName());
        QVERIFY(packs.size() >= 3 && error.isEmpty());

        QSet<QString> expected;
        QByteArray bytes = m_driver.read(packs.at(0).key).data;
        const PackEntry hit = packs.at(0).entries.constFirst();
        bytes[int(hit.offset + hit.length / 2)] = char(bytes[int(hit.offset + hit.length / 2)] ^ 1);
        QVERIFY(m_driver.write(packs.at(0).key, bytes).ok());
        expected << fileOf.value(hit.id);
        const PackEntry cut = packs.at(1).entries.constLast();
        QVERIFY(m_driver.write(packs.at(1).key, m_driver.read(packs.at(1).key).data.left(int(cut.offset + 10))).ok());
        expected << fileOf.value(cut.id);
        bytes = m_driver.read(packs.at(2).key).data;
        const PackEntry a = packs.at(2).entries.at(0);
        const PackEntry b = packs.at(2).entries.at(1);
        QCOMPARE(a.length, b.length);
        const QByteArray first = bytes.mid(int(a.offset), int(a.length));
        bytes.replace(int(a.offset), int(a.length), bytes.mid(int(b.offset), int(b.length)));
        bytes.replace(int(b.offset), int(b.length), first);
        QVERIFY(m_driver.write(packs.at(2).key, bytes).ok());
        expected << fileOf.value(a.id) << fileOf.value(b.id);

        Files restored;
        const auto result = restore(generation, 1, m_password, &restored);
        QCOMPARE(result.planResult, int(PlanResult::Warning));
        QSet<QString> failed;
        for (const RunFileRecord& file : result.files) {
            if (file.operation == RunFileRecord::Failed && file.message.contains(file.file))
                failed << QFileInfo(file.file).fileName();
        }
        QCOMPARE(failed, expected);
        QCOMPARE(restored.size(), 30 - expected.size());
        for (auto it = restored.cbegin(); it != restored.cend(); ++it)
            QCOMPARE(it.value(), random(40 * 1024, it.key().mid(1).section(QLatin1Char('.'), 0, 0).toUInt()));
    }

    // A year of daily runs, retention after each on the run's clock, a forced
    // full run every 90 days. Versions stored more than 30 days before go,
    // except the newest weekly file; a point goes when both of its files
    // have; emptied generations leave the storage; every point left restores
    // exactly what the policy keeps of it.
    void shouldAnswerABatchedLookUpAsSingleOnes()
    {
        // More ids than one statement takes, half of them cached, and the
        // same ids cached under another generation.
        QTemporaryDir data;
        StoreDatabase database;
        QVERIFY(database.open(data.filePath(QStringLiteral("engine.db"))));
        ChunkIndexStore cache(database);
        const QUuid generation = QUuid::createUuid();
        const QUuid other = QUuid::createUuid();
        PackSummary pack {QStringLiteral("p/1"), 1, {}};
        QVector<QByteArray> asked;
        for (int i = 0; i < 600; ++i) {
            const QByteArray id = QCryptographicHash::hash(QByteArray::number(i), QCryptographicHash::Sha256);
            asked.append(id);
            if (i % 2 == 0)
                pack.entries.append({id, i, 1, 1});
        }
        QVERIFY(cache.add(generation, QStringLiteral("index/1"), {pack}));
        pack.entries = {{asked.at(1), 0, 1, 1}};
        QVERIFY(cache.add(other, QStringLiteral("index/2"), {pack}));
        QSet<QByteArray> found;
        QVERIFY(cache.containing(generation, asked, &found));
        QCOMPARE(found.size(), 300);
        for (const QByteArray& id : std::as_const(asked))
            QCOMPARE(found.contains(id), cache.contains(generation, id));
    }

    void shouldKeepExactlyWhatThePolicySaysOverAYear()
    {
        QTemporaryDir data;
        const QString storeFile = data.filePath(QStringLiteral("engine.db"));
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
        const auto daily = [](int day) { return QByteArray::number(day).repeated(500); };
        const QDateTime first(QDate(2025, 1, 1), QTime(12, 0), Qt::UTC);
        QList<QUuid> generations;
        QList<QUuid> removed;
        int sequence = 0;
        for (int day = 0; day < 365; ++day) {
            put(QStringLiteral("daily.txt"), daily(day));
            if (day % 7 == 0)
                put(QStringLiteral("weekly.bin"), random(300 * 1024, quint32(day)));
            ArchiveBackupJob::Parameters parameters;
            parameters.newGeneration = day % 90 == 0;
            if (parameters.newGeneration) {
                generations.append(QUuid::createUuid());
                sequence = 0;
            }
            parameters.generation = generations.constLast();
            parameters.sequence = ++sequence;
            parameters.previousSequence = sequence - 1;
            parameters.startUtc = first.addDays(day);
            parameters.storeFile = storeFile;
            const auto made = backup(parameters);
            QVERIFY2(made.planResult == PlanResult::Success, qPrintable(made.message));
            const StoredRestorePoint point {
                0, bunch.connectionId, bunch.id, parameters.generation, sequence, parameters.startUtc};
            // As the engine records it: the run's changes against the previous point.
            const ContentChanges changes {made.content, made.removed, QStringList(), made.replacesAll};
            QVERIFY(database.transaction([&] { return store.insertRestorePoint(bunch, point, changes) > 0; }));
            retention.now = parameters.startUtc;
            const RetentionJob::Result pruned = ArchiveRetentionJob::apply(retention);
            QVERIFY2(pruned.error.isEmpty(), qPrintable(pruned.error));
            removed += pruned.generations;
        }

        const QList<StoredRestorePoint> points = store.restorePoints(bunch.connectionId, bunch.id);
        QCOMPARE(points.size(), 31);
        for (const StoredRestorePoint& point : points) {
            const int day = int(first.daysTo(point.startUtc));
            const int week = day - day % 7;
            Files expected {{QStringLiteral("daily.txt"), daily(day)}};
            if (week + 30 >= 364)
                expected.insert(QStringLiteral("weekly.bin"), random(300 * 1024, quint32(week)));
            Files restored;
            QCOMPARE(
                restore(point.generationId, point.sequenceNumber, {}, &restored).planResult, int(PlanResult::Success));
            QCOMPARE(restored, expected);
        }
        QCOMPARE(removed, generations.mid(0, 3));
        QString error;
        const QList<QUuid> left = Repository(&m_driver, QString::fromLatin1(Root)).generations(&error);
        QCOMPARE(QSet<QUuid>(left.cbegin(), left.cend()), QSet<QUuid>(generations.cbegin() + 3, generations.cend()));
        // Pruned: about six weekly files remain stored, not a year of them.
        qint64 stored = 0;
        for (const StorageObjectInfo& object : m_driver.list(QString::fromLatin1(Root)).objects)
            stored += object.size;
        QVERIFY2(stored < 8 * 300 * 1024, qPrintable(QString::number(stored)));
    }
};

NVB_TEST_GUILESS_MAIN(TestArchiveDataOptions)
#include "tst_archivedataoptions.moc"
