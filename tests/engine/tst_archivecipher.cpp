#include <QtTest>

#include <QCryptographicHash>
#include <QRandomGenerator>

#include <atomic>

#include "archive/archivebackupjob.h"
#include "archive/archiverestorejob.h"
#include "records/plan/planresult.h"
#include "repository/chunktransform.h"
#include "repository/repository.h"
#include "storage/memorydriver.h"
#include "testmain.h"

using namespace NVB::Engine;
using NVB::Info::Plan::PlanResult;

// Enciphered new-format repositories: what restores, what the storage shows,
// and what a wrong password or damage costs.
class TestArchiveCipher : public QObject
{
    Q_OBJECT

private:
    using Tree = QMap<QString, QByteArray>; // path below the source: SHA-256

    static constexpr auto Root = "NVB_t/plan/archive";
    const QString m_sentence = QStringLiteral("The quick brown fox guards the pension fund ledger.");
    const QString m_name = QStringLiteral("payroll-confidential");
    MemoryDriver m_driver;
    QTemporaryDir m_source;
    QTemporaryDir m_target;
    QRandomGenerator m_random {20261124};

    QByteArray randomBytes(int size)
    {
        QByteArray data(size, Qt::Uninitialized);
        m_random.fillRange(reinterpret_cast<quint32*>(data.data()), size / 4);
        return data;
    }

    void put(const QString& name, const QByteArray& data)
    {
        QFile file(m_source.filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        QCOMPARE(file.write(data), qint64(data.size()));
    }

    static Tree sourceTree(const QString& base)
    {
        Tree tree;
        QDirIterator it(base, QDir::Files, QDirIterator::Subdirectories);
        while (it.hasNext()) {
            QFile file(it.next());
            if (file.open(QIODevice::ReadOnly))
                tree.insert(file.fileName().mid(base.size() + 1),
                    QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha256));
        }
        return tree;
    }

    ArchiveBackupJob::Result backup(const QUuid& generation, int keyBytes, bool compress, qint64 packSize = 0)
    {
        ArchiveBackupJob::Parameters parameters;
        parameters.repositoryRoot = QString::fromLatin1(Root);
        parameters.generation = generation;
        parameters.compress = compress;
        parameters.password = QStringLiteral("correct horse");
        parameters.keyBytes = keyBytes;
        parameters.driver = &m_driver;
        parameters.packSize = packSize;
        FileSelection selection({m_source.path()}, {}, FileSelection::FilterType::All, {}, {}, false);
        std::atomic_bool stop {false};
        return ArchiveBackupJob(parameters, selection).run(stop, {});
    }

