// A file backup run over 10,000 small files against `cp -r` of the same tree
// followed by `sync -f` on the copy (the engine's runs are durable too), then
// a second run with nothing changed. The runs go through the engine's run
// manager and store, as a plan started by the console does. Three rounds,
// medians: a first run is a forced full run, a new generation each round.
//
//   NVB_BENCH_COMPRESS  "0": the plan copies without compression
//   NVB_BENCH_FORMAT    "legacy": the legacy format (one object per file)
//                       instead of the new one

#include <algorithm>
#include <cstdio>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include "records/plan/backupfile.h"
#include "runs/runmanager.h"
#include "store/enginestore.h"

using namespace NVB::Engine;

namespace {

constexpr int FileCount = 10000;

void makeTree(const QString& root)
{
    const QByteArray data(2048, 'x');
    for (int i = 0; i < FileCount; ++i) {
        const QString folder = QStringLiteral("%1/d%2/e%3").arg(root).arg(i / 1000).arg((i / 100) % 10);
        if (i % 100 == 0)
            QDir().mkpath(folder);
        QFile file(QStringLiteral("%1/f%2.txt").arg(folder).arg(i));
        file.open(QIODevice::WriteOnly);
        file.write(data);
        file.write(QByteArray::number(i));
    }
}

qint64 median(QList<qint64> values)
{
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

qint64 timeRun(RunManager& runs, const QUuid& plan, bool full, int* result)
{
    QEventLoop loop;
    QObject::connect(&runs, &RunManager::finished, &loop,
                     [&](const QUuid&, int, int planResult, const StoredRestorePoint&, bool, bool) {
                         *result = planResult;
                         loop.quit();
                     });
    QElapsedTimer clock;
    clock.start();
    const QString error = runs.start(plan, full);
    if (!error.isEmpty()) {
        std::fprintf(stderr, "cannot start: %s\n", qUtf8Printable(error));
        return -1;
    }
    loop.exec();
    QObject::disconnect(&runs, &RunManager::finished, &loop, nullptr);
    return clock.elapsed();
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QTemporaryDir work;
    const QString source = work.filePath(QStringLiteral("source"));
    std::printf("Making %d files of about 2 KB...\n", FileCount);
    makeTree(source);
    // Read the tree once so that both contenders start from a warm cache.
    QProcess::execute(QStringLiteral("cp"), {QStringLiteral("-r"), source, work.filePath(QStringLiteral("warm"))});

    EngineStore store;
    // The engine never backs up its own data folder, so it must not hold the source.
    if (!store.open(work.filePath(QStringLiteral("data/engine.db")))) {
        std::fprintf(stderr, "%s\n", qUtf8Printable(store.lastError()));
        return 1;
    }
    StoredAccount account;
    account.id = QUuid::createUuid();
    account.displayName = QStringLiteral("Bench");
    account.type = 1;
    account.prefix = QStringLiteral("bench");
    // The engine refuses an account whose folder is missing (an unmounted drive).
    QDir().mkpath(work.filePath(QStringLiteral("storage")));
    account.params.insert(QStringLiteral("Path"), work.filePath(QStringLiteral("storage")) + QLatin1Char('/'));
    store.saveAccount(account);

    NVB::Info::Plan::BackupFile plan;
    plan.setId(QUuid::createUuid());
    plan.setName(QStringLiteral("Bench"));
    plan.setStorage(account.id);
    plan.setItems({source});
    plan.setUseCompression(qEnvironmentVariable("NVB_BENCH_COMPRESS") != QLatin1String("0"));
    plan.setIsArchive(qEnvironmentVariable("NVB_BENCH_FORMAT") != QLatin1String("legacy"));
    StoredPlan stored;
    stored.id = plan.id();
    stored.name = plan.name();
    stored.xml = plan.toXml();
    stored.storageId = account.id;
    store.savePlan(stored);

    RunManager runs(&store);
    int firstResult = 6;
    int secondResult = 6;
    QList<qint64> cp;
    QList<qint64> first;
    QList<qint64> second;
    for (int round = 0; round < 3; ++round) {
        const QString copy = work.filePath(QStringLiteral("copy%1").arg(round));
        QElapsedTimer clock;
        clock.start();
        QProcess::execute(QStringLiteral("cp"), {QStringLiteral("-r"), source, copy});
        QProcess::execute(QStringLiteral("sync"), {QStringLiteral("-f"), copy});
        cp.append(clock.elapsed());
        int result = 0;
        first.append(timeRun(runs, plan.id(), true, &result));
        firstResult = result == 6 ? firstResult : result;
        second.append(timeRun(runs, plan.id(), false, &result));
        secondResult = result == 6 ? secondResult : result;
        std::printf("round %d: cp -r + sync -f %lld ms, first run %lld ms, unchanged run %lld ms\n", round + 1,
                    cp.last(), first.last(), second.last());
    }
    const qint64 cpMs = median(cp);
    const qint64 firstMs = median(first);
    const qint64 secondMs = median(second);

    std::printf("\n%-38s %10s\n", "", "median ms");
    std::printf("%-38s %10lld\n", "cp -r, then sync -f", cpMs);
    std::printf("%-38s %10lld   (result %d)\n", "engine, first run", firstMs, firstResult);
    std::printf("%-38s %10lld   (result %d)\n", "engine, second run, nothing changed", secondMs, secondResult);
    if (firstResult != 6 || secondResult != 6) {
        std::fprintf(stderr, "A run did not succeed (result 6); the figures mean nothing.\n");
        return 1;
    }
    const double firstRatio = cpMs > 0 ? double(firstMs) / double(cpMs) : 0.0;
    const double secondRatio = firstMs > 0 ? double(secondMs) / double(firstMs) : 0.0;
    std::printf("\nfirst run / cp -r + sync: %.2f  (target: at most 2)\n", firstRatio);
    std::printf("second run / first run:   %.2f  (target: well under 1)\n", secondRatio);
    return firstRatio <= 2.0 && secondRatio < 1.0 ? 0 : 2;
}
