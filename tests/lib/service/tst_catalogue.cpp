#include <functional>

#include <QJsonArray>
#include <QJsonDocument>
#include <QSet>

#include "service/manager.h"
#include "service/notification/parserfactory.h"
#include "service/v2/commandcatalogue.h"
#include "service/v2/commands/getconnection.h"
#include "service/v2/commands/getconnectionbyid.h"
#include "service/v2/commands/plan/getbackupplanlist.h"
#include "service/v2/commands/plan/getplan.h"
#include "service/v2/commands/plan/getplanlist.h"
#include "service/v2/commands/plan/getrestoreplanlist.h"
#include "service/v2/commands/repository/getbunch.h"
#include "service/v2/commands/repository/getbunchlist.h"
#include "service/v2/commands/repository/getbunchrestorepointlist.h"
#include "service/v2/commands/repository/getcontent.h"
#include "service/v2/commands/repository/getgeneration.h"
#include "service/v2/commands/repository/getgenerationlist.h"
#include "service/v2/commands/repository/getrestorepoint.h"
#include "service/v2/commands/repository/getrestorepointlist.h"
#include "service/v2/commands/repository/removedatabunch.h"
#include "service/v2/commands/repository/removedatageneration.h"
#include "service/v2/commands/repository/startdeepsync.h"
#include "service/v2/notification/addednewbunch.h"
#include "service/v2/notification/addednewconnection.h"
#include "service/v2/notification/addednewgeneration.h"
#include "service/v2/notification/addednewplan.h"
#include "service/v2/notification/addednewrestorepoint.h"
#include "service/v2/notification/deepsyncerror.h"
#include "service/v2/notification/deepsyncfinished.h"
#include "service/v2/notification/deepsyncstarted.h"
#include "service/v2/notification/deepsyncstatus.h"
#include "service/v2/notification/planprogress.h"
#include "service/v2/notification/removedbunch.h"
#include "service/v2/notification/removedconnection.h"
#include "service/v2/notification/removedgeneration.h"
#include "service/v2/notification/removedplan.h"
#include "service/v2/notification/removenbfdatastatus.h"
#include "service/v2/notification/removerestorepoint.h"
#include "service/v2/notification/startedplan.h"
#include "service/v2/notification/stoppedplan.h"
#include "service/v2/notification/synchronizerepositoryerror.h"
#include "service/v2/notification/synchronizerepositoryfinished.h"
#include "service/v2/notification/synchronizerepositorystarted.h"
#include "service/v2/notification/synchronizerepositorystatus.h"
#include "service/v2/notification/updateallconnection.h"
#include "service/v2/notification/updatebunch.h"
#include "service/v2/notification/updateconnection.h"
#include "service/v2/notification/updategeneration.h"
#include "service/v2/notification/updateplan.h"
#include "service/v2/notification/updaterestorepoint.h"
#include "testmain.h"

using namespace NVB::Common::Communication;
using namespace NVB::Common::Communication::V2::Notification;

using PayloadRoundTrip = std::function<QByteArray(const QByteArray&)>;
Q_DECLARE_METATYPE(PayloadRoundTrip)

namespace {

// Reads bytes into the payload and writes it back; empty when refused.
template<typename Payload> PayloadRoundTrip roundTrip()
{
    return [](const QByteArray& bytes) {
        const QSharedPointer<Payload> payload = Payload::from(bytes);
        if (!payload || payload->typeId() != Payload::TypeId)
            return QByteArray();
        return payload->toBytes();
    };
}

QJsonObject parse(const QByteArray& bytes)
{
    return QJsonDocument::fromJson(bytes).object();
}

// The rows write the ids of their sample messages as "$b" (bunch), "$c"
// (connection), "$g" (generation) and "$p" (plan).
QByteArray sample(const char* text)
{
    QByteArray bytes(text);
    bytes.replace("$b", "{e4ad3c3e-a2e6-5fe2-ac4d-673c121e3d24}");
    bytes.replace("$c", "{e5a88aa7-d689-5348-8f1b-2356ad548967}");
    bytes.replace("$g", "{bfb09da0-d297-531b-8dda-45f1044f82c4}");
    bytes.replace("$p", "{6d7d6fd6-623a-5f3a-b617-67c4bf83368c}");
    return bytes;
}

// The message with its first id written as a number, which a reader must
// refuse; empty for a message without ids.
QByteArray withNumberForId(const QByteArray& bytes)
{
    QJsonObject object = parse(bytes);
    for (auto it = object.begin(); it != object.end(); ++it) {
        if (it.value().isString() && it.value().toString().startsWith(QLatin1Char('{'))) {
            it.value() = 5;
            return QJsonDocument(object).toJson(QJsonDocument::Compact);
        }
    }
    return {};
}

// The reply with its first list given as an object or its first object as a
// list; empty for a reply without either.
QByteArray withWrongShape(const QByteArray& bytes)
{
    QJsonObject object = parse(bytes);
    for (auto it = object.begin(); it != object.end(); ++it) {
        if (it.value().isArray() || it.value().isObject()) {
            it.value() = it.value().isArray() ? QJsonValue(QJsonObject()) : QJsonValue(QJsonArray());
            return QJsonDocument(object).toJson(QJsonDocument::Compact);
        }
    }
    return {};
}

void commandRow(const QUuid& id, const char* name, const char* request, const char* response)
{
    const QByteArray requestBytes = sample(request);
    const QByteArray responseBytes = sample(response);
    QTest::newRow(name) << id << QString::fromLatin1(name) << requestBytes << withNumberForId(requestBytes)
                        << responseBytes << withWrongShape(responseBytes);
}

template<typename Payload> void payloadRow(const char* name, const char* text)
{
    const QByteArray bytes = sample(text);
    QTest::newRow(name) << roundTrip<Payload>() << bytes << withNumberForId(bytes);
}

} // namespace

