#pragma once

#include <QAbstractItemModelTester>
#include <QJsonArray>
#include <QJsonObject>
#include <QPointer>
#include <QTest>
#include <QUuid>

#include "enginetestpeer.h"
#include "models/modelcreator.h"
#include "models/modelmanager.h"
#include "models/models.h"
#include "plans/plantablemodel.h"
#include "service/connectionmanager.h"
#include "service/envelope.h"
#include "service/notification/format.h"
#include "service/notificationcenter.h"
#include "service/servicelink.h"

namespace PlanTest {

namespace Format = NVB::Common::Communication::Notification::Format;

// The executable's creator of the shared plan table; tests swap the table
// between cases, since the manager keeps the first creator for good.
class TableCreator : public NVB::GUI::ModelCreator
{
public:
    QPointer<NVB::GUI::PlanTableModel> model;
    QAbstractItemModel* create() override { return model.data(); }
    QString type() const override { return NVB::GUI::Models::Table::NvbPlanModelInfo::Type; }
};

inline TableCreator& creator()
{
    static TableCreator instance;
    return instance;
}

// Starts the engine double and the console's channel, and registers the
// plan table creator. Call from initTestCase.
inline bool startChannel(NvbTest::EngineTestPeer* peer)
{
    peer->exportSocketPath();
    if (NVB::Common::Communication::NotificationCenter::instance().isNull())
        return false;
    NVB::Common::Communication::ServiceLink::instance()->client()->setReconnectDelays(10, 50);
    if (!QTest::qWaitFor(
            [] { return NVB::Common::Communication::ConnectionManager::instance()->isLocalManagmentConnected(); }))
        return false;
    if (!peer->waitForClient())
        return false;
    NVB::GUI::ModelManager::instance()->registrateCreator(creator());
    return true;
}

inline QJsonObject summary(const QUuid& id, const QString& name, int subType, int status = 2, int lastResult = 6)
{
    return {{QStringLiteral("ID"), id.toString()}, {QStringLiteral("Name"), name}, {QStringLiteral("SubType"), subType},
        {QStringLiteral("Status"), status}, {QStringLiteral("LastRunStatus"), lastResult},
        {QStringLiteral("LastRunMessage"), QStringLiteral("done")},
        {QStringLiteral("LastRunTime"), QStringLiteral("2030-05-06T07:08:09")},
        {QStringLiteral("NextRun"), QStringLiteral("2030-05-07T07:08:09Z")}, {QStringLiteral("Schedule"), QString()},
        {QStringLiteral("StorageId"), QUuid().toString()}, {QStringLiteral("LastDuration"), 12},
        {QStringLiteral("LastUploadedCount"), 3}, {QStringLiteral("LastFailedCount"), 0},
        {QStringLiteral("LastUploadedSize"), 4096}, {QStringLiteral("Type"), 0}, {QStringLiteral("ProgressSteps"), 4}};
}

// Answers PlanGetList with the given plans and PlanGetInfo from the same
// list, which a test changes through the returned reference.
class Engine
{
public:
    explicit Engine(NvbTest::EngineTestPeer* peer)
        : m_peer(peer)
    {
        peer->onCommand(QStringLiteral("PlanGetList"), [this](const QJsonObject&) {
            QJsonArray list;
            for (const QJsonObject& plan : qAsConst(plans))
                list.append(plan);
            return NvbTest::EngineTestPeer::Answer::reply({{QStringLiteral("planList"), list}});
        });
        peer->onCommand(QStringLiteral("PlanGetInfo"), [this](const QJsonObject& request) {
            const QUuid id(request.value(QStringLiteral("params")).toObject().value(QStringLiteral("id")).toString());
            ++infoRequests;
            for (const QJsonObject& plan : qAsConst(plans)) {
                if (QUuid(plan.value(QStringLiteral("ID")).toString()) == id)
                    return NvbTest::EngineTestPeer::Answer::reply({{QStringLiteral("planInfo"), plan}});
            }
            return NvbTest::EngineTestPeer::Answer::reply({{QStringLiteral("planInfo"), QJsonObject()}});
        });
    }

    // Requests still on their way must not reach a gone engine.
    ~Engine()
    {
        m_peer->onCommand(QStringLiteral("PlanGetList"), NvbTest::EngineTestPeer::Answer::reply({}));
        m_peer->onCommand(QStringLiteral("PlanGetInfo"), NvbTest::EngineTestPeer::Answer::reply({}));
    }
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;

    QList<QJsonObject> plans;
    int infoRequests = 0;

    void set(const QUuid& id, const QString& key, const QJsonValue& value)
    {
        for (QJsonObject& plan : plans) {
            if (QUuid(plan.value(QStringLiteral("ID")).toString()) == id)
                plan.insert(key, value);
        }
    }

private:
    NvbTest::EngineTestPeer* m_peer;
};

} // namespace PlanTest
