// The new format's bottom layers on 256 MiB of seeded random data: chunking
// alone, chunking with keyed ids, packing into a folder, and reading every
// chunk back by range with verification. Prints MiB/s and the peak resident
// size, against a plain SHA-256 pass over the same data as the yardstick.

#include <cstdio>

#include <sys/resource.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include "chunking/chunker.h"
#include "chunking/chunkidentifier.h"
#include "repository/identitytransform.h"
#include "repository/packreader.h"
#include "repository/packwriter.h"
#include "storage/filesystemdriver.h"

using namespace NVB::Engine;

namespace {

constexpr qint64 DataSize = 256 * 1024 * 1024;

void report(const char* what, qint64 bytes, qint64 milliseconds)
{
    std::printf("%-34s %8lld ms  %8.1f MiB/s\n", what, static_cast<long long>(milliseconds),
                milliseconds > 0 ? (bytes / 1048576.0) / (milliseconds / 1000.0) : 0.0);
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QByteArray data(int(DataSize), Qt::Uninitialized);
    QRandomGenerator(1).fillRange(reinterpret_cast<quint32*>(data.data()), data.size() / 4);
    const ChunkIdentifier identifier(QByteArrayLiteral("bench key"));

    QElapsedTimer timer;
    timer.start();
    const QByteArray digest = ChunkIdentifier().id(data);
    report("SHA-256 of everything", DataSize, timer.restart());

    Chunker chunker;
    QVector<qint64> lengths = chunker.push(data.constData(), data.size());
    lengths.append(chunker.finish());
    report("chunking", DataSize, timer.restart());

    QVector<QByteArray> ids;
    qint64 at = 0;
    for (qint64 length : qAsConst(lengths)) {
        ids.append(identifier.id(data.constData() + at, length));
        at += length;
    }
    report("keyed chunk ids", DataSize, timer.restart());

    QTemporaryDir folder;
    FileSystemDriver driver(folder.path());
    const IdentityTransform transform;
    PackWriter writer(&driver, &transform, QStringLiteral("packs"));
    at = 0;
    for (int i = 0; i < lengths.size(); ++i) {
        if (!writer.add(ids.at(i), data.mid(int(at), int(lengths.at(i)))).ok())
            return 1;
        at += lengths.at(i);
    }
    if (!writer.flush().ok())
        return 1;
    const QVector<PackSummary> packs = writer.takeWrittenPacks();
    report("packing into a folder (synced)", DataSize, timer.restart());

    const PackReader reader(&driver, &transform, &identifier);
    qint64 restored = 0;
    for (const PackSummary& pack : packs) {
        for (const PackEntry& entry : reader.readTrailer(pack.key).entries)
            restored += reader.readChunk(pack.key, entry).data.size();
    }
    report("reading every chunk back, verified", restored, timer.restart());

    rusage usage {};
    getrusage(RUSAGE_SELF, &usage);
    std::printf("%d chunks (mean %.2f MiB) in %d packs; peak resident %ld MiB (the data alone is %lld MiB)\n",
                int(lengths.size()), DataSize / 1048576.0 / lengths.size(), int(packs.size()), usage.ru_maxrss / 1024,
                static_cast<long long>(DataSize / 1048576));
    return restored == DataSize && !digest.isEmpty() ? 0 : 1;
}