// The wire forms of the whole catalogue, entry by entry.
class TestCatalogue : public QObject
{
    Q_OBJECT
private slots:
    void shouldRoundTripV2Commands_data();
    void shouldRoundTripV2Commands();
    void shouldRoundTripV2Payloads_data();
    void shouldRoundTripV2Payloads();
    void shouldKeepPayloadTypeIdsDistinct();
    void shouldRefuseFractionForCount();
};

void TestCatalogue::shouldRoundTripV2Commands_data()
{
    QTest::addColumn<QUuid>("commandId");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("request");
    QTest::addColumn<QByteArray>("badRequest");
    QTest::addColumn<QByteArray>("response");
    QTest::addColumn<QByteArray>("badResponse");
    commandRow(V2::GetConnection::CommandId, "GetConnection", R"({})", R"({"connections":[{"id":"x"}]})");
    commandRow(V2::GetConnectionById::CommandId, "GetConnectionById", R"({"connectionId":"$c"})",
        R"({"connectionInfo":{"id":"x","n":1}})");
    commandRow(
        V2::Plan::GetBackupPlanList::CommandId, "Plan::GetBackupPlanList", R"({})", R"({"planList":[{"id":"x"}]})");
    commandRow(V2::Plan::GetPlan::CommandId, "Plan::GetPlan", R"({"planId":"$p"})", R"({"plan":{"id":"x","n":1}})");
    commandRow(V2::Plan::GetPlanList::CommandId, "Plan::GetPlanList", R"({})", R"({"planList":[{"id":"x"}]})");
    commandRow(
        V2::Plan::GetRestorePlanList::CommandId, "Plan::GetRestorePlanList", R"({})", R"({"planList":[{"id":"x"}]})");
    commandRow(V2::Repository::GetBunch::CommandId, "Repository::GetBunch", R"({"bunchId":"$b","connectionId":"$c"})",
        R"({"bunch":{"id":"x","n":1}})");
    commandRow(V2::Repository::GetBunchList::CommandId, "Repository::GetBunchList", R"({"connectionId":"$c"})",
        R"({"bunchList":[{"id":"x"}]})");
    commandRow(V2::Repository::GetBunchRestorePointList::CommandId, "Repository::GetBunchRestorePointList",
        R"({"bunchId":"$b","connectionId":"$c"})", R"({"restorePointList":[{"id":"x"}]})");
    commandRow(V2::Repository::GetContent::CommandId, "Repository::GetContent",
        R"({"bunchId":"$b","connectionId":"$c","generationId":"$g","limit":10,"offset":11,"path":"text path","restorPoint":"2024-05-06T07:08:09.123Z"})",
        R"({"objects":[{"id":"x"}],"offset":8})");
    commandRow(V2::Repository::GetGeneration::CommandId, "Repository::GetGeneration",
        R"({"bunchId":"$b","connectionId":"$c","generationId":"$g"})", R"({"generation":{"id":"x","n":1}})");
    commandRow(V2::Repository::GetGenerationList::CommandId, "Repository::GetGenerationList",
        R"({"bunchId":"$b","connectionId":"$c"})", R"({"generationList":[{"id":"x"}]})");
    commandRow(V2::Repository::GetRestorePoint::CommandId, "Repository::GetRestorePoint",
        R"({"bunchId":"$b","connectionId":"$c","generationId":"$g","sequenceNumber":10})",
        R"({"restorePoint":{"id":"x","n":1}})");
    commandRow(V2::Repository::GetRestorePointList::CommandId, "Repository::GetRestorePointList",
        R"({"bunchId":"$b","connectionId":"$c","generationId":"$g"})", R"({"restorePointList":[{"id":"x"}]})");
    commandRow(V2::Repository::RemoveDataBunch::CommandId, "Repository::RemoveDataBunch",
        R"({"bunchId":"$b","connectionId":"$c"})", R"({})");
    commandRow(V2::Repository::RemoveDataGeneration::CommandId, "Repository::RemoveDataGeneration",
        R"({"bunchId":"$b","connectionId":"$c","generationId":"$g"})", R"({})");
    commandRow(V2::Repository::StartDeepSync::CommandId, "Repository::StartDeepSync",
        R"({"bunchId":"$b","connectionId":"$c","generationId":"$g","password":"text password"})", R"({})");
}

