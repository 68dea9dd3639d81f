#include <QtTest>

#include <QCryptographicHash>
#include <QRandomGenerator>

#include <atomic>

#include "archive/archivebackupjob.h"
#include "archive/archiverestorejob.h"
#include "records/plan/backupfile.h"
#include "records/plan/planresult.h"
#include "records/plan/restorefile.h"
#include "repository/packwriter.h"
#include "repository/pointtreereader.h"
#include "repository/pointtreewriter.h"
#include "repository/repository.h"
#include "repository/zstdtransform.h"
#include "runs/runmanager.h"
#include "storage/memorydriver.h"
#include "store/enginestore.h"
#include "store/historyquery.h"
#include "testmain.h"

using namespace NVB::Engine;
using NVB::Info::Plan::PlanResult;

namespace {

// Counts the index objects and tree parts a run reads.
class CountingDriver : public MemoryDriver
{
public:
    StorageRead read(const QString& key, qint64 offset = 0, qint64 length = -1) const override
    {
        if (key.contains(QLatin1String("/index/")))
            ++indexReads;
        if (key.contains(QLatin1String("/parts/")))
            ++partReads;
        return MemoryDriver::read(key, offset, length);
    }
    mutable int indexReads = 0;
    mutable int partReads = 0;
};

} // namespace

// The new format's runs on real trees against an in-memory storage: what is
// stored again, what restores, and what damage and crashes cost.
class TestArchive : public QObject
{
    Q_OBJECT

private:
    using Tree = QMap<QString, QByteArray>; // path below the source: SHA-256

    static constexpr auto Root = "NVB_t/plan/archive";
    CountingDriver m_driver;
    QString m_storeFile;
    QTemporaryDir m_source;
    QRandomGenerator m_random {20261123};

    QByteArray randomBytes(int size)
    {
        QByteArray data(size, Qt::Uninitialized);
        m_random.fillRange(reinterpret_cast<quint32*>(data.data()), size / 4);
        return data;
    }

    void put(const QString& name, const QByteArray& data)
    {
        const QString path = m_source.filePath(name);
        QDir().mkpath(QFileInfo(path).absolutePath());
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        QCOMPARE(file.write(data), qint64(data.size()));
    }

    Tree sourceTree(const QString& base) const
    {
        Tree tree;
        QDirIterator it(base, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (it.hasNext()) {
            QFile file(it.next());
            if (file.open(QIODevice::ReadOnly))
                tree.insert(file.fileName().mid(base.size() + 1),
                    QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha256));
        }
        return tree;
    }

    ArchiveBackupJob::Result backup(const QUuid& generation, int sequence, bool newGeneration, qint64 packSize = 0)
    {
        ArchiveBackupJob::Parameters parameters;
        parameters.repositoryRoot = QString::fromLatin1(Root);
        parameters.generation = generation;
        parameters.sequence = sequence;
        parameters.newGeneration = newGeneration;
        parameters.previousSequence = newGeneration ? 0 : sequence - 1;
        parameters.compress = true;
        parameters.driver = &m_driver;
        parameters.packSize = packSize;
        parameters.storeFile = m_storeFile;
        FileSelection selection({m_source.path()}, {}, FileSelection::FilterType::All, {}, {}, false);
        std::atomic_bool stop {false};
        return ArchiveBackupJob(parameters, selection).run(stop, {});
    }

    ArchiveRestoreJob::Result restore(const QUuid& generation, int sequence, Tree* restored, bool verify = false)
    {
        QTemporaryDir target;
        ArchiveRestoreJob::Parameters parameters;
        parameters.repositoryRoot = QString::fromLatin1(Root);
        parameters.generation = generation;
        parameters.sequence = sequence;
        parameters.destination = target.path();
        parameters.verifyOnly = verify;
        parameters.driver = &m_driver;
        std::atomic_bool stop {false};
        auto result = ArchiveRestoreJob(parameters).run(stop, {});
        if (restored)
            *restored = sourceTree(target.path() + m_source.path());
        return result;
    }

    int objectsBelow(const QString& prefix) const { return m_driver.list(prefix).objects.size(); }

private slots:
    void init() { QVERIFY(m_source.isValid()); }

