#include <QtTest>

#include <QRandomGenerator>

#include "chunking/chunker.h"
#include "chunking/chunkidentifier.h"
#include "testmain.h"

using NVB::Engine::Chunker;
using NVB::Engine::ChunkIdentifier;

class TestChunker : public QObject
{
    Q_OBJECT

private:
    static QByteArray randomData(qint64 size, quint32 seed)
    {
        QByteArray data(int(size), Qt::Uninitialized);
        QRandomGenerator generator(seed);
        generator.fillRange(reinterpret_cast<quint32*>(data.data()), int(size / 4));
        return data;
    }

    // Chunk lengths of `data` pushed in reads that cycle through `reads`.
    static QVector<qint64> chunk(const QByteArray& data, const QVector<qint64>& reads, quint64 seed = 0)
    {
        Chunker chunker(seed);
        QVector<qint64> lengths;
        for (qint64 at = 0, i = 0; at < data.size(); ++i) {
            const qint64 size = qMin(reads.at(int(i % reads.size())), data.size() - at);
            lengths += chunker.push(data.constData() + at, size);
            at += size;
        }
        if (const qint64 last = chunker.finish())
            lengths.append(last);
        return lengths;
    }

    static QSet<QByteArray> chunkIds(const QByteArray& data, const QVector<qint64>& lengths)
    {
        QSet<QByteArray> ids;
        qint64 at = 0;
        for (qint64 length : lengths) {
            ids.insert(ChunkIdentifier().id(data.constData() + at, length));
            at += length;
        }
        return ids;
    }

private slots:
    void shouldFindTheSameBoundariesWhateverTheReadSizes_data()
    {
        QTest::addColumn<QVector<qint64>>("reads");
        QTest::newRow("single bytes") << QVector<qint64> {1};
        QTest::newRow("odd sizes") << QVector<qint64> {7, 4093, 65537, 1};
        QTest::newRow("larger than a chunk") << QVector<qint64> {5 * 1024 * 1024 + 3};
        QTest::newRow("around the minimum") << QVector<qint64> {Chunker::MinimumSize - 1, 2, Chunker::MinimumSize};
    }

    void shouldFindTheSameBoundariesWhateverTheReadSizes()
    {
        QFETCH(QVector<qint64>, reads);
        const QByteArray data = randomData(24 * 1024 * 1024, 7);
        const QVector<qint64> whole = chunk(data, {data.size()});
        QVERIFY2(whole.size() > 10, "too few chunks to compare");
        QCOMPARE(std::accumulate(whole.cbegin(), whole.cend(), qint64(0)), qint64(data.size()));
        QCOMPARE(chunk(data, reads), whole);
        // A repository's own seed moves the boundaries.
        QVERIFY(chunk(data, {data.size()}, 42) != whole);
    }

    void shouldChangeOnlyTheChunksAroundAnEdit()
    {
        const QByteArray original = randomData(32 * 1024 * 1024, 11);
        const QSet<QByteArray> before = chunkIds(original, chunk(original, {65536}));

        QByteArray inserted = original;
        inserted.insert(1000, randomData(100, 12));
        const QVector<qint64> afterInsert = chunk(inserted, {65536});
        QVERIFY(afterInsert.size() > 15);
        QVERIFY(chunkIds(inserted, afterInsert).subtract(before).size() <= 2);

        // An overwrite in the middle of a file stays just as local.
        QByteArray overwritten = original;
        overwritten.replace(20 * 1024 * 1024, 4096, randomData(4096, 13));
        QVERIFY(chunkIds(overwritten, chunk(overwritten, {65536})).subtract(before).size() <= 2);
    }

    void shouldHoldTheMinimumAndMaximumSizes()
    {
        const QByteArray randomBytes = randomData(40 * 1024 * 1024, 21);
        const QByteArray zeros(20 * 1024 * 1024, '\0');
        for (const QByteArray& data : {randomBytes, zeros}) {
            QVector<qint64> lengths = chunk(data, {1 << 20});
            lengths.removeLast();
            for (qint64 length : qAsConst(lengths)) {
                QVERIFY(length >= Chunker::MinimumSize);
                QVERIFY(length <= Chunker::MaximumSize);
            }
        }
        // Input without content to cut on ends up in maximum-size chunks.
        QCOMPARE(chunk(zeros, {1 << 20}).first(), Chunker::MaximumSize);
        // A stream shorter than the minimum is one chunk.
        QCOMPARE(chunk(randomData(1000, 1), {1000}), QVector<qint64> {1000});
    }

    void shouldAverageNearTheDocumentedSize()
    {
        Chunker chunker;
        QRandomGenerator generator(99);
        QByteArray block(1024 * 1024, Qt::Uninitialized);
        QVector<qint64> lengths;
        for (int i = 0; i < 256; ++i) {
            generator.fillRange(reinterpret_cast<quint32*>(block.data()), block.size() / 4);
            lengths += chunker.push(block.constData(), block.size());
        }
        const double mean = std::accumulate(lengths.cbegin(), lengths.cend(), 0.0) / lengths.size();
        QVERIFY2(
            mean > 0.8 * Chunker::AverageSize && mean < 1.25 * Chunker::AverageSize, qPrintable(QString::number(mean)));
    }

    void shouldIdentifyChunksWithAndWithoutAKey()
    {
        QCOMPARE(ChunkIdentifier().id(QByteArrayLiteral("abc")).toHex(),
            QByteArrayLiteral("ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"));
        // HMAC-SHA-256 test vector from RFC 4231.
        const ChunkIdentifier keyed(QByteArrayLiteral("Jefe"));
        QVERIFY(keyed.isKeyed());
        QCOMPARE(keyed.id(QByteArrayLiteral("what do ya want for nothing?")).toHex(),
            QByteArrayLiteral("5bdcc146bf60754e6a042426089575c75a003f089d2739839dec58b964ec3843"));
        QVERIFY(ChunkIdentifier(QByteArrayLiteral("other")).id(QByteArrayLiteral("abc"))
            != keyed.id(QByteArrayLiteral("abc")));
    }
};

NVB_TEST_GUILESS_MAIN(TestChunker)
#include "tst_chunker.moc"
