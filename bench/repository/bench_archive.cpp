// The new format's runs against restic on the same trees, each tool with
// compression on: (a) 10,000 files of 2 KiB, first run; (b) a mixed tree of
// about 1 GiB (random, duplicated, compressible and small files), first and
// unchanged runs; (c) a 512 MiB file with 100 scattered 4 KiB overwrites, the
// second run; (d) a restore of the whole tree of (b). Prints time, bytes on
// the storage and object count of each, and peak resident memory.
//
// (e) enciphered: 10,000 files of about 500 MB, half compressible text and
// half random, with zstd and AES-256 in both tools (restic always
// enciphers): first run, unchanged run, restore; with the stored size. The
// first run derives the key in its own process; the unchanged run and the
// restore run in processes that hold it already, as in the engine daemon.
//
// Usage: bench_archive [work folder] [size of (b) in MiB] [all|cipher];
// needs `restic`. "cipher" runs (e) alone, "mixed" (b) and (d) alone. NVB_BENCH_FILES sets the file
// count of (e) (10,000 by default) and NVB_BENCH_ROUNDS how many restores of
// each tool the restore rows take turns at (3 by default; the median is
// printed, and every round).

#include <cstdio>

#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <functional>
#include <vector>

#include <QCoreApplication>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include "archive/archivebackupjob.h"
#include "archive/archiverestorejob.h"
#include "records/plan/planresult.h"
#include "repository/chunktransform.h"
#include "repository/repository.h"
#include "storage/filesystemdriver.h"

using namespace NVB::Engine;

namespace {

struct Usage
{
    qint64 bytes = 0;
    int objects = 0;
};

Usage usage(const QString& folder)
{
    Usage result;
    QDirIterator it(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        it.next();
        result.bytes += it.fileInfo().size();
        ++result.objects;
    }
    return result;
}

void write(const QString& path, const QByteArray& data)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(data) != data.size())
        qFatal("cannot write %s", qPrintable(path));
}

QByteArray randomBytes(QRandomGenerator& random, qint64 size)
{
    QByteArray data(int(size), Qt::Uninitialized);
    random.fillRange(reinterpret_cast<quint32*>(data.data()), int(size / 4));
    return data;
}

QByteArray text(QRandomGenerator& random, qint64 size)
{
    static const char* const words[] = {"GET", "/index.html", "200", "POST", "/api/v1/items", "404", "Mozilla/5.0",
        "127.0.0.1", "-", "user", "session", "expired", "ok", "\n"};
    QByteArray data;
    data.reserve(int(size));
    while (data.size() < size) {
        data.append(words[random.bounded(14)]);
        data.append(' ');
        data.append(QByteArray::number(random.bounded(100000)));
        data.append(' ');
    }
    data.truncate(int(size));
    return data;
}

// Runs `work` in a child process so that its peak memory is its own:
// answers the child's maximum resident size in KiB.
long inChild(const std::function<bool()>& work)
{
    std::fflush(stdout);
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(work() ? 0 : 1);
    int status = 0;
    struct rusage used
    {
    };
    if (child < 0 || ::wait4(child, &status, 0, &used) != child || !WIFEXITED(status) || WEXITSTATUS(status) != 0)
        qFatal("a measured run failed");
    return used.ru_maxrss;
}

long g_oursPeak = 0;
long g_resticPeak = 0;

class Bench
{
public:
    explicit Bench(const QString& work)
        : m_work(work)
    {
        qputenv("RESTIC_PASSWORD", "bench");
        qputenv("RESTIC_CACHE_DIR", (work + QStringLiteral("/restic-cache")).toUtf8());
    }

    // Our run: time in ms, and whether it ended well.
    qint64 ours(const QString& source, const QString& storage, int sequence)
    {
        QDir().mkpath(storage);
        ArchiveBackupJob::Parameters parameters;
        parameters.storageRoot = storage;
        parameters.repositoryRoot = QStringLiteral("archive");
        parameters.generation = m_generation;
        parameters.sequence = sequence;
        parameters.newGeneration = sequence == 1;
        parameters.previousSequence = sequence - 1;
        parameters.compress = true;
        parameters.password = m_password;
        parameters.keyBytes = 32;
        parameters.startUtc = QDateTime::currentDateTimeUtc();
        FileSelection selection({source}, {}, FileSelection::FilterType::All, {}, {}, false);
        QElapsedTimer timer;
        timer.start();
        g_oursPeak = qMax(g_oursPeak, inChild([&] {
            std::atomic_bool stop {false};
            const auto result = ArchiveBackupJob(parameters, selection).run(stop, {});
            if (result.planResult != NVB::Info::Plan::PlanResult::Success)
                std::fprintf(stderr, "our run failed: %s\n", qPrintable(result.message));
            return result.planResult == NVB::Info::Plan::PlanResult::Success;
        }));
        return timer.elapsed();
    }