    // Duplicates are stored once; overwritten ranges and an insertion at the
    // start store a small fraction again; both points restore exactly.
    void shouldStoreOnlyWhatIsNew()
    {
        const QByteArray same = randomBytes(4 << 20);
        put(QStringLiteral("a/copy1.bin"), same);
        put(QStringLiteral("b/copy2.bin"), same);
        put(QStringLiteral("copy3.bin"), same);
        QByteArray large = randomBytes(24 << 20);
        put(QStringLiteral("large.bin"), large);
        QByteArray shifted = randomBytes(12 << 20);
        put(QStringLiteral("shifted.bin"), shifted);
        for (int n = 0; n < 200; ++n)
            put(QStringLiteral("small/%1.txt").arg(n), randomBytes(1024));
        const Tree first = sourceTree(m_source.path());
        const QUuid generation = QUuid::createUuid();
        const auto run1 = backup(generation, 1, true);
        QCOMPARE(run1.planResult, int(PlanResult::Success));
        const qint64 unique = (4 + 24 + 12) * (1 << 20) + 200 * 1024;
        QCOMPARE(run1.bytesNew, qint64(unique));
        QCOMPARE(run1.bytesRead, qint64(unique + (8 << 20)));
        // 200 small files share packs: far fewer objects than files.
        QVERIFY2(objectsBelow(QString::fromLatin1(Root)) < 12,
            qPrintable(QString::number(objectsBelow(QString::fromLatin1(Root)))));

        for (int n = 0; n < 3; ++n)
            large.replace(n * (7 << 20) + 4096, 4096, randomBytes(4096));
        put(QStringLiteral("large.bin"), large);
        put(QStringLiteral("shifted.bin"), randomBytes(100) + shifted);
        const Tree second = sourceTree(m_source.path());
        const auto run2 = backup(generation, 2, false);
        QCOMPARE(run2.planResult, int(PlanResult::Success));
        QCOMPARE(run2.bytesRead, qint64((24 + 12) * (1 << 20) + 100)); // unchanged files are not read
        QVERIFY2(run2.bytesNew < (36 << 20) / 4, qPrintable(QString::number(run2.bytesNew)));
        QVERIFY(run2.bytesStored < run2.bytesNew + (1 << 20));

        Tree restored;
        QCOMPARE(restore(generation, 1, &restored).planResult, int(PlanResult::Success));
        QCOMPARE(restored, first);
        QCOMPARE(restore(generation, 2, &restored).planResult, int(PlanResult::Success));
        QCOMPARE(restored, second);
    }

    // Ten runs over two generations each restore exactly; a new engine finds
    // them from the storage alone; deleting the older generation removes
    // exactly its objects and the newer one still restores.
    void shouldKeepEveryPointOfASeries()
    {
        const QUuid generations[2] = {QUuid::createUuid(), QUuid::createUuid()};
        QList<Tree> trees;
        for (int run = 1; run <= 10; ++run) {
            for (int n = 0; n < 6; ++n)
                put(QStringLiteral("d%1/f%2").arg(m_random.bounded(3)).arg(m_random.bounded(12)),
                    randomBytes(int(m_random.bounded(1, 600)) * 1024));
            if (run % 4 == 0)
                QVERIFY(QFile::remove(m_source.path() + QLatin1Char('/') + sourceTree(m_source.path()).firstKey()));
            const int generation = run <= 5 ? 0 : 1;
            const int sequence = run <= 5 ? run : run - 5;
            const auto result = backup(generations[generation], sequence, sequence == 1, 256 * 1024);
            QCOMPARE(result.planResult, int(PlanResult::Success));
            trees.append(sourceTree(m_source.path()));
        }
        Repository repository(&m_driver, QString::fromLatin1(Root));
        QString error;
        QCOMPARE(repository.generations(&error).size(), 2);
        QCOMPARE(repository.points(generations[1], &error), (QList<int> {1, 2, 3, 4, 5}));
        for (int run = 1; run <= 10; ++run) {
            Tree restored;
            const auto result = restore(generations[run <= 5 ? 0 : 1], run <= 5 ? run : run - 5, &restored);
            QVERIFY2(result.planResult == PlanResult::Success, qPrintable(result.message));
            QCOMPARE(restored, trees.at(run - 1));
        }

        const QString older
            = QStringLiteral("%1/generations/%2").arg(Root, generations[0].toString(QUuid::WithoutBraces));
        const int before = objectsBelow(QString::fromLatin1(Root));
        const int olderObjects = objectsBelow(older);
        QVERIFY(olderObjects > 5);
        QVERIFY(repository.removeGeneration(generations[0]).ok());
        QCOMPARE(objectsBelow(older), 0);
        QCOMPARE(objectsBelow(QString::fromLatin1(Root)), before - olderObjects);
        Tree restored;
        QCOMPARE(restore(generations[1], 5, &restored).planResult, int(PlanResult::Success));
        QCOMPARE(restored, trees.last());
    }

