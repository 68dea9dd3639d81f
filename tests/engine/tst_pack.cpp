#include <QtTest>

#include <QRandomGenerator>

#include <atomic>

#include "chunking/chunkidentifier.h"
#include "repository/identitytransform.h"
#include "repository/packreader.h"
#include "repository/packwriter.h"
#include "storage/memorydriver.h"
#include "testmain.h"

using namespace NVB::Engine;

namespace {

// Counts what a reader fetches, and fails writes on demand.
class ObservedDriver : public MemoryDriver
{
public:
    StorageRead read(const QString& key, qint64 offset, qint64 length) const override
    {
        StorageRead result = MemoryDriver::read(key, offset, length);
        bytesRead += result.data.size();
        return result;
    }
    StorageStatus write(const QString& key, const QByteArray& data) override
    {
        if (failWrites)
            return {QStringLiteral("The disk is full.")};
        return MemoryDriver::write(key, data);
    }

    mutable std::atomic<qint64> bytesRead {0};
    bool failWrites = false;
};

} // namespace

class TestPack : public QObject
{
    Q_OBJECT

private:
    static constexpr qint64 Target = 1024 * 1024;

    const ChunkIdentifier m_identifier {QByteArrayLiteral("repository key")};
    const IdentityTransform m_transform;
    QRandomGenerator m_random {17};

    QByteArray randomChunk(int size)
    {
        QByteArray data(size, Qt::Uninitialized);
        for (char& byte : data)
            byte = char(m_random.generate());
        return data;
    }

    // Writes chunks of 1 byte to 300 KiB into packs; returns them by id.
    QHash<QByteArray, QByteArray> writeChunks(StorageDriver* driver, int count, QVector<PackSummary>* packs)
    {
        QHash<QByteArray, QByteArray> chunks;
        PackWriter writer(driver, &m_transform, QStringLiteral("packs"), Target);
        for (int i = 0; i < count; ++i) {
            const QByteArray raw = randomChunk(1 + int(m_random.bounded(300 * 1024)));
            chunks.insert(m_identifier.id(raw), raw);
            const StorageStatus status = writer.add(m_identifier.id(raw), raw);
            if (!status.ok())
                qFatal("%s", qPrintable(status.error));
        }
        if (!writer.flush().ok())
            qFatal("flush failed");
        *packs = writer.takeWrittenPacks();
        return chunks;
    }

private slots:
    void shouldReadChunksBackByRangeAndRebuildTheIndexFromPacks()
    {
        ObservedDriver driver;
        QVector<PackSummary> packs;
        const QHash<QByteArray, QByteArray> chunks = writeChunks(&driver, 40, &packs);
        QVERIFY(packs.size() > 2);
        QStringList keys;
        for (const PackSummary& pack : qAsConst(packs)) {
            keys.append(pack.key);
            QVERIFY(pack.size <= Target + 300 * 1024 + 48 * 40 + 64);
        }
        keys.sort();
        QStringList listed;
        for (const StorageObjectInfo& object : driver.list(QStringLiteral("packs")).objects)
            listed.append(object.key);
        QCOMPARE(listed, keys);

        // The trailers alone give back every chunk, as an index rebuild needs.
        const PackReader reader(&driver, &m_transform, &m_identifier);
        QSet<QByteArray> found;
        for (const PackSummary& pack : qAsConst(packs)) {
            const PackContents contents = reader.readTrailer(pack.key);
            QVERIFY2(contents.ok(), qPrintable(contents.error));
            QCOMPARE(contents.size, pack.size);
            QCOMPARE(contents.entries.size(), pack.entries.size());
            for (const PackEntry& entry : contents.entries) {
                found.insert(entry.id);
                const qint64 before = driver.bytesRead;
                const ChunkData chunk = reader.readChunk(pack.key, entry);
                QVERIFY2(chunk.ok(), qPrintable(chunk.error));
                QCOMPARE(chunk.data, chunks.value(entry.id));
                QCOMPARE(driver.bytesRead - before, entry.length);
            }
            QCOMPARE(reader.verify(pack.key), QStringList());
        }
        QCOMPARE(found, QSet<QByteArray>(chunks.keyBegin(), chunks.keyEnd()));
    }