    qint64 oursRestore(const QString& storage, int sequence, const QString& target)
    {
        QDir().mkpath(target);
        ArchiveRestoreJob::Parameters parameters;
        parameters.storageRoot = storage;
        parameters.repositoryRoot = QStringLiteral("archive");
        parameters.generation = m_generation;
        parameters.sequence = sequence;
        parameters.destination = target;
        parameters.password = m_password;
        QElapsedTimer timer;
        timer.start();
        g_oursPeak = qMax(g_oursPeak, inChild([&] {
            std::atomic_bool stop {false};
            const auto result = ArchiveRestoreJob(parameters).run(stop, {});
            if (result.planResult != NVB::Info::Plan::PlanResult::Success)
                std::fprintf(stderr, "our restore failed: %s\n", qPrintable(result.message));
            return result.planResult == NVB::Info::Plan::PlanResult::Success;
        }));
        return timer.elapsed();
    }

    static qint64 restic(const QStringList& arguments)
    {
        QElapsedTimer timer;
        timer.start();
        g_resticPeak = qMax(g_resticPeak, inChild([&] {
            std::vector<QByteArray> bytes {QByteArrayLiteral("restic")};
            for (const QString& argument : arguments)
                bytes.push_back(argument.toLocal8Bit());
            std::vector<char*> argv;
            for (QByteArray& b : bytes)
                argv.push_back(b.data());
            argv.push_back(nullptr);
            ::execvp("restic", argv.data());
            return false;
        }));
        return timer.elapsed();
    }

    // What an engine daemon holds once a run has derived the generation's
    // key: later runs and restores of that process reuse it. This process
    // stands for the daemon; the children it forks afterwards inherit it.
    void openGenerationOnce(const QString& storage)
    {
        FileSystemDriver driver(storage);
        const OpenedGeneration opened
            = Repository(&driver, QStringLiteral("archive")).openGeneration(m_generation, m_password);
        if (!opened.error.isEmpty())
            qFatal("cannot open the generation: %s", qPrintable(opened.error));
    }

    void newGeneration() { m_generation = QUuid::createUuid(); }
    void setPassword(const QString& password) { m_password = password; }

private:
    QString m_work;
    QString m_password;
    QUuid m_generation = QUuid::createUuid();
};

int benchRounds()
{
    const int rounds = qEnvironmentVariableIntValue("NVB_BENCH_ROUNDS");
    return rounds > 0 ? rounds : 3;
}

qint64 median(QList<qint64> values)
{
    std::sort(values.begin(), values.end());
    return values.isEmpty() ? 0 : values.at(values.size() / 2);
}

// Restores of each tool taking turns (which goes first alternates), each
// into a folder of its own: the file system is slow to hand out inodes freed
// moments before, so no round removes another's files. The medians, and the
// usage of the last round.
struct RestoreRounds
{
    qint64 ours = 0;
    qint64 restic = 0;
    Usage oursUsage;
    Usage resticUsage;
};

RestoreRounds restoreRounds(Bench& bench, const QString& storage, const QString& repository, const QString& target)
{
    QList<qint64> ours;
    QList<qint64> restic;
    RestoreRounds result;
    const auto oursTarget = [&target](int round) { return target + QStringLiteral("-ours%1").arg(round); };
    const auto resticTarget = [&target](int round) { return target + QStringLiteral("-restic%1").arg(round); };
    for (int round = 0; round < benchRounds(); ++round) {
        for (int turn = 0; turn < 2; ++turn) {
            if ((turn + round) % 2 == 0)
                ours << bench.oursRestore(storage, 2, oursTarget(round));
            else
                restic << Bench::restic({QStringLiteral("restore"), QStringLiteral("-q"), QStringLiteral("--repo"),
                    repository, QStringLiteral("latest"), QStringLiteral("--target"), resticTarget(round)});
        }
        std::printf("  restore round %d: ours %lld ms, restic %lld ms\n", round + 1,
            static_cast<long long>(ours.constLast()), static_cast<long long>(restic.constLast()));
        std::fflush(stdout);
    }
    result.oursUsage = usage(oursTarget(0));
    result.resticUsage = usage(resticTarget(0));
    for (int round = 0; round < benchRounds(); ++round) {
        QDir(oursTarget(round)).removeRecursively();
        QDir(resticTarget(round)).removeRecursively();
    }
    result.ours = median(ours);
    result.restic = median(restic);
    return result;
}