    // A damaged pack fails exactly the files whose chunks it holds, each
    // named with the pack; the others restore; verify names the pack.
    void shouldConfineDamageToItsFiles()
    {
        for (int n = 0; n < 40; ++n)
            put(QStringLiteral("f%1.bin").arg(n, 2, 10, QLatin1Char('0')), randomBytes(40 * 1024));
        const Tree tree = sourceTree(m_source.path());
        const QUuid generation = QUuid::createUuid();
        QCOMPARE(backup(generation, 1, true, 200 * 1024).planResult, int(PlanResult::Success));
        Repository repository(&m_driver, QString::fromLatin1(Root));
        const StorageListing packs = m_driver.list(repository.packFolder(generation));
        QVERIFY(packs.objects.size() >= 4);
        const QString damaged = packs.objects.at(1).key;
        QByteArray bytes = m_driver.read(damaged).data;
        bytes[100] = char(bytes[100] ^ 0x55);
        QVERIFY(m_driver.write(damaged, bytes).ok());

        ChunkIndex index;
        QVERIFY(repository.loadIndex(generation, ZstdTransform(), &index).isEmpty());
        int inDamaged = 0;
        for (const ChunkLocation& location : std::as_const(index))
            inDamaged += location.pack == damaged && location.entry.offset == 0 ? 1 : 0;
        Tree restored;
        const auto result = restore(generation, 1, &restored);
        QCOMPARE(result.planResult, int(PlanResult::Warning));
        QCOMPARE(result.totals.failedCount, qint64(inDamaged));
        QCOMPARE(result.damagedPacks, QStringList {damaged});
        for (const RunFileRecord& file : result.files) {
            if (file.operation == RunFileRecord::Failed)
                QVERIFY(file.message.contains(file.file) && file.message.contains(damaged));
        }
        QCOMPARE(restored.size(), tree.size() - result.totals.failedCount);
        for (auto it = restored.cbegin(); it != restored.cend(); ++it)
            QCOMPARE(it.value(), tree.value(it.key()));
        const auto verified = restore(generation, 1, nullptr, true);
        QVERIFY(verified.message.contains(damaged));
    }

    // A crashed run's pack is removed by the next run; a lost index is
    // rebuilt from the pack trailers instead of losing the packs it named.
    void shouldRecoverFromCrashLeftovers()
    {
        put(QStringLiteral("one.bin"), randomBytes(300 * 1024));
        const QUuid generation = QUuid::createUuid();
        QCOMPARE(backup(generation, 1, true).planResult, int(PlanResult::Success));
        Repository repository(&m_driver, QString::fromLatin1(Root));
        ZstdTransform transform;
        PackWriter stray(&m_driver, &transform, repository.packFolder(generation));
        QVERIFY(stray.add(QByteArray(32, 'x'), randomBytes(1000)).ok());
        QVERIFY(stray.flush().ok());
        const QString strayKey = stray.takeWrittenPacks().constFirst().key;

        put(QStringLiteral("two.bin"), randomBytes(300 * 1024));
        const auto run2 = backup(generation, 2, false);
        QCOMPARE(run2.removedPacks, QStringList {strayKey});
        QVERIFY(!m_driver.stat(strayKey).exists);

        const QString indexFolder
            = QStringLiteral("%1/generations/%2/index").arg(Root, generation.toString(QUuid::WithoutBraces));
        for (const StorageObjectInfo& object : m_driver.list(indexFolder).objects)
            QVERIFY(m_driver.remove(object.key).ok());
        const Tree tree = sourceTree(m_source.path());
        Tree restored;
        QCOMPARE(restore(generation, 2, &restored).planResult, int(PlanResult::Success));
        QCOMPARE(restored, tree);
        const auto run3 = backup(generation, 3, false);
        QCOMPARE(run3.planResult, int(PlanResult::Success));
        QVERIFY(run3.removedPacks.isEmpty());
        QCOMPARE(run3.bytesNew, qint64(0)); // the rebuilt index still knows every chunk
        QCOMPARE(restore(generation, 1, &restored).planResult, int(PlanResult::Success));
    }

