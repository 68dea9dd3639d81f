// A table of 10,000 plans. Two figures, each beside the same work done on a
// QStandardItemModel behind a QSortFilterProxyModel with the same filter and
// the same natural name order:
//   1. from the engine writing the PlanGetList reply to the rows being in the
//      backup view (both sides receive the reply through the real channel);
//   2. 10,000 Plan::StateChange notifications applied to the table (both
//      sides parse each notification the same way). The plan table also asks
//      for each plan's refreshed summary; the time until those have been
//      applied is printed on its own line.

#include <cstdio>
#include <cstdlib>

#include <QApplication>
#include <QCollator>
#include <QElapsedTimer>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QScopedPointer>
#include <QSortFilterProxyModel>
#include <QStandardItemModel>
#include <QTest>

#include "enginetestpeer.h"
#include "models/modelcreator.h"
#include "models/modelmanager.h"
#include "models/models.h"
#include "plans/planbackupmodel.h"
#include "plans/plantablemodel.h"
#include "service/commandresult.h"
#include "service/commands/plan.h"
#include "service/connectionmanager.h"
#include "service/envelope.h"
#include "service/icommand.h"
#include "service/manager.h"
#include "service/notification/format.h"
#include "service/notification/iparser.h"
#include "service/notification/parserfactory.h"
#include "service/notificationcenter.h"
#include "service/servicelink.h"

using namespace NVB::Common::Communication;
using NvbTest::EngineTestPeer;

namespace {

constexpr int Plans = 10000;
constexpr int Columns = 15;
const char* const Keys[Columns]
    = {"ID", "Name", "SubType", "Schedule", "Status", "StorageId", "LastRunMessage", "LastRunStatus", "LastRunTime",
        "NextRun", "LastDuration", "LastUploadedCount", "LastFailedCount", "LastUploadedSize", "Type"};

QJsonObject summary(const QUuid& id, int index)
{
    return {{QStringLiteral("ID"), id.toString()}, {QStringLiteral("Name"), QStringLiteral("Plan %1").arg(index)},
        {QStringLiteral("SubType"), index % 4 == 0 ? 2 : 1}, {QStringLiteral("Status"), 2},
        {QStringLiteral("Schedule"), QStringLiteral("Daily")}, {QStringLiteral("StorageId"), QUuid().toString()},
        {QStringLiteral("LastRunMessage"), QStringLiteral("Completed")}, {QStringLiteral("LastRunStatus"), 6},
        {QStringLiteral("LastRunTime"), QStringLiteral("2030-05-06T07:08:09")},
        {QStringLiteral("NextRun"), QStringLiteral("2030-05-07T07:08:09Z")}, {QStringLiteral("LastDuration"), 42},
        {QStringLiteral("LastUploadedCount"), 12}, {QStringLiteral("LastFailedCount"), 0},
        {QStringLiteral("LastUploadedSize"), 123456}, {QStringLiteral("Type"), 0},
        {QStringLiteral("ProgressSteps"), 3}};
}

class TableCreator : public NVB::GUI::ModelCreator
{
public:
    NVB::GUI::PlanTableModel* model = nullptr;
    QAbstractItemModel* create() override { return model; }
    QString type() const override { return NVB::GUI::Models::Table::NvbPlanModelInfo::Type; }
};

// The same filter and order as the backup view, on a stock proxy.
class StockProxy : public QSortFilterProxyModel
{
public:
    StockProxy()
    {
        m_collator.setNumericMode(true);
        setDynamicSortFilter(true);
    }

protected:
    bool filterAcceptsRow(int row, const QModelIndex& parent) const override
    {
        return sourceModel()->index(row, 2, parent).data().toInt() == 1;
    }
    bool lessThan(const QModelIndex& left, const QModelIndex& right) const override
    {
        return m_collator.compare(left.data().toString(), right.data().toString()) < 0;
    }

private:
    QCollator m_collator {QLocale(QLocale::English, QLocale::UnitedStates)};
};

// Sends PlanGetList as views do and hands the reply's data to a function.
class ListCaller : public QObject
{
public:
    std::function<void(const QJsonObject&)> onData;

    void send()
    {
        ICommand* command = Manager::instance()->commandFactory(QLatin1String(Commands::Format::Plan::GetList::Name));
        connect(command, &ICommand::complite, this, [this, command] {
            onData(CommandResult::data(command));
            command->deleteLater();
        });
        command->exec();
    }
};

QList<QJsonDocument> stateChanges(const QList<QUuid>& ids)
{
    QList<QJsonDocument> documents;
    documents.reserve(ids.size());
    for (const QUuid& id : ids) {
        documents.append(QJsonDocument(Envelope::notification(Notification::Format::Plan::StateChange::Type,
            {{QStringLiteral("id"), id.toString()}, {QStringLiteral("state"), 1}, {QStringLiteral("last_state"), 2}})));
    }
    return documents;
}

template<typename Condition> void waitFor(Condition condition, const char* what)
{
    if (!QTest::qWaitFor(condition, 600000)) {
        std::fprintf(stderr, "gave up waiting for %s\n", what);
        std::exit(1);
    }
}

void print(const char* what, double ours, double stock)
{
    std::printf("%-52s plan table %9.1f ms   stock %9.1f ms   ratio %5.2f\n", what, ours, stock, ours / stock);
}

} // namespace