void TestCatalogue::shouldRoundTripV2Commands()
{
    QFETCH(QUuid, commandId);
    QFETCH(QString, name);
    QFETCH(QByteArray, request);
    QFETCH(QByteArray, badRequest);
    QFETCH(QByteArray, response);
    QFETCH(QByteArray, badResponse);
    const V2::CommandCatalogue& catalogue = V2::CommandCatalogue::instance();
    QVERIFY(catalogue.contains(commandId));
    QCOMPARE(catalogue.name(commandId), name);

    auto typedRequest = catalogue.createRequest(commandId);
    QVERIFY(typedRequest);
    QCOMPARE(typedRequest->toJson().keys(), parse(request).keys());
    QVERIFY(typedRequest->fromJson(parse(request)));
    QCOMPARE(typedRequest->toJson(), parse(request));
    QVERIFY(catalogue.createRequest(commandId)->fromJson(QJsonObject()));
    if (!badRequest.isEmpty())
        QVERIFY(!catalogue.createRequest(commandId)->fromJson(parse(badRequest)));

    auto typedResponse = catalogue.createResponse(commandId);
    QVERIFY(typedResponse);
    QVERIFY(typedResponse->fromJson(parse(response)));
    QCOMPARE(typedResponse->toJson(), parse(response));
    QVERIFY(catalogue.createResponse(commandId)->fromJson(QJsonObject()));
    if (!badResponse.isEmpty())
        QVERIFY(!catalogue.createResponse(commandId)->fromJson(parse(badResponse)));

    V2::Command* command = Manager::instance()->commandFactoryV2(commandId);
    QVERIFY(command);
    QCOMPARE(command->commandId(), commandId);
    delete command;
}

void TestCatalogue::shouldRoundTripV2Payloads_data()
{
    QTest::addColumn<PayloadRoundTrip>("roundTrip");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("badBytes");
    payloadRow<AddedNewBunch>("AddedNewBunch", R"({"bunchId":"$b","connectionId":"$c"})");
    payloadRow<AddedNewConnection>("AddedNewConnection", R"({"connectionId":"$c"})");
    payloadRow<AddedNewGeneration>("AddedNewGeneration", R"({"bunchId":"$b","connectionId":"$c","generationId":"$g"})");
    payloadRow<AddedNewPlan>("AddedNewPlan", R"({"planId":"$p","subType":8})");
    payloadRow<AddedNewRestorePoint>(
        "AddedNewRestorePoint", R"({"bunchId":"$b","connectionId":"$c","generationId":"$g","sequenceNumber":10})");
    payloadRow<DeepSyncError>(
        "DeepSyncError", R"({"bunchId":"$b","connectionId":"$c","generationId":"$g","message":"text message"})");
    payloadRow<DeepSyncFinished>("DeepSyncFinished", R"({"bunchId":"$b","connectionId":"$c","generationId":"$g"})");
    payloadRow<DeepSyncStarted>("DeepSyncStarted", R"({"bunchId":"$b","connectionId":"$c","generationId":"$g"})");
    payloadRow<DeepSyncStatus>(
        "DeepSyncStatus", R"({"bunchId":"$b","connectionId":"$c","generationId":"$g","message":"text message"})");
    payloadRow<PlanProgress>("PlanProgress",
        R"({"planId":"$p","progressData":{"workerMode":"Backup","progress":40,"elapsedMs":1000,"speed":10,"dataSize":100,"bytesSent":50,"totalFileCount":4,"uploadedFileCount":3,"failedFileCount":1},"progressItemList":[{"name":"Upload","value":"3 of 4","percent":75}],"subType":10})");
    payloadRow<RemoveNbfDataStatus>("RemoveNbfDataStatus",
        R"({"bunchId":"$b","connectionId":"$c","generationId":"$g","message":"text message","status":11})");
    payloadRow<RemoveRestorePoint>(
        "RemoveRestorePoint", R"({"bunchId":"$b","connectionId":"$c","generationId":"$g","sequenceNumber":10})");
    payloadRow<RemovedBunch>("RemovedBunch", R"({"bunchId":"$b","connectionId":"$c"})");
    payloadRow<RemovedConnection>("RemovedConnection", R"({"connectionId":"$c"})");
    payloadRow<RemovedGeneration>("RemovedGeneration", R"({"bunchId":"$b","connectionId":"$c","generationId":"$g"})");
    payloadRow<RemovedPlan>("RemovedPlan", R"({"planId":"$p"})");
    payloadRow<StartedPlan>("StartedPlan", R"({"planId":"$p"})");
    payloadRow<StoppedPlan>("StoppedPlan", R"({"planId":"$p"})");
    payloadRow<SynchronizeRepositoryError>(
        "SynchronizeRepositoryError", R"({"connectionId":"$c","errorList":["a","b"],"message":"text message"})");
    payloadRow<SynchronizeRepositoryFinished>("SynchronizeRepositoryFinished", R"({"connectionId":"$c"})");
    payloadRow<SynchronizeRepositoryStarted>("SynchronizeRepositoryStarted", R"({"connectionId":"$c"})");
    payloadRow<SynchronizeRepositoryStatus>(
        "SynchronizeRepositoryStatus", R"({"connectionId":"$c","message":"text message"})");
    payloadRow<UpdateAllConnection>("UpdateAllConnection", R"({})");
    payloadRow<UpdateBunch>("UpdateBunch", R"({"bunchId":"$b","connectionId":"$c"})");
    payloadRow<UpdateConnection>("UpdateConnection", R"({"connectionId":"$c"})");
    payloadRow<UpdateGeneration>("UpdateGeneration", R"({"bunchId":"$b","connectionId":"$c","generationId":"$g"})");
    payloadRow<UpdatePlan>("UpdatePlan", R"({"planId":"$p"})");
    payloadRow<UpdateRestorePoint>(
        "UpdateRestorePoint", R"({"bunchId":"$b","connectionId":"$c","generationId":"$g","sequenceNumber":10})");
}