    // A tree is written in parts as it grows and read a folder's listing at
    // a time: one listing costs the parts that hold it, not the tree; a
    // tree written again leaves only its own parts.
    void shouldReadTheTreeOneListingAtATime()
    {
        Repository repository(&m_driver, QString::fromLatin1(Root));
        ZstdTransform transform;
        PointTree whole;
        whole.generation = QUuid::createUuid();
        whole.sequence = 1;
        whole.planName = QStringLiteral("Parts");
        PointTreeWriter writer(&repository, &transform, whole, 1024);
        for (int folder = 0; folder < 10; ++folder) {
            TreeEntry entry;
            entry.item.type = StoredContent::Folder;
            entry.item.path = QStringLiteral("/src/d%1").arg(folder);
            whole.entries.append(entry);
            for (int n = 0; n < 30; ++n) {
                const bool link = n % 10 == 9;
                entry.item.type = link ? StoredContent::Link : StoredContent::File;
                entry.item.path = QStringLiteral("/src/d%1/f%2").arg(folder).arg(n);
                entry.item.linkTarget = link ? QStringLiteral("f0") : QString();
                entry.item.size = link ? 0 : n;
                entry.chunks.clear();
                if (!link)
                    entry.chunks = {QCryptographicHash::hash(entry.item.path.toUtf8(), QCryptographicHash::Sha256)};
                whole.entries.append(entry);
            }
        }
        for (const TreeEntry& entry : std::as_const(whole.entries))
            QVERIFY(writer.add(entry).ok());
        QVERIFY(writer.finish().ok());
        const auto paths = [](const QVector<TreeEntry>& entries) {
            QStringList result;
            for (const TreeEntry& entry : entries)
                result << QStringLiteral("%1 %2 %3 %4")
                              .arg(entry.item.path, entry.item.linkTarget)
                              .arg(entry.item.size)
                              .arg(QString::fromLatin1(entry.chunks.value(0).toHex()));
            return result;
        };
        const int parts = objectsBelow(repository.partsFolder(whole.generation, 1));
        QVERIFY2(parts >= 10, qPrintable(QString::number(parts)));

        PointTreeReader reader(&repository, &transform);
        QCOMPARE(reader.open(whole.generation, 1), QString());
        m_driver.partReads = 0;
        QString error;
        const QVector<TreeEntry> listing = reader.listing(QStringLiteral("/src/d6"), &error);
        QCOMPARE(error, QString());
        QCOMPARE(paths(listing), paths(whole.entries.mid(6 * 31, 31)));
        // Its own parts, about a tenth of the tree, and no more.
        QVERIFY2(
            m_driver.partReads * 5 < parts, qPrintable(QStringLiteral("%1 of %2").arg(m_driver.partReads).arg(parts)));
        QVERIFY(reader.listing(QStringLiteral("/src/none"), &error).isEmpty());
        QCOMPARE(reader.folders().size(), 10);

        QVERIFY(repository.writeTree(whole, transform).ok());
        QCOMPARE(objectsBelow(repository.partsFolder(whole.generation, 1)), 1);
        QCOMPARE(paths(repository.readTree(whole.generation, 1, transform, &error).entries), paths(whole.entries));
        QCOMPARE(error, QString());
    }

