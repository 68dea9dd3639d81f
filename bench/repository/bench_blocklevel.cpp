// The legacy format's block level backup against rsync's delta transfer and
// restic on one 512 MiB file with 100 scattered 4 KiB overwrites: the second
// run's time and stored bytes. rsync copies into an existing copy
// (`--inplace --no-whole-file`) and its "Literal data" is what it had to
// send; restic's figure is what its repository grew by. Ours also restores
// the second point (full version plus increment) and checks it.
//
// Usage: bench_blocklevel [work folder] [block size in KiB, 64]; needs
// `rsync` and `restic`.

#include <cstdio>

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include "blocks/blockbase.h"
#include "records/plan/planresult.h"
#include "runs/filebackupjob.h"
#include "runs/filerestorejob.h"

using namespace NVB::Engine;

namespace {

qint64 folderBytes(const QString& folder)
{
    qint64 bytes = 0;
    QDirIterator it(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        it.next();
        bytes += it.fileInfo().size();
    }
    return bytes;
}

QByteArray runTool(const QString& program, const QStringList& arguments, qint64* milliseconds)
{
    QProcess process;
    QElapsedTimer timer;
    timer.start();
    process.start(program, arguments);
    if (!process.waitForFinished(-1) || process.exitCode() != 0)
        qFatal("%s failed: %s", qPrintable(program), process.readAllStandardError().constData());
    *milliseconds = timer.elapsed();
    return process.readAllStandardOutput();
}

QByteArray fileHash(const QString& path)
{
    QFile file(path);
    QCryptographicHash hash(QCryptographicHash::Sha256);
    if (!file.open(QIODevice::ReadOnly) || !hash.addData(&file))
        qFatal("cannot read %s", qPrintable(path));
    return hash.result();
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QTemporaryDir temporary;
    const QString work = argc > 1 ? QString::fromLocal8Bit(argv[1]) : temporary.path();
    const quint32 blockSize = BlockBase::blockSizeOf((argc > 2 ? QByteArray(argv[2]).toULongLong() : 64) * 1024);
    const QString source = work + QStringLiteral("/source");
    const QString file = source + QStringLiteral("/big.bin");
    QDir().mkpath(source);
    QFile big(file);
    if (!big.open(QIODevice::WriteOnly))
        qFatal("cannot write %s", qPrintable(file));
    QRandomGenerator random(512);
    QByteArray chunk(16 << 20, Qt::Uninitialized);
    for (int i = 0; i < 32; ++i) {
        random.fillRange(reinterpret_cast<quint32*>(chunk.data()), chunk.size() / 4);
        big.write(chunk);
    }
    big.close();

    // First runs, not measured: ours, rsync's copy and restic's repository.
    FileBackupJob::Parameters parameters;
    parameters.storageRoot = work + QStringLiteral("/ours");
    QDir().mkpath(parameters.storageRoot);
    parameters.objectPrefix = QStringLiteral("g/000001");
    parameters.blockSize = blockSize;
    FileSelection selection({source}, {}, FileSelection::FilterType::All, {}, {}, false);
    std::atomic_bool stop {false};
    FileBackupJob::Result first = FileBackupJob(parameters, selection).run(stop, {});
    qint64 ms = 0;
    runTool(QStringLiteral("cp"), {file, work + QStringLiteral("/rsync-copy.bin")}, &ms);
    qputenv("RESTIC_PASSWORD", "bench");
    qputenv("RESTIC_CACHE_DIR", (work + QStringLiteral("/restic-cache")).toUtf8());
    const QString repo = work + QStringLiteral("/restic");
    runTool(
        QStringLiteral("restic"), {QStringLiteral("init"), QStringLiteral("-q"), QStringLiteral("--repo"), repo}, &ms);
    const QStringList resticBackup {
        QStringLiteral("backup"), QStringLiteral("-q"), QStringLiteral("--repo"), repo, source};
    runTool(QStringLiteral("restic"), resticBackup, &ms);
    const qint64 resticBefore = folderBytes(repo);

    QFile change(file);
    if (!change.open(QIODevice::ReadWrite))
        qFatal("cannot change %s", qPrintable(file));
    for (int i = 0; i < 100; ++i) {
        change.seek(qint64(random.bounded(512 * 256 - 1)) * 4096 + random.bounded(4096));
        random.fillRange(reinterpret_cast<quint32*>(chunk.data()), 1024);
        change.write(chunk.constData(), 4096);
    }
    change.close();

    parameters.objectPrefix = QStringLiteral("g/000002");
    QList<StoredContent> previous = first.content;
    parameters.previousChildren = [&previous](const QString& folder) {
        QList<StoredContent> children;
        for (const StoredContent& item : std::as_const(previous)) {
            if (item.parentPath() == folder)
                children << item;
        }
        return std::optional<QList<StoredContent>>(children);
    };
    for (const StoredContent& item : std::as_const(previous)) {
        if (!parameters.previousParents.contains(item.parentPath()))
            parameters.previousParents << item.parentPath();
    }
    parameters.blockMap = [&first](const QString& object) -> std::optional<BlockMap> {
        for (const BlockMap& map : std::as_const(first.blockMaps)) {
            if (map.object == object)
                return map;
        }
        return std::nullopt;
    };
    QElapsedTimer timer;
    timer.start();
    const FileBackupJob::Result second = FileBackupJob(parameters, selection).run(stop, {});
    const qint64 oursMs = timer.elapsed();
    const qint64 oursBytes = folderBytes(parameters.storageRoot + QStringLiteral("/g/000002"));
    if (second.planResult != NVB::Info::Plan::PlanResult::Success)
        qFatal("our second run failed: %s", qPrintable(second.message));

    qint64 rsyncMs = 0;
    const QByteArray stats = runTool(QStringLiteral("rsync"),
        {QStringLiteral("--inplace"), QStringLiteral("--no-whole-file"), QStringLiteral("--stats"), file,
            work + QStringLiteral("/rsync-copy.bin")},
        &rsyncMs);
    qint64 literal = -1;
    for (const QByteArray& line : stats.split('\n')) {
        if (line.startsWith("Literal data:"))
            literal = line.mid(13).trimmed().split(' ').first().replace(",", "").toLongLong();
    }
    qint64 resticMs = 0;
    runTool(QStringLiteral("restic"), resticBackup, &resticMs);
    const qint64 resticBytes = folderBytes(repo) - resticBefore;

    // The second point back: the full version with its increment.
    FileRestoreJob::Parameters restore;
    restore.storageRoot = parameters.storageRoot;
    restore.destination = work + QStringLiteral("/restored");
    QDir().mkpath(restore.destination);
    QHash<QString, StoredContent> point;
    for (const StoredContent& item : std::as_const(previous))
        point.insert(item.path, item);
    for (const StoredContent& item : std::as_const(second.content))
        point.insert(item.path, item);
    restore.content = point.values();
    timer.restart();
    const auto restored = FileRestoreJob(restore).run(stop, {});
    const qint64 restoreMs = timer.elapsed();
    const bool same = restored.planResult == NVB::Info::Plan::PlanResult::Success
        && fileHash(restore.destination + file) == fileHash(file);

    std::printf("512 MiB file, 100 x 4 KiB overwritten, second run (blocks of %u KiB)\n", blockSize / 1024);
    std::printf(
        "  ours   %7lld ms %10lld B stored\n", static_cast<long long>(oursMs), static_cast<long long>(oursBytes));
    std::printf("  rsync  %7lld ms %10lld B literal data (--inplace --no-whole-file)\n",
        static_cast<long long>(rsyncMs), static_cast<long long>(literal));
    std::printf("  restic %7lld ms %10lld B added to its repository\n", static_cast<long long>(resticMs),
        static_cast<long long>(resticBytes));
    std::printf("  our restore of the second point %lld ms, %s\n", static_cast<long long>(restoreMs),
        same ? "byte-identical" : "DIFFERENT");
    return same ? 0 : 1;
}
