#include "historycommands.h"

#include <QJsonArray>
#include <QStringList>

#include "core/engine.h"
#include "paramreader.h"
#include "service/commands/history.h"
#include "store/enginestore.h"

namespace NVB::Engine {

namespace History = NVB::Common::Communication::Commands::Format::History;

namespace {

// Pages the engine hands out; the console's export asks again while a page
// is full.
constexpr int PageSize = 200;
const QString StampFormat = QStringLiteral("yyyyMMddhhmmss");

QString key(const char* text)
{
    return QString::fromLatin1(text);
}

QString stampText(const QDateTime& utc)
{
    return utc.isValid() ? utc.toUTC().toString(StampFormat) : QString();
}

QString csvField(const QString& text)
{
    QString quoted = text;
    quoted.replace(QLatin1Char('"'), QStringLiteral("\"\""));
    return QLatin1Char('"') + quoted + QLatin1Char('"');
}

QString csvLine(const QStringList& fields)
{
    QStringList quoted;
    for (const QString& field : fields)
        quoted << csvField(field);
    return quoted.join(QLatin1Char(','));
}

// The plan id as the history model sends it: without braces, unlike every
// other id of the channel; braces are taken too.
QUuid planIdArgument(ParamReader& args, const char* name, const QJsonObject& params)
{
    const QString text = params.value(QLatin1String(name)).toString();
    // The null id, as a console with no plan chosen sends it, means every plan.
    if (text.isEmpty() || text == QLatin1String("00000000-0000-0000-0000-000000000000"))
        return {};
    QUuid id(text);
    if (id.isNull())
        id = QUuid(QStringLiteral("{%1}").arg(text));
    if (id.isNull())
        args.uuid(name); // records the error naming the key
    return id;
}

// Empty when the query reads, else the reason naming the argument.
QString readQuery(ParamReader& args, const QJsonObject& params, const char* planKey, const char* lastKey,
                  const char* periodKey, const char* filterKey, HistoryQuery* query)
{
    query->planId = planIdArgument(args, planKey, params);
    query->lastId = args.integer(lastKey, 0, 0);
    query->filter = args.string(filterKey, false);
    const QString period = args.string(periodKey, false);
    query->limit = PageSize;
    if (!args.ok())
        return args.error();
    if (!HistoryQuery::periodFromText(period, &query->period))
        return QStringLiteral("Unknown history period \"%1\"").arg(period);
    return {};
}

// Operations of the history: 0 a backup run, 1 a restore run.
int historyOperation(int planSubtype)
{
    return planSubtype == 2 ? 1 : 0;
}

} // namespace

void HistoryCommands::add(Engine* engine, V1Handlers* handlers)
{
    handlers->insert(key(History::ByPlan::Name), [engine](const QJsonObject& params) {
        namespace Request = History::ByPlan::Request;
        namespace Reply = History::ByPlan::Reply;
        ParamReader args(params);
        HistoryQuery query;
        const QString error =
            readQuery(args, params, Request::PlanID, Request::LastID, Request::Period, Request::Filter, &query);
        if (!error.isEmpty())
            return Outcome::failure(error);
        const bool csv = args.boolean(Request::GenerateCSV);
        QJsonArray rows;
        for (const RunRecord& run : engine->store()->runs(query)) {
            QJsonObject row{
                {key(Reply::DbID), double(run.id)},
                {key(Reply::PlanId), run.planId.toString()},
                {key(Reply::PlanName), run.planName},
                {key(Reply::Operation), historyOperation(run.operation)},
                {key(Reply::Result), run.result},
                {key(Reply::StartTimeUTC), stampText(run.startUtc)},
                {key(Reply::Duration), double(run.durationSeconds)},
                {key(Reply::Size), double(run.size)},
                {key(Reply::FileOperationsTotalCount), double(run.fileCount)},
                {key(Reply::ErrorMessage), run.errorMessage},
            };
            if (csv) {
                row.insert(key(Reply::CSVLine),
                           csvLine({run.planName, stampText(run.startUtc), QString::number(run.durationSeconds),
                                    QString::number(run.result), QString::number(run.fileCount),
                                    QString::number(run.size), run.errorMessage}));
            }
            rows.append(row);
        }
        return Outcome::success({{key(Reply::Key), rows}});
    });

    handlers->insert(key(History::ByFiles::Name), [engine](const QJsonObject& params) {
        namespace Request = History::ByFiles::Request;
        namespace Reply = History::ByFiles::Reply;
        ParamReader args(params);
        HistoryQuery query;
        const QString error =
            readQuery(args, params, Request::PlanId, Request::LastId, Request::Period, Request::Filter, &query);
        if (!error.isEmpty())
            return Outcome::failure(error);
        const bool csv = args.boolean(Request::GenerateCSV);
        // 0 or missing: every operation; otherwise only that RunFileRecord::Operation.
        // The store filters, so that a page holds a full page of matches.
        query.fileOperation = int(args.integer(Request::FilterOperationType::Key, 0, 0, 1000));
        if (!args.ok())
            return Outcome::failure(args.error());
        QJsonArray rows;
        for (const RunFileRecord& file : engine->store()->runFiles(query)) {
            QJsonObject row{
                {key(Reply::ID), double(file.id)},
                // The key is "PlanId", but the console shows it as the plan's name.
                {key(Reply::PlanName), file.planName},
                {key(Reply::File), file.file},
                {key(Reply::Operation), file.operation},
                {key(Reply::Size), double(file.size)},
                {key(Reply::FinishTime), stampText(file.finishUtc)},
                {key(Reply::Duration), double(file.durationMs / 1000)},
                {key(Reply::DateModified), stampText(file.modifiedUtc)},
                {key(Reply::Message), file.message},
            };
            if (csv) {
                row.insert(key(Reply::CSVLine),
                           csvLine({file.planName, file.file, QString::number(file.operation), QString::number(file.size),
                                    stampText(file.finishUtc), stampText(file.modifiedUtc), file.message}));
            }
            rows.append(row);
        }
        return Outcome::success({{key(Reply::Key), rows}});
    });
}

} // namespace NVB::Engine