    // A point an earlier engine wrote as one JSON tree still restores, and
    // the next run compares with it: unchanged files stay unread.
    void shouldKeepUsingTreesOfEarlierEngines()
    {
        put(QStringLiteral("a/x.bin"), randomBytes(100 * 1024));
        put(QStringLiteral("b/y.bin"), randomBytes(100 * 1024));
        put(QStringLiteral("c.txt"), randomBytes(1000));
        const Tree first = sourceTree(m_source.path());
        const QUuid generation = QUuid::createUuid();
        QCOMPARE(backup(generation, 1, true).planResult, int(PlanResult::Success));
        Repository repository(&m_driver, QString::fromLatin1(Root));
        ZstdTransform transform;
        QString error;
        const PointTree tree = repository.readTree(generation, 1, transform, &error);
        QCOMPARE(error, QString());
        QVERIFY(repository.removeTree(generation, 1).ok());
        QVERIFY(m_driver.write(repository.treeKey(generation, 1), transform.encode(tree.serialize()).data).ok());
        QCOMPARE(objectsBelow(repository.partsFolder(generation, 1)), 0);
        Tree restored;
        QCOMPARE(restore(generation, 1, &restored).planResult, int(PlanResult::Success));
        QCOMPARE(restored, first);

        put(QStringLiteral("b/y.bin"), randomBytes(2000));
        QVERIFY(QFile::remove(m_source.filePath(QStringLiteral("c.txt"))));
        const Tree second = sourceTree(m_source.path());
        const auto run = backup(generation, 2, false);
        QCOMPARE(run.planResult, int(PlanResult::Success));
        QCOMPARE(run.bytesRead, qint64(2000));
        QVERIFY(!run.replacesAll);
        QStringList added;
        for (const StoredContent& item : run.content)
            added << item.path;
        QVERIFY(added.contains(m_source.filePath(QStringLiteral("b/y.bin"))));
        QVERIFY(!added.contains(m_source.filePath(QStringLiteral("a/x.bin"))));
        QCOMPARE(run.removed, QStringList {m_source.filePath(QStringLiteral("c.txt"))});
        QCOMPARE(restore(generation, 2, &restored).planResult, int(PlanResult::Success));
        QCOMPARE(restored, second);
    }

    // With the store's cache a run reads only index objects it has not
    // seen; a cache the storage no longer agrees with is read again.
    void shouldReadOnlyNewIndexObjects()
    {
        QTemporaryDir data;
        m_storeFile = data.filePath(QStringLiteral("engine.db"));
        const QUuid generation = QUuid::createUuid();
        put(QStringLiteral("one.bin"), randomBytes(300 * 1024));
        QCOMPARE(backup(generation, 1, true).planResult, int(PlanResult::Success));
        for (int run = 2; run <= 3; ++run) {
            put(QStringLiteral("f%1.bin").arg(run), randomBytes(300 * 1024));
            m_driver.indexReads = 0;
            const auto result = backup(generation, run, false);
            QCOMPARE(result.planResult, int(PlanResult::Success));
            QCOMPARE(m_driver.indexReads, run == 2 ? 1 : 0);
            QCOMPARE(result.bytesNew, qint64(300 * 1024));
        }
        const QString first
            = m_driver
                  .list(QStringLiteral("%1/generations/%2/index").arg(Root, generation.toString(QUuid::WithoutBraces)))
                  .objects.constFirst()
                  .key;
        QVERIFY(m_driver.remove(first).ok());
        const auto result = backup(generation, 4, false);
        QCOMPARE(result.planResult, int(PlanResult::Success));
        QVERIFY(result.removedPacks.isEmpty()); // the lost index's pack is indexed again, not dropped
        QCOMPARE(result.bytesNew, qint64(0));
        Tree restored;
        QCOMPARE(restore(generation, 1, &restored).planResult, int(PlanResult::Success));
        m_storeFile.clear();
    }

