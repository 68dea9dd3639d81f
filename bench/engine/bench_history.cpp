// A history of 1,000,000 file rows over 10,000 runs of 10 plans: the first
// page by plan and by file, a filtered and a period page, and the CSV export
// of one plan's 100,000 file rows page by page, all through the engine's own
// command handlers on its store.

#include <cstdio>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>

#include "commands/historycommands.h"
#include "core/engine.h"
#include "server/notifier.h"
#include "store/enginestore.h"
#include "store/storevalues.h"

using namespace NVB::Engine;

namespace {

constexpr int Plans = 10;
constexpr int RunsPerPlan = 1000;
constexpr int FilesPerRun = 100;

QList<QUuid> fill(EngineStore& store)
{
    QList<QUuid> plans;
    for (int i = 0; i < Plans; ++i)
        plans << QUuid::createUuid();
    QSqlDatabase db = store.database().database();
    db.transaction();
    QSqlQuery run(db);
    run.prepare(QStringLiteral("INSERT INTO runs(plan_id, plan_name, operation, result, start_utc, duration, size, "
                               "file_count) VALUES(?,?,0,6,?,60,?,?)"));
    QSqlQuery file(db);
    file.prepare(QStringLiteral("INSERT INTO run_files(run_id, plan_id, plan_name, file, operation, size, "
                                "modified_utc, finish_utc, duration) VALUES(?,?,?,?,?,4096,?,?,10)"));
    // Runs of all plans take turns, an hour apart, the newest now.
    const QDateTime now = QDateTime::currentDateTimeUtc();
    qint64 runId = 0;
    for (int r = 0; r < RunsPerPlan; ++r) {
        for (int p = 0; p < Plans; ++p) {
            const QDateTime start = now.addSecs(-3600LL * (RunsPerPlan - r) + p);
            const QString id = StoreValues::text(plans[p]);
            run.addBindValue(id);
            run.addBindValue(QStringLiteral("Plan %1").arg(p));
            run.addBindValue(StoreValues::stamp(start));
            run.addBindValue(FilesPerRun * 4096);
            run.addBindValue(FilesPerRun);
            run.exec();
            ++runId;
            for (int f = 0; f < FilesPerRun; ++f) {
                file.addBindValue(runId);
                file.addBindValue(id);
                file.addBindValue(QStringLiteral("Plan %1").arg(p));
                file.addBindValue(QStringLiteral("/home/user/documents/folder%1/file%2.txt").arg(f % 10).arg(f));
                file.addBindValue(f % 50 == 0 ? 3 : 1); // a failure now and then
                file.addBindValue(StoreValues::stamp(start));
                file.addBindValue(StoreValues::stamp(start.addSecs(30)));
                file.exec();
            }
        }
    }
    db.commit();
    return plans;
}

double timed(const std::function<void()>& work)
{
    QElapsedTimer clock;
    clock.start();
    work();
    return clock.nsecsElapsed() / 1e6;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QTemporaryDir dir;
    EngineStore store;
    if (!store.open(dir.filePath(QStringLiteral("engine.db")))) {
        std::fprintf(stderr, "cannot open the store\n");
        return 1;
    }
    QElapsedTimer clock;
    clock.start();
    const QList<QUuid> plans = fill(store);
    std::printf("filled %d runs and %d file rows in %.1f s\n", Plans * RunsPerPlan, Plans * RunsPerPlan * FilesPerRun,
        clock.elapsed() / 1000.0);

    Notifier notifier;
    Engine engine(&store, &notifier);
    V1Handlers handlers;
    HistoryCommands::add(&engine, &handlers);
    const QString plan = plans.first().toString(QUuid::WithoutBraces);
    const auto page = [&](const char* command, const QJsonObject& params) {
        const Outcome outcome = handlers.value(QString::fromLatin1(command))(params);
        return outcome.data.value(QString::fromLatin1(command)).toArray();
    };

    QJsonArray rows;
    std::printf("first page by plan: %.2f ms\n", timed([&] {
        rows = page("HistoryListByPlan", {{"planID", plan}, {"period", "All"}});
    }));
    std::printf("  (%d rows)\n", int(rows.size()));
    std::printf("first page by file: %.2f ms\n", timed([&] {
        rows = page("HistoryListByFiles", {{"planId", plan}, {"period", "All"}});
    }));
    std::printf("first page by file, failures only: %.2f ms (%d rows)\n", timed([&] {
        rows = page("HistoryListByFiles", {{"planId", plan}, {"period", "All"}, {"filterOperationType", 3}});
    }),
        int(rows.size()));
    std::printf("first page by file, last day, every plan: %.2f ms (%d rows)\n", timed([&] {
        rows = page("HistoryListByFiles", {{"period", "DayLast"}});
    }),
        int(rows.size()));

    int exported = 0;
    const double exportMs = timed([&] {
        qint64 last = 0;
        for (;;) {
            const QJsonArray part = page(
                "HistoryListByFiles", {{"planId", plan}, {"period", "All"}, {"generateCSV", true}, {"lastId", last}});
            exported += part.size();
            if (part.size() < 200)
                break;
            last = qint64(part.last().toObject().value(QStringLiteral("ID")).toDouble());
        }
    });
    std::printf("CSV export of one plan's file rows: %d rows in %.0f ms\n", exported, exportMs);
    return 0;
}