int main(int argc, char* argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("NVB_LOG_STDERR", "0");
    QApplication app(argc, argv);

    EngineTestPeer peer;
    peer.exportSocketPath();
    NotificationCenter::instance();
    ServiceLink::instance()->setCommandTimeout(600000);
    if (!QTest::qWaitFor([] { return ConnectionManager::instance()->isLocalManagmentConnected(); }, 10000)) {
        std::fprintf(stderr, "no channel\n");
        return 1;
    }

    QList<QUuid> ids;
    QJsonArray list;
    QHash<QUuid, QJsonObject> summaries;
    for (int i = 0; i < Plans; ++i) {
        ids.append(QUuid::createUuid());
        summaries.insert(ids.last(), summary(ids.last(), i));
        list.append(summaries.value(ids.last()));
    }
    QElapsedTimer clock;
    clock.start();
    qint64 replied = 0;
    peer.onCommand(QStringLiteral("PlanGetList"), [&](const QJsonObject&) {
        replied = clock.nsecsElapsed();
        return EngineTestPeer::Answer::reply({{QStringLiteral("planList"), list}});
    });
    int infoAnswers = 0;
    peer.onCommand(QStringLiteral("PlanGetInfo"), [&](const QJsonObject& request) {
        ++infoAnswers;
        const QUuid id(request.value(QStringLiteral("params")).toObject().value(QStringLiteral("id")).toString());
        QJsonObject plan = summaries.value(id);
        plan.insert(QStringLiteral("Status"), 1);
        return EngineTestPeer::Answer::reply({{QStringLiteral("planInfo"), plan}});
    });

    // 1. The list, into the backup view.
    double oursList = 0;
    double oursStates = 0;
    double oursRefresh = 0;
    {
        TableCreator creator;
        QScopedPointer<NVB::GUI::PlanTableModel> table(new NVB::GUI::PlanTableModel());
        creator.model = table.data();
        NVB::GUI::ModelManager::instance()->registrateCreator(creator);
        NVB::GUI::PlanBackupModel view;
        view.init();
        qint64 shown = 0;
        QObject::connect(table.data(), &NVB::GUI::BaseModel::complite, &view, [&] {
            if (!shown && view.rowCount() > 0)
                shown = clock.nsecsElapsed();
        });
        table->init();
        waitFor([&] { return shown != 0; }, "the rows");
        oursList = (shown - replied) / 1e6;
        std::printf("backup view rows: %d of %d plans\n", view.rowCount(), table->rowCount());

        // 2. The state changes, then the refreshed summaries they ask for.
        const QList<QJsonDocument> documents = stateChanges(ids);
        QPointer<NotificationCenter> center = NotificationCenter::instance();
        const qint64 start = clock.nsecsElapsed();
        for (const QJsonDocument& document : documents)
            center->deliver(document);
        oursStates = (clock.nsecsElapsed() - start) / 1e6;
        waitFor([&] { return infoAnswers >= Plans; }, "the summaries");
        waitFor([&] { return ServiceLink::instance()->pendingCount() == 0; }, "the replies");
        oursRefresh = (clock.nsecsElapsed() - start) / 1e6;
        creator.model = nullptr;
    }

    // The same on stock models.
    double stockList = 0;
    double stockStates = 0;
    {
        QStandardItemModel model(0, Columns);
        StockProxy proxy;
        proxy.setSourceModel(&model);
        proxy.sort(1, Qt::AscendingOrder);
        QHash<QUuid, int> rows;
        qint64 shown = 0;
        ListCaller caller;
        caller.onData = [&](const QJsonObject& data) {
            const QJsonArray plans = data.value(QStringLiteral("planList")).toArray();
            for (const QJsonValue& value : plans) {
                const QVariantMap map = value.toObject().toVariantMap();
                QList<QStandardItem*> items;
                for (const char* key : Keys) {
                    auto* item = new QStandardItem();
                    item->setData(map.value(QLatin1String(key)), Qt::DisplayRole);
                    items.append(item);
                }
                rows.insert(QUuid(map.value(QStringLiteral("ID")).toString()), model.rowCount());
                model.appendRow(items);
            }
            shown = clock.nsecsElapsed();
        };
        caller.send();
        waitFor([&] { return shown != 0; }, "the rows");
        stockList = (shown - replied) / 1e6;
        std::printf("stock proxy rows: %d of %d plans\n", proxy.rowCount(), model.rowCount());

        const QList<QJsonDocument> documents = stateChanges(ids);
        QPointer<NotificationCenter> center = NotificationCenter::instance();
        QObject::connect(center, &NotificationCenter::notification, &model, [&](const QJsonDocument& document) {
            QScopedPointer<Notification::IParser> parser(Notification::ParserFactory::instance().create(document));
            if (!parser || parser->type() != Notification::Format::Plan::StateChange::Type)
                return;
            const QMap<QString, QVariant> message = parser->message();
            const int row = rows.value(QUuid(message.value(QStringLiteral("id")).toString()), -1);
            if (row >= 0)
                model.item(row, 4)->setData(message.value(QStringLiteral("state")).toInt(), Qt::DisplayRole);
        });
        const qint64 start = clock.nsecsElapsed();
        for (const QJsonDocument& document : documents)
            center->deliver(document);
        stockStates = (clock.nsecsElapsed() - start) / 1e6;
    }

    std::printf("%d plans\n", Plans);
    print("PlanGetList reply to rows in the backup view", oursList, stockList);
    print("10,000 Plan::StateChange applied", oursStates, stockStates);
    std::printf("%-52s plan table %9.1f ms   (10,000 PlanGetInfo round trips)\n",
        "... and the refreshed summaries applied", oursRefresh);
    return 0;
}