    // Whatever the storage hands back as a tree or an index, the readers and
    // a restore end with an error or a result, never a crash, and the record
    // put back reads as before.
    void shouldSurviveAlteredRecords()
    {
        put(QStringLiteral("x/one.bin"), randomBytes(20 * 1024));
        put(QStringLiteral("two.bin"), randomBytes(30 * 1024));
        const QUuid generation = QUuid::createUuid();
        QCOMPARE(backup(generation, 1, true).planResult, int(PlanResult::Success));
        Repository repository(&m_driver, QString::fromLatin1(Root));
        const QString tree = repository.treeKey(generation, 1);
        const QString index
            = m_driver
                  .list(QStringLiteral("%1/generations/%2/index").arg(Root, generation.toString(QUuid::WithoutBraces)))
                  .objects.constFirst()
                  .key;
        ZstdTransform transform;
        const QString part = m_driver.list(repository.partsFolder(generation, 1)).objects.constFirst().key;
        for (const QString& key : {tree, part, index}) {
            // Altered after decoding, so the damage reaches the parsers.
            const QByteArray plain = transform.decode(m_driver.read(key).data).data;
            for (int round = 0; round < 120; ++round) {
                QByteArray altered = plain;
                for (int n = 0, count = int(m_random.bounded(1, 4)); n < count; ++n)
                    altered[int(m_random.bounded(altered.size()))] = char(m_random.bounded(256));
                if (round % 10 == 0)
                    altered.truncate(int(m_random.bounded(altered.size())));
                QVERIFY(m_driver.write(key, transform.encode(altered).data).ok());
                QString error;
                ChunkIndex chunks;
                repository.readTree(generation, 1, transform, &error);
                repository.loadIndex(generation, transform, &chunks);
                QTemporaryDir target;
                ArchiveRestoreJob::Parameters parameters;
                parameters.repositoryRoot = QString::fromLatin1(Root);
                parameters.generation = generation;
                parameters.sequence = 1;
                parameters.destination = target.path();
                parameters.driver = &m_driver;
                std::atomic_bool stop {false};
                ArchiveRestoreJob(parameters).run(stop, {});
            }
            QVERIFY(m_driver.write(key, transform.encode(plain).data).ok());
        }
        Tree restored;
        QCOMPARE(restore(generation, 1, &restored).planResult, int(PlanResult::Success));
        QCOMPARE(restored, sourceTree(m_source.path()));
    }