void row(const char* what, qint64 oursMs, const Usage& oursUsage, qint64 resticMs, const Usage& resticUsage)
{
    std::printf("%-30s ours %7lld ms %10lld B %6d objects | restic %7lld ms %10lld B %6d objects | time %.2fx\n", what,
        static_cast<long long>(oursMs), static_cast<long long>(oursUsage.bytes), oursUsage.objects,
        static_cast<long long>(resticMs), static_cast<long long>(resticUsage.bytes), resticUsage.objects,
        resticMs > 0 ? double(oursMs) / double(resticMs) : 0.0);
    std::fflush(stdout);
}

void enciphered(Bench& bench, const QString& w, QRandomGenerator& random)
{
    const QString tree = w + QStringLiteral("/e");
    qint64 total = 0;
    const int files
        = qEnvironmentVariableIsSet("NVB_BENCH_FILES") ? qEnvironmentVariableIntValue("NVB_BENCH_FILES") : 10000;
    for (int n = 0; n < files; ++n) {
        const qint64 size = 4096 + random.bounded(92 * 1024); // 50 KiB on average
        write(QStringLiteral("%1/d%2/f%3").arg(tree).arg(n / 100).arg(n),
            n % 2 ? randomBytes(random, size) : text(random, size));
        total += size;
    }
    std::printf("(e) tree: %d files, %lld bytes\n", files, static_cast<long long>(total));
    bench.setPassword(QStringLiteral("bench"));
    bench.newGeneration();
    Bench::restic({QStringLiteral("init"), QStringLiteral("-q"), QStringLiteral("--repo"), w + QStringLiteral("/re")});
    const QStringList backup
        = {QStringLiteral("backup"), QStringLiteral("-q"), QStringLiteral("--repo"), w + QStringLiteral("/re"), tree};
    qint64 ours = bench.ours(tree, w + QStringLiteral("/oe"), 1);
    qint64 restic = Bench::restic(backup);
    const Usage oursFirst = usage(w + QStringLiteral("/oe"));
    const Usage resticFirst = usage(w + QStringLiteral("/re"));
    row("(e) enciphered, first", ours, oursFirst, restic, resticFirst);
    // The first run paid the key derivation in its own process; the rest
    // run as a user meets them, in an engine that already knows the key.
    bench.openGenerationOnce(w + QStringLiteral("/oe"));
    ours = bench.ours(tree, w + QStringLiteral("/oe"), 2);
    restic = Bench::restic(backup);
    row("(e) enciphered, unchanged", ours, usage(w + QStringLiteral("/oe")), restic, usage(w + QStringLiteral("/re")));
    const RestoreRounds restored
        = restoreRounds(bench, w + QStringLiteral("/oe"), w + QStringLiteral("/re"), w + QStringLiteral("/te"));
    row("(e) enciphered, restore", restored.ours, restored.oursUsage, restored.restic, restored.resticUsage);
    std::printf("(e) stored size: ours %.3f of the tree, restic %.3f; ours/restic %.3f\n",
        double(oursFirst.bytes) / double(total), double(resticFirst.bytes) / double(total),
        double(oursFirst.bytes) / double(resticFirst.bytes));
    std::printf(
        "peak resident of the largest run: ours %ld MiB, restic %ld MiB\n", g_oursPeak / 1024, g_resticPeak / 1024);
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    const QString base = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QDir::tempPath();
    const qint64 mixedMiB = argc > 2 ? QByteArray(argv[2]).toLongLong() : 1024;
    QTemporaryDir work(base + QStringLiteral("/bench_archive-XXXXXX"));
    const QString w = work.path();
    Bench bench(w);
    QRandomGenerator random(24);
    if (argc > 3 && QByteArray(argv[3]) == "cipher") {
        enciphered(bench, w, random);
        return 0;
    }

    const bool mixedOnly = argc > 3 && QByteArray(argv[3]) == "mixed";
    qint64 ours = 0;
    qint64 restic = 0;
    // (a) 10,000 files of 2 KiB.
    for (int n = 0; n < 10000 && !mixedOnly; ++n)
        write(QStringLiteral("%1/a/d%2/f%3").arg(w).arg(n / 100).arg(n), randomBytes(random, 2048));
    if (!mixedOnly) {
        Bench::restic(
            {QStringLiteral("init"), QStringLiteral("-q"), QStringLiteral("--repo"), w + QStringLiteral("/ra")});
        ours = bench.ours(w + QStringLiteral("/a"), w + QStringLiteral("/oa"), 1);
        restic = Bench::restic({QStringLiteral("backup"), QStringLiteral("-q"), QStringLiteral("--repo"),
            w + QStringLiteral("/ra"), w + QStringLiteral("/a")});
        row("(a) 10,000 x 2 KiB, first", ours, usage(w + QStringLiteral("/oa")), restic,
            usage(w + QStringLiteral("/ra")));
    }
    // (b) the mixed tree: a tenth small files, a fifth compressible text, the
    // rest large random files of which one is there twice.
    const QString mixed = w + QStringLiteral("/b");
    const qint64 mib = 1024 * 1024;
    for (int n = 0; n < mixedMiB * 10; ++n) // 10 KiB each: a tenth of the tree
        write(QStringLiteral("%1/small/d%2/f%3").arg(mixed).arg(n / 200).arg(n), randomBytes(random, 10 * 1024));
    for (int n = 0; n < mixedMiB / 50; ++n) // 10 MiB each: a fifth
        write(QStringLiteral("%1/logs/log%2.txt").arg(mixed).arg(n), text(random, 10 * mib));
    const int large = int(mixedMiB * 7 / 10 / 64);
    QByteArray first;
    for (int n = 0; n + 1 < large; ++n) {
        const QByteArray data = randomBytes(random, 64 * mib);
        if (first.isEmpty())
            first = data;
        write(QStringLiteral("%1/large/file%2.bin").arg(mixed).arg(n), data);
    }
    write(QStringLiteral("%1/large/copy.bin").arg(mixed), first);
    first.clear();
    bench.newGeneration();
    Bench::restic({QStringLiteral("init"), QStringLiteral("-q"), QStringLiteral("--repo"), w + QStringLiteral("/rb")});
    const QStringList backupB
        = {QStringLiteral("backup"), QStringLiteral("-q"), QStringLiteral("--repo"), w + QStringLiteral("/rb"), mixed};
    ours = bench.ours(mixed, w + QStringLiteral("/ob"), 1);
    restic = Bench::restic(backupB);
    row("(b) mixed tree, first", ours, usage(w + QStringLiteral("/ob")), restic, usage(w + QStringLiteral("/rb")));
    ours = bench.ours(mixed, w + QStringLiteral("/ob"), 2);
    restic = Bench::restic(backupB);
    row("(b) mixed tree, unchanged", ours, usage(w + QStringLiteral("/ob")), restic, usage(w + QStringLiteral("/rb")));

    // (d) restore of the whole mixed tree.
    const RestoreRounds restored
        = restoreRounds(bench, w + QStringLiteral("/ob"), w + QStringLiteral("/rb"), w + QStringLiteral("/tb"));
    row("(d) restore of (b)", restored.ours, restored.oursUsage, restored.restic, restored.resticUsage);
    QDir(mixed).removeRecursively();

    if (mixedOnly) {
        std::printf(
            "peak resident of the largest run: ours %ld MiB, restic %ld MiB\n", g_oursPeak / 1024, g_resticPeak / 1024);
        return 0;
    }

    // (c) 512 MiB, then 100 scattered 4 KiB overwrites.
    const QString single = w + QStringLiteral("/c/big.bin");
    write(single, randomBytes(random, 512 * mib));
    bench.newGeneration();
    Bench::restic({QStringLiteral("init"), QStringLiteral("-q"), QStringLiteral("--repo"), w + QStringLiteral("/rc")});
    const QStringList backupC = {QStringLiteral("backup"), QStringLiteral("-q"), QStringLiteral("--repo"),
        w + QStringLiteral("/rc"), w + QStringLiteral("/c")};
    bench.ours(w + QStringLiteral("/c"), w + QStringLiteral("/oc"), 1);
    Bench::restic(backupC);
    const Usage oursBefore = usage(w + QStringLiteral("/oc"));
    const Usage resticBefore = usage(w + QStringLiteral("/rc"));
    QFile edited(single);
    if (!edited.open(QIODevice::ReadWrite))
        qFatal("cannot open %s", qPrintable(single));
    for (int n = 0; n < 100; ++n) {
        edited.seek(qint64(random.bounded(quint32(512 * 256))) * 4096);
        edited.write(randomBytes(random, 4096));
    }
    edited.close();
    ours = bench.ours(w + QStringLiteral("/c"), w + QStringLiteral("/oc"), 2);
    restic = Bench::restic(backupC);
    Usage oursAdded = usage(w + QStringLiteral("/oc"));
    Usage resticAdded = usage(w + QStringLiteral("/rc"));
    oursAdded.bytes -= oursBefore.bytes;
    oursAdded.objects -= oursBefore.objects;
    resticAdded.bytes -= resticBefore.bytes;
    resticAdded.objects -= resticBefore.objects;
    row("(c) 100 x 4 KiB overwritten", ours, oursAdded, restic, resticAdded);

    std::printf(
        "peak resident of the largest run: ours %ld MiB, restic %ld MiB\n", g_oursPeak / 1024, g_resticPeak / 1024);
    return 0;
}