    ArchiveRestoreJob::Result restore(const QUuid& generation, const QString& password, Tree* restored)
    {
        QDir(m_target.path()).removeRecursively();
        QDir().mkpath(m_target.path());
        ArchiveRestoreJob::Parameters parameters;
        parameters.repositoryRoot = QString::fromLatin1(Root);
        parameters.generation = generation;
        parameters.sequence = 1;
        parameters.destination = m_target.path();
        parameters.password = password;
        parameters.driver = &m_driver;
        std::atomic_bool stop {false};
        auto result = ArchiveRestoreJob(parameters).run(stop, {});
        *restored = sourceTree(m_target.path() + m_source.path());
        return result;
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

    // Every key length restores exactly with and without compression; the
    // storage holds no name, no sentence, no plain run of a file, and chunk
    // ids are keyed; a wrong password writes nothing.
    void shouldRoundTripAndHideEverything()
    {
        QFETCH(int, keyBytes);
        QFETCH(bool, compress);
        const QByteArray text = m_sentence.toUtf8().repeated(3000);
        put(m_name + QStringLiteral(".txt"), text);
        const QByteArray random = randomBytes(3 << 20);
        put(QStringLiteral("random.bin"), random);
        const Tree tree = sourceTree(m_source.path());
        const QUuid generation = QUuid::createUuid();
        const auto backedUp = backup(generation, keyBytes, compress);
        QVERIFY2(backedUp.planResult == PlanResult::Success, qPrintable(backedUp.message));

        for (const StorageObjectInfo& object : m_driver.list({}).objects) {
            const QByteArray stored = m_driver.read(object.key).data;
            QVERIFY2(!stored.contains(m_sentence.toUtf8()) && !stored.contains(m_name.toUtf8())
                    && !stored.contains(random.mid(1 << 20, 64)),
                qPrintable(object.key));
        }
        Repository repository(&m_driver, QString::fromLatin1(Root));
        const OpenedGeneration opened = repository.openGeneration(generation, QStringLiteral("correct horse"));
        QVERIFY2(opened.enciphered, qPrintable(opened.error));
        QString error;
        const PointTree point = repository.readTree(generation, 1, *opened.transform, &error);
        QVERIFY2(error.isEmpty(), qPrintable(error));
        for (const TreeEntry& entry : point.entries) {
            if (entry.item.path.endsWith(m_name + QStringLiteral(".txt")))
                QVERIFY(entry.chunks.value(0) != QCryptographicHash::hash(text, QCryptographicHash::Sha256));
        }

        Tree restored;
        const auto refused = restore(generation, QStringLiteral("Correct horse"), &restored);
        QCOMPARE(refused.planResult, int(PlanResult::Failed));
        QVERIFY2(refused.message.contains(QStringLiteral("wrong password")), qPrintable(refused.message));
        QVERIFY(QDir(m_target.path()).isEmpty());
        const auto result = restore(generation, QStringLiteral("correct horse"), &restored);
        QVERIFY2(result.planResult == PlanResult::Success, qPrintable(result.message));
        QCOMPARE(restored, tree);
    }

    // A flipped byte, a truncated pack and two swapped chunks each fail
    // exactly the files they touch, by name; the others restore.
    void shouldNameFilesOfDamagedChunks()
    {
        for (int n = 0; n < 30; ++n)
            put(QStringLiteral("f%1.bin").arg(n, 2, 10, QLatin1Char('0')), randomBytes(40 * 1024));
        const Tree tree = sourceTree(m_source.path());
        const QUuid generation = QUuid::createUuid();
        QCOMPARE(backup(generation, 32, false, 200 * 1024).planResult, int(PlanResult::Success));

        Repository repository(&m_driver, QString::fromLatin1(Root));
        const OpenedGeneration opened = repository.openGeneration(generation, QStringLiteral("correct horse"));
        ChunkIndex index;
        QVERIFY(repository.loadIndex(generation, *opened.transform, &index).isEmpty());
        QString error;
        const PointTree point = repository.readTree(generation, 1, *opened.transform, &error);
        QHash<QString, QVector<PackEntry>> byPack;
        QHash<QByteArray, QString> fileOf;
        for (const TreeEntry& entry : point.entries) {
            for (const QByteArray& id : entry.chunks) {
                byPack[index.value(id).pack].append(index.value(id).entry);
                fileOf.insert(id, QFileInfo(entry.item.path).fileName());
            }
        }
        QStringList packs = byPack.keys();
        packs.sort();
        QVERIFY(packs.size() >= 3);
        QSet<QString> expected;

        QByteArray flipped = m_driver.read(packs.at(0)).data;
        const PackEntry hit = byPack.value(packs.at(0)).constFirst();
        flipped[int(hit.offset + hit.length / 2)] = char(flipped[int(hit.offset + hit.length / 2)] ^ 1);
        QVERIFY(m_driver.write(packs.at(0), flipped).ok());
        expected << fileOf.value(hit.id);

        const QByteArray whole = m_driver.read(packs.at(1)).data;
        const PackEntry cut = byPack.value(packs.at(1)).constLast();
        QVERIFY(m_driver.write(packs.at(1), whole.left(int(cut.offset + 10))).ok());
        for (const PackEntry& entry : byPack.value(packs.at(1))) {
            if (entry.offset + entry.length > cut.offset + 10)
                expected << fileOf.value(entry.id);
        }

        QByteArray swapped = m_driver.read(packs.at(2)).data;
        const PackEntry a = byPack.value(packs.at(2)).at(0);
        const PackEntry b = byPack.value(packs.at(2)).at(1);
        QCOMPARE(a.length, b.length);
        const QByteArray first = swapped.mid(int(a.offset), int(a.length));
        swapped.replace(int(a.offset), int(a.length), swapped.mid(int(b.offset), int(b.length)));
        swapped.replace(int(b.offset), int(b.length), first);
        QVERIFY(m_driver.write(packs.at(2), swapped).ok());
        expected << fileOf.value(a.id) << fileOf.value(b.id);

        Tree restored;
        const auto result = restore(generation, QStringLiteral("correct horse"), &restored);
        QCOMPARE(result.planResult, int(PlanResult::Warning));
        QSet<QString> failed;
        for (const RunFileRecord& file : result.files) {
            if (file.operation != RunFileRecord::Failed)
                continue;
            failed << QFileInfo(file.file).fileName();
            QVERIFY2(file.message.contains(file.file), qPrintable(file.message));
        }
        QCOMPARE(failed, expected);
        QCOMPARE(restored.size(), tree.size() - expected.size());
        for (auto it = restored.cbegin(); it != restored.cend(); ++it)
            QCOMPARE(it.value(), tree.value(it.key()));
    }
};

NVB_TEST_GUILESS_MAIN(TestArchiveCipher)
#include "tst_archivecipher.moc"