    void shouldNameDamagedPacksAndStillReadIntactOnes()
    {
        MemoryDriver driver;
        QVector<PackSummary> packs;
        writeChunks(&driver, 40, &packs);
        QVERIFY(packs.size() >= 4);
        const PackReader reader(&driver, &m_transform, &m_identifier);
        const auto stored = [&](const PackSummary& pack) { return driver.read(pack.key).data; };

        // Cut into the last chunk: the trailer and that chunk are lost, the
        // chunks before it still read.
        const PackSummary& truncated = packs.at(0);
        driver.write(truncated.key, stored(truncated).left(int(truncated.entries.last().offset + 10)));
        const PackContents cut = reader.readTrailer(truncated.key);
        QVERIFY(!cut.ok() && cut.error.contains(truncated.key));
        const ChunkData lastChunk = reader.readChunk(truncated.key, truncated.entries.last());
        QVERIFY2(!lastChunk.ok() && lastChunk.error.contains(truncated.key), qPrintable(lastChunk.error));
        QVERIFY(reader.readChunk(truncated.key, truncated.entries.first()).ok());

        // One flipped byte inside a chunk: that chunk fails its id, the
        // trailer and the other chunks are fine, verify names the damage.
        const PackSummary& altered = packs.at(1);
        QByteArray bytes = stored(altered);
        bytes.data()[altered.entries.at(1).offset + 5] ^= 0x01;
        driver.write(altered.key, bytes);
        QVERIFY(reader.readTrailer(altered.key).ok());
        const ChunkData bad = reader.readChunk(altered.key, altered.entries.at(1));
        QVERIFY2(!bad.ok() && bad.error.contains(altered.key) && bad.error.contains(QLatin1String("id")),
            qPrintable(bad.error));
        QVERIFY(reader.readChunk(altered.key, altered.entries.at(0)).ok());
        QVERIFY(reader.readChunk(altered.key, altered.entries.at(2)).ok());
        const QStringList problems = reader.verify(altered.key);
        QCOMPARE(problems.size(), 2); // its name and the one chunk
        QVERIFY(problems.join(QLatin1Char(' ')).contains(altered.key));

        // A flipped byte in the trailer fails its checksum.
        const PackSummary& badTrailer = packs.at(2);
        bytes = stored(badTrailer);
        bytes.data()[bytes.size() - 16 - 40] ^= 0x01;
        driver.write(badTrailer.key, bytes);
        const PackContents unreadable = reader.readTrailer(badTrailer.key);
        QVERIFY2(!unreadable.ok() && unreadable.error.contains(badTrailer.key), qPrintable(unreadable.error));

        const ChunkData missing = reader.readChunk(QStringLiteral("packs/00/gone"), truncated.entries.first());
        QVERIFY(!missing.ok() && missing.error.contains(QLatin1String("packs/00/gone")));

        for (int i = 3; i < packs.size(); ++i) {
            QCOMPARE(reader.verify(packs.at(i).key), QStringList());
            QCOMPARE(reader.readTrailer(packs.at(i).key).entries.size(), packs.at(i).entries.size());
        }
    }

    void shouldKeepPendingChunksWhenAWriteFails()
    {
        ObservedDriver driver;
        driver.failWrites = true;
        PackWriter writer(&driver, &m_transform, QStringLiteral("packs"), Target);
        const QByteArray small = randomChunk(1000);
        QVERIFY(writer.add(m_identifier.id(small), small).ok());
        const QByteArray large = randomChunk(int(Target));
        const StorageStatus failed = writer.add(m_identifier.id(large), large);
        QVERIFY(!failed.ok() && failed.error.contains(QLatin1String("full")));
        QCOMPARE(writer.pendingChunks(), 2);
        QVERIFY(writer.takeWrittenPacks().isEmpty());
        QVERIFY(!writer.add(QByteArrayLiteral("short id"), small).ok());

        driver.failWrites = false;
        QVERIFY(writer.flush().ok());
        const QVector<PackSummary> packs = writer.takeWrittenPacks();
        QCOMPARE(packs.size(), 1);
        const PackReader reader(&driver, &m_transform, &m_identifier);
        QCOMPARE(reader.readChunk(packs.first().key, packs.first().entries.at(1)).data, large);
        // The failed attempt left nothing of its trailer behind.
        QCOMPARE(reader.verify(packs.first().key), QStringList());
    }
};

NVB_TEST_GUILESS_MAIN(TestPack)
#include "tst_pack.moc"