void TestCatalogue::shouldRoundTripV2Payloads()
{
    QFETCH(PayloadRoundTrip, roundTrip);
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, badBytes);
    QCOMPARE(parse(roundTrip(bytes)), parse(bytes));
    // Missing keys read as empty values, not as a failure.
    QVERIFY(!roundTrip(QByteArrayLiteral("{}")).isEmpty());
    QVERIFY(roundTrip(QByteArrayLiteral("not json")).isEmpty());
    QVERIFY(roundTrip(QByteArrayLiteral("[]")).isEmpty());
    if (!badBytes.isEmpty())
        QVERIFY(roundTrip(badBytes).isEmpty());
}

void TestCatalogue::shouldKeepPayloadTypeIdsDistinct()
{
    QSet<QUuid> ids;
    const QList<QUuid> all {AddedNewBunch::TypeId, AddedNewConnection::TypeId, AddedNewGeneration::TypeId,
        AddedNewPlan::TypeId, AddedNewRestorePoint::TypeId, DeepSyncError::TypeId, DeepSyncFinished::TypeId,
        DeepSyncStarted::TypeId, DeepSyncStatus::TypeId, PlanProgress::TypeId, RemoveNbfDataStatus::TypeId,
        RemoveRestorePoint::TypeId, RemovedBunch::TypeId, RemovedConnection::TypeId, RemovedGeneration::TypeId,
        RemovedPlan::TypeId, StartedPlan::TypeId, StoppedPlan::TypeId, SynchronizeRepositoryError::TypeId,
        SynchronizeRepositoryFinished::TypeId, SynchronizeRepositoryStarted::TypeId,
        SynchronizeRepositoryStatus::TypeId, UpdateAllConnection::TypeId, UpdateBunch::TypeId, UpdateConnection::TypeId,
        UpdateGeneration::TypeId, UpdatePlan::TypeId, UpdateRestorePoint::TypeId};
    for (const QUuid& id : all)
        ids.insert(id);
    QCOMPARE(ids.size(), 28);
    for (const QUuid& id : all)
        QVERIFY(!Notification::ParserFactory::instance().isKnownType(id));
}

void TestCatalogue::shouldRefuseFractionForCount()
{
    QVERIFY(UpdateRestorePoint::from(QByteArrayLiteral(R"({"sequenceNumber":1})")));
    QVERIFY(!UpdateRestorePoint::from(QByteArrayLiteral(R"({"sequenceNumber":1.5})")));
}

NVB_TEST_GUILESS_MAIN(TestCatalogue)
#include "tst_catalogue.moc"