    // The engine's own dispatch: a new-format plan backs up, its point
    // restores through a restore plan, a verify passes, and after damage the
    // verify fails naming the pack.
    void shouldRunRestoreAndVerifyThroughTheEngine()
    {
        for (int n = 0; n < 30; ++n)
            put(QStringLiteral("d/f%1").arg(n), randomBytes(50 * 1024));
        const Tree tree = sourceTree(m_source.path());
        QTemporaryDir data;
        QTemporaryDir storage;
        QTemporaryDir target;
        EngineStore store;
        QVERIFY(store.open(data.filePath(QStringLiteral("engine.db"))));
        StoredAccount account;
        account.id = QUuid::createUuid();
        account.type = 1;
        account.prefix = QStringLiteral("ar");
        account.params = QJsonObject {{QStringLiteral("Path"), storage.path()}};
        QVERIFY(store.saveAccount(account));
        const auto save = [&](const NVB::Info::Plan::Base& record) {
            StoredPlan plan;
            plan.describe(record);
            plan.storageId = account.id;
            return store.savePlan(plan);
        };
        NVB::Info::Plan::BackupFile backupPlan;
        backupPlan.setId(QUuid::createUuid());
        backupPlan.setName(QStringLiteral("Packs"));
        backupPlan.setStorage(account.id);
        backupPlan.setItems({m_source.path()});
        QVERIFY(backupPlan.isArchive());
        QVERIFY(save(backupPlan));
        NVB::Info::Plan::RestoreFile restorePlan;
        restorePlan.setId(QUuid::createUuid());
        restorePlan.setName(QStringLiteral("Back"));
        restorePlan.setStorage(account.id);
        restorePlan.setRestorePoint(
            QStringLiteral("NVB_Archive\\%1\\now").arg(backupPlan.id().toString(QUuid::WithoutBraces)));
        restorePlan.setRestoreToOriginalLocation(false);
        restorePlan.setDestination(target.path());
        QVERIFY(save(restorePlan));

        RunManager runs(&store);
        QSignalSpy finished(&runs, &RunManager::finished);
        const auto run = [&](const QUuid& plan, bool verify) {
            finished.clear();
            runs.start(plan, false, verify);
            return finished.wait(30000) ? finished.first().at(2).toInt() : -1;
        };
        QCOMPARE(run(backupPlan.id(), false), int(PlanResult::Success));
        QVERIFY(
            store.runs(HistoryQuery {}).first().errorMessage.startsWith(QStringLiteral("Read 1.46 MiB, new 1.46 MiB")));
        QCOMPARE(run(restorePlan.id(), false), int(PlanResult::Success));
        QCOMPARE(sourceTree(target.path() + m_source.path()), tree);
        QCOMPARE(run(backupPlan.id(), true), int(PlanResult::Success));

        QDirIterator packs(storage.path(), QDir::Files, QDirIterator::Subdirectories);
        QString pack;
        while (pack.isEmpty() && packs.hasNext()) {
            const QString path = packs.next();
            if (path.contains(QLatin1String("/packs/")))
                pack = path;
        }
        QFile file(pack);
        QVERIFY(file.open(QIODevice::ReadWrite));
        file.seek(100);
        file.write("damage");
        file.close();
        QCOMPARE(run(backupPlan.id(), true), int(PlanResult::Failed));
        const QString message = store.runs(HistoryQuery {}).first().errorMessage;
        QVERIFY2(message.contains(QFileInfo(pack).fileName()), qPrintable(message));

        // Compression switched off: a new generation, which shares nothing
        // with the damaged one.
        backupPlan.setUseCompression(false);
        QVERIFY(save(backupPlan));
        QCOMPARE(run(backupPlan.id(), false), int(PlanResult::Success));
        const QList<StoredRestorePoint> points = store.restorePoints(account.id, backupPlan.id());
        QCOMPARE(points.size(), 2);
        QVERIFY(points.first().generationId != points.last().generationId);
        QCOMPARE(run(backupPlan.id(), true), int(PlanResult::Success));

        // After each backup its generation's packs are checked; the full
        // consistency check takes in the older generation too.
        QVERIFY(QFile::resize(pack, 50));
        backupPlan.setUseConsistencyCheck(false);
        QVERIFY(save(backupPlan));
        QCOMPARE(run(backupPlan.id(), false), int(PlanResult::Success));
        backupPlan.setUseConsistencyCheck(true);
        QVERIFY(save(backupPlan));
        QCOMPARE(run(backupPlan.id(), false), int(PlanResult::Warning));
        const QString warning = store.runs(HistoryQuery {}).first().errorMessage;
        QVERIFY2(warning.contains(QFileInfo(pack).fileName()), qPrintable(warning));

        // Keeping one version: the older generation's copies expire, its
        // point and then the generation go, announced and in the history.
        backupPlan.setUseConsistencyCheck(false);
        backupPlan.retentionPolicy().setType(NVB::Info::Plan::BackupRetentionPolicy::Custom);
        backupPlan.retentionPolicy().setUseKeepVersion(true);
        backupPlan.retentionPolicy().setKeepVersion(1);
        QVERIFY(save(backupPlan));
        qRegisterMetaType<QList<QUuid>>();
        QSignalSpy gone(&runs, &RunManager::generationsRemoved);
        QCOMPARE(run(backupPlan.id(), false), int(PlanResult::Success));
        QCOMPARE(gone.size(), 1);
        QCOMPARE(gone.first().at(2).value<QList<QUuid>>(), QList<QUuid> {points.first().generationId});
        QCOMPARE(store.restorePoints(account.id, backupPlan.id()).size(), 4);
        HistoryQuery removals;
        removals.fileOperation = RunFileRecord::Removed;
        QCOMPARE(store.runFiles(removals).size(), 2); // the point and its generation
    }

    void cleanup()
    {
        for (const StorageObjectInfo& object : m_driver.list({}).objects)
            m_driver.remove(object.key);
        QDir(m_source.path()).removeRecursively();
        QDir().mkpath(m_source.path());
    }
};

NVB_TEST_GUILESS_MAIN(TestArchive)
#include "tst_archive.moc"
