#include <functional>

#include <QJsonDocument>
#include <QSet>

#include "service/commands/catalogue.h"
#include "service/commands/content.h"
#include "service/commands/header.h"
#include "service/commands/history.h"
#include "service/commands/license.h"
#include "service/commands/plan.h"
#include "service/commands/proxyjsonvalues.h"
#include "service/commands/snapshot.h"
#include "service/commands/storage.h"
#include "service/commands/system.h"
#include "service/icommand.h"
#include "service/manager.h"
#include "service/notification/format.h"
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

#include "catalogue_rows.inc"

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

} // namespace

// The wire forms of the whole catalogue, entry by entry.
class TestCatalogue : public QObject
{
    Q_OBJECT
private slots:
    void shouldKeepCommandKeys_data();
    void shouldKeepCommandKeys();
    void shouldRegisterEveryV1Command();
    void shouldKeepNotificationTypes_data();
    void shouldKeepNotificationTypes();
    void shouldKeepNotificationKeys_data();
    void shouldKeepNotificationKeys();
    void shouldKeepEnvelopeAndProxyKeys();
    void shouldRoundTripV2Commands_data();
    void shouldRoundTripV2Commands();
    void shouldShareRequestOfPlanLists();
    void shouldWriteContentRequestByItsSetters();
    void shouldRoundTripV2Payloads_data();
    void shouldRoundTripV2Payloads();
    void shouldKeepPayloadTypeIdsDistinct();
    void shouldLetUpdateRestorePointBeBuiltByHand();
};

void TestCatalogue::shouldKeepCommandKeys_data()
{
    QTest::addColumn<QString>("constant");
    QTest::addColumn<QString>("literal");
    addCommandKeyRows();
}

void TestCatalogue::shouldKeepCommandKeys()
{
    QFETCH(QString, constant);
    QFETCH(QString, literal);
    QCOMPARE(constant, literal);
}

void TestCatalogue::shouldRegisterEveryV1Command()
{
    const QStringList names = commandNames();
    QCOMPARE(Commands::Catalogue::names().size(), names.size());
    for (const QString& name : names) {
        QVERIFY2(Commands::Catalogue::contains(name), qPrintable(name));
    }
    QVERIFY(!Commands::Catalogue::contains(QStringLiteral("planexecutestart")));
}

void TestCatalogue::shouldKeepNotificationTypes_data()
{
    QTest::addColumn<QUuid>("constant");
    QTest::addColumn<QString>("literal");
    addNotificationTypeRows();
}

void TestCatalogue::shouldKeepNotificationTypes()
{
    QFETCH(QUuid, constant);
    QFETCH(QString, literal);
    QCOMPARE(constant, QUuid(literal));
    QVERIFY(Notification::ParserFactory::instance().isKnownType(constant));
    QVERIFY(Notification::Format::allTypes().contains(constant));
}

void TestCatalogue::shouldKeepNotificationKeys_data()
{
    QTest::addColumn<QString>("constant");
    QTest::addColumn<QString>("literal");
    addNotificationKeyRows();
}

void TestCatalogue::shouldKeepNotificationKeys()
{
    QFETCH(QString, constant);
    QFETCH(QString, literal);
    QCOMPARE(constant, literal);
}

void TestCatalogue::shouldKeepEnvelopeAndProxyKeys()
{
    namespace H = Commands::Format::Header;
    QCOMPARE(QString::fromLatin1(H::Command), QStringLiteral("command"));
    QCOMPARE(QString::fromLatin1(H::Id), QStringLiteral("id"));
    QCOMPARE(QString::fromLatin1(H::SessionId), QStringLiteral("session_id"));
    QCOMPARE(QString::fromLatin1(H::ConnectionType::key), QStringLiteral("connection_type"));
    QCOMPARE(H::ConnectionType::User, 2);
    QCOMPARE(H::ConnectionType::Service, 1);
    QCOMPARE(QString::fromLatin1(H::AgentType), QStringLiteral("agent_type"));
    QCOMPARE(QString::fromLatin1(H::Type::Key), QStringLiteral("type"));
    QCOMPARE(QString::fromLatin1(H::Type::Request), QStringLiteral("request"));
    QCOMPARE(QString::fromLatin1(H::Type::Reply), QStringLiteral("reply"));
    QCOMPARE(QString::fromLatin1(H::Params), QStringLiteral("params"));
    QCOMPARE(QString::fromLatin1(H::Data), QStringLiteral("data"));
    QCOMPARE(QString::fromLatin1(H::Status::Key), QStringLiteral("status"));
    QCOMPARE(QString::fromLatin1(H::Status::Value::Success), QStringLiteral("success"));
    QCOMPARE(QString::fromLatin1(H::Status::Value::Error), QStringLiteral("error"));
    QCOMPARE(QString::fromLatin1(H::Status::ErrorString), QStringLiteral("error_string"));
    namespace N = Notification::Format::Header;
    QCOMPARE(QString::fromLatin1(N::Id), QStringLiteral("id"));
    QCOMPARE(QString::fromLatin1(N::SenderId), QStringLiteral("sender_id"));
    QCOMPARE(QString::fromLatin1(N::Receiver), QStringLiteral("receiver"));
    QCOMPARE(QString::fromLatin1(N::Type), QStringLiteral("type"));
    QCOMPARE(QString::fromLatin1(N::Message), QStringLiteral("Message"));
    namespace P = NVB::Proxy::JsonValues;
    QCOMPARE(QString::fromLatin1(P::ProxyAddress), QStringLiteral("Address"));
    QCOMPARE(QString::fromLatin1(P::ProxyPort), QStringLiteral("Port"));
    QCOMPARE(QString::fromLatin1(P::ProxyType), QStringLiteral("Type"));
    QCOMPARE(QString::fromLatin1(P::ProxyUseAuth), QStringLiteral("UseAuth"));
    QCOMPARE(QString::fromLatin1(P::ProxyUser), QStringLiteral("User"));
    QCOMPARE(QString::fromLatin1(P::ProxyPassword), QStringLiteral("Password"));
    QCOMPARE(QString::fromLatin1(P::ProxyIsPasswordEncrypted), QStringLiteral("IsPasswordEncrypted"));
}

void TestCatalogue::shouldRoundTripV2Commands_data()
{
    QTest::addColumn<QUuid>("commandId");
    QTest::addColumn<QString>("literal");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("request");
    QTest::addColumn<QByteArray>("badRequest");
    QTest::addColumn<QByteArray>("response");
    QTest::addColumn<QByteArray>("badResponse");
    QTest::newRow("GetConnection") << QUuid(V2::GetConnection::CommandId)
                                   << QStringLiteral("{184E5047-7039-4684-BD6A-137970A5700F}")
                                   << QStringLiteral("GetConnection") << QByteArray(R"({})") << QByteArray()
                                   << QByteArray(R"({"connections":[{"id":"x"}]})")
                                   << QByteArray(R"({"connections":{}})");
    QTest::newRow("GetConnectionById") << QUuid(V2::GetConnectionById::CommandId)
                                       << QStringLiteral("{DC0B508A-2837-4D08-A2E5-D684B5417680}")
                                       << QStringLiteral("GetConnectionById")
                                       << QByteArray(R"({"connectionId":"{c49ff20f-a476-5438-a494-1f231aaa0cec}"})")
                                       << QByteArray(R"({"connectionId":5})")
                                       << QByteArray(R"({"connectionInfo":{"id":"x","n":1}})")
                                       << QByteArray(R"({"connectionInfo":[]})");
    QTest::newRow("Plan::GetBackupPlanList")
        << QUuid(V2::Plan::GetBackupPlanList::CommandId) << QStringLiteral("{3D9D0F5B-B6B4-4E7F-A4A2-7F2AE1718209}")
        << QStringLiteral("Plan::GetBackupPlanList") << QByteArray(R"({})") << QByteArray()
        << QByteArray(R"({"planList":[{"id":"x"}]})") << QByteArray(R"({"planList":{}})");
    QTest::newRow("Plan::GetPlan") << QUuid(V2::Plan::GetPlan::CommandId)
                                   << QStringLiteral("{5858DE33-EC0E-4CF1-9C31-B53F76178606}")
                                   << QStringLiteral("Plan::GetPlan")
                                   << QByteArray(R"({"planId":"{6d7d6fd6-623a-5f3a-b617-67c4bf83368c}"})")
                                   << QByteArray(R"({"planId":5})") << QByteArray(R"({"plan":{"id":"x","n":1}})")
                                   << QByteArray(R"({"plan":[]})");
    QTest::newRow("Plan::GetPlanList") << QUuid(V2::Plan::GetPlanList::CommandId)
                                       << QStringLiteral("{87848DEF-BE2F-4494-8EC6-939687DF9F97}")
                                       << QStringLiteral("Plan::GetPlanList") << QByteArray(R"({})") << QByteArray()
                                       << QByteArray(R"({"planList":[{"id":"x"}]})")
                                       << QByteArray(R"({"planList":{}})");
    QTest::newRow("Plan::GetRestorePlanList")
        << QUuid(V2::Plan::GetRestorePlanList::CommandId) << QStringLiteral("{EE378B33-BEB1-4044-B8AF-49A1E7EA839C}")
        << QStringLiteral("Plan::GetRestorePlanList") << QByteArray(R"({})") << QByteArray()
        << QByteArray(R"({"planList":[{"id":"x"}]})") << QByteArray(R"({"planList":{}})");
    QTest::newRow("Repository::GetBunch")
        << QUuid(V2::Repository::GetBunch::CommandId) << QStringLiteral("{109DC706-A63D-493B-9EEA-B9AC5698021E}")
        << QStringLiteral("Repository::GetBunch")
        << QByteArray(
               R"({"bunchId":"{e4ad3c3e-a2e6-5fe2-ac4d-673c121e3d24}","connectionId":"{e5a88aa7-d689-5348-8f1b-2356ad548967}"})")
        << QByteArray(R"({"bunchId":5,"connectionId":"{e5a88aa7-d689-5348-8f1b-2356ad548967}"})")
        << QByteArray(R"({"bunch":{"id":"x","n":1}})") << QByteArray(R"({"bunch":[]})");
    QTest::newRow("Repository::GetBunchList")
        << QUuid(V2::Repository::GetBunchList::CommandId) << QStringLiteral("{33DF6975-2C49-431B-98D0-0ED4F117090A}")
        << QStringLiteral("Repository::GetBunchList")
        << QByteArray(R"({"connectionId":"{c49ff20f-a476-5438-a494-1f231aaa0cec}"})")
        << QByteArray(R"({"connectionId":5})") << QByteArray(R"({"bunchList":[{"id":"x"}]})")
        << QByteArray(R"({"bunchList":{}})");
    QTest::newRow("Repository::GetBunchRestorePointList")
        << QUuid(V2::Repository::GetBunchRestorePointList::CommandId)
        << QStringLiteral("{92AD6C2A-EC6D-491C-8440-8BA1C5BDB210}")
        << QStringLiteral("Repository::GetBunchRestorePointList")
        << QByteArray(
               R"({"bunchId":"{e4ad3c3e-a2e6-5fe2-ac4d-673c121e3d24}","connectionId":"{e5a88aa7-d689-5348-8f1b-2356ad548967}"})")
        << QByteArray(R"({"bunchId":5,"connectionId":"{e5a88aa7-d689-5348-8f1b-2356ad548967}"})")
        << QByteArray(R"({"restorePointList":[{"id":"x"}]})") << QByteArray(R"({"restorePointList":{}})");
    QTest::newRow("Repository::GetContent")
        << QUuid(V2::Repository::GetContent::CommandId) << QStringLiteral("{FC29F0FA-6652-4BB8-AA28-EB4FD99806AE}")
        << QStringLiteral("Repository::GetContent")
        << QByteArray(
               R"({"bunchId":"{e4ad3c3e-a2e6-5fe2-ac4d-673c121e3d24}","connectionId":"{e5a88aa7-d689-5348-8f1b-2356ad548967}","generationId":"{bfb09da0-d297-531b-8dda-45f1044f82c4}","limit":10,"offset":11,"path":"text path","restorPoint":"2024-05-06T07:08:09.123Z"})")
        << QByteArray(
               R"({"bunchId":5,"connectionId":"{e5a88aa7-d689-5348-8f1b-2356ad548967}","generationId":"{bfb09da0-d297-531b-8dda-45f1044f82c4}","limit":10,"offset":11,"path":"text path","restorPoint":"2024-05-06T07:08:09.123Z"})")
        << QByteArray(R"({"objects":[{"id":"x"}],"offset":8})") << QByteArray(R"({"objects":{},"offset":8})");
    QTest::newRow("Repository::GetGeneration")
        << QUuid(V2::Repository::GetGeneration::CommandId) << QStringLiteral("{131AC877-559F-460A-8685-4E9EE0ACB70C}")
        << QStringLiteral("Repository::GetGeneration")
        << QByteArray(
               R"({"bunchId":"{e4ad3c3e-a2e6-5fe2-ac4d-673c121e3d24}","connectionId":"{e5a88aa7-d689-5348-8f1b-2356ad548967}","generationId":"{bfb09da0-d297-531b-8dda-45f1044f82c4}"})")
        << QByteArray(
               R"({"bunchId":5,"connectionId":"{e5a88aa7-d689-5348-8f1b-2356ad548967}","generationId":"{bfb09da0-d297-531b-8dda-45f1044f82c4}"})")
        << QByteArray(R"({"generation":{"id":"x","n":1}})") << QByteArray(R"({"generation":[]})");
    QTest::newRow("Repository::GetGenerationList")
        << QUuid(V2::Repository::GetGenerationList::CommandId)
        << QStringLiteral("{2F5C678D-9F4A-4783-BCD6-112497F4DC9B}") << QStringLiteral("Repository::GetGenerationList")
        << QByteArray(
               R"({"bunchId":"{e4ad3c3e-a2e6-5fe2-ac4d-673c121e3d24}","connectionId":"{e5a88aa7-d689-5348-8f1b-2356ad548967}"})")
        << QByteArray(R"({"bunchId":5,"connectionId":"{e5a88aa7-d689-5348-8f1b-2356ad548967}"})")
        << QByteArray(R"({"generationList":[{"id":"x"}]})") << QByteArray(R"({"generationList":{}})");
    QTest::newRow("Repository::GetRestorePoint")
        << QUuid(V2::Repository::GetRestorePoint::CommandId) << QStringLiteral("{FF171608-B82B-43E2-A6A0-2386F76626F2}")
        << QStringLiteral("Repository::GetRestorePoint")
        << QByteArray(
               R"({"bunchId":"{e4ad3c3e-a2e6-5fe2-ac4d-673c121e3d24}","connectionId":"{e5a88aa7-d689-5348-8f1b-2356ad548967}","generationId":"{bfb09da0-d297-531b-8dda-45f1044f82c4}","sequenceNumber":10})")
        << QByteArray(
               R"({"bunchId":5,"connectionId":"{e5a88aa7-d689-5348-8f1b-2356ad548967}","generationId":"{bfb09da0-d297-531b-8dda-45f1044f82c4}","sequenceNumber":10})")
        << QByteArray(R"({"restorePoint":{"id":"x","n":1}})") << QByteArray(R"({"restorePoint":[]})");
    QTest::newRow("Repository::GetRestorePointList")
        << QUuid(V2::Repository::GetRestorePointList::CommandId)
        << QStringLiteral("{3F305E04-4CAD-41C8-934B-7A74DF47E6B8}") << QStringLiteral("Repository::GetRestorePointList")
        << QByteArray(
               R"({"bunchId":"{e4ad3c3e-a2e6-5fe2-ac4d-673c121e3d24}","connectionId":"{e5a88aa7-d689-5348-8f1b-2356ad548967}","generationId":"{bfb09da0-d297-531b-8dda-45f1044f82c4}"})")
        << QByteArray(
               R"({"bunchId":5,"connectionId":"{e5a88aa7-d689-5348-8f1b-2356ad548967}","generationId":"{bfb09da0-d297-531b-8dda-45f1044f82c4}"})")
        << QByteArray(R"({"restorePointList":[{"id":"x"}]})") << QByteArray(R"({"restorePointList":{}})");
    QTest::newRow("Repository::RemoveDataBunch")
        << QUuid(V2::Repository::RemoveDataBunch::CommandId) << QStringLiteral("{06CF4A0A-5762-402F-A3D9-0B968F5B8F41}")
        << QStringLiteral("Repository::RemoveDataBunch")
        << QByteArray(
               R"({"bunchId":"{e4ad3c3e-a2e6-5fe2-ac4d-673c121e3d24}","connectionId":"{e5a88aa7-d689-5348-8f1b-2356ad548967}"})")
        << QByteArray(R"({"bunchId":5,"connectionId":"{e5a88aa7-d689-5348-8f1b-2356ad548967}"})") << QByteArray(R"({})")
        << QByteArray();
    QTest::newRow("Repository::RemoveDataGeneration")
        << QUuid(V2::Repository::RemoveDataGeneration::CommandId)
        << QStringLiteral("{52C2E279-DA63-4829-971F-218D21195F6D}")
        << QStringLiteral("Repository::RemoveDataGeneration")
        << QByteArray(
               R"({"bunchId":"{e4ad3c3e-a2e6-5fe2-ac4d-673c121e3d24}","connectionId":"{e5a88aa7-d689-5348-8f1b-2356ad548967}","generationId":"{bfb09da0-d297-531b-8dda-45f1044f82c4}"})")
        << QByteArray(
               R"({"bunchId":5,"connectionId":"{e5a88aa7-d689-5348-8f1b-2356ad548967}","generationId":"{bfb09da0-d297-531b-8dda-45f1044f82c4}"})")
        << QByteArray(R"({})") << QByteArray();
    QTest::newRow("Repository::StartDeepSync")
        << QUuid(V2::Repository::StartDeepSync::CommandId) << QStringLiteral("{AFEC96B7-4B76-456F-8B5D-251200D23F8C}")
        << QStringLiteral("Repository::StartDeepSync")
        << QByteArray(
               R"({"bunchId":"{e4ad3c3e-a2e6-5fe2-ac4d-673c121e3d24}","connectionId":"{e5a88aa7-d689-5348-8f1b-2356ad548967}","generationId":"{bfb09da0-d297-531b-8dda-45f1044f82c4}","password":"text password"})")
        << QByteArray(
               R"({"bunchId":5,"connectionId":"{e5a88aa7-d689-5348-8f1b-2356ad548967}","generationId":"{bfb09da0-d297-531b-8dda-45f1044f82c4}","password":"text password"})")
        << QByteArray(R"({})") << QByteArray();
}

void TestCatalogue::shouldRoundTripV2Commands()
{
    QFETCH(QUuid, commandId);
    QFETCH(QString, literal);
    QFETCH(QString, name);
    QFETCH(QByteArray, request);
    QFETCH(QByteArray, badRequest);
    QFETCH(QByteArray, response);
    QFETCH(QByteArray, badResponse);
    QCOMPARE(commandId, QUuid(literal));
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

void TestCatalogue::shouldShareRequestOfPlanLists()
{
    using namespace V2::Plan;
    QVERIFY(GetBackupPlanList::CommandId != GetRestorePlanList::CommandId);
    QVERIFY(GetBackupPlanList::CommandId != GetPlanList::CommandId);
    const auto response = V2::CommandCatalogue::instance().createResponse(GetRestorePlanList::CommandId);
    QVERIFY(qSharedPointerDynamicCast<GetPlanList::Response>(response));
}

void TestCatalogue::shouldWriteContentRequestByItsSetters()
{
    V2::Repository::GetContent::Request request;
    const QUuid connection = QUuid::createUuid();
    request.setConnectionId(connection);
    request.setLimit(100);
    request.setOffset(200);
    request.setPath(QStringLiteral("/home/a b"));
    request.setRestorPoint(QDateTime(QDate(2024, 1, 2), QTime(3, 4, 5, 6), Qt::UTC));
    const QJsonObject json = request.toJson();
    QCOMPARE(json.value(QStringLiteral("connectionId")).toString(), connection.toString());
    QCOMPARE(json.value(QStringLiteral("limit")).toInt(), 100);
    QCOMPARE(json.value(QStringLiteral("offset")).toInt(), 200);
    QCOMPARE(json.value(QStringLiteral("path")).toString(), QStringLiteral("/home/a b"));
    QCOMPARE(json.value(QStringLiteral("restorPoint")).toString(), QStringLiteral("2024-01-02T03:04:05.006Z"));
    QCOMPARE(json.value(QStringLiteral("bunchId")).toString(), QUuid().toString());
    V2::Repository::GetContent::Request back;
    QVERIFY(back.fromJson(json));
    QCOMPARE(back.restorPoint(), request.restorPoint());
    QCOMPARE(back.connectionId(), connection);
}

void TestCatalogue::shouldRoundTripV2Payloads_data()
{
    QTest::addColumn<QUuid>("typeId");
    QTest::addColumn<QString>("literal");
    QTest::addColumn<PayloadRoundTrip>("roundTrip");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("badBytes");
    QTest::newRow("AddedNewBunch")
        << QUuid(AddedNewBunch::TypeId) << QStringLiteral("{C5B10568-6903-5BB9-9B33-DDFF7F1DB568}")
        << roundTrip<AddedNewBunch>()
        << QByteArray(
               R"({"bunchId":"{e4ad3c3e-a2e6-5fe2-ac4d-673c121e3d24}","connectionId":"{e5a88aa7-d689-5348-8f1b-2356ad548967}"})")
        << QByteArray(R"({"bunchId":5,"connectionId":"{e5a88aa7-d689-5348-8f1b-2356ad548967}"})");
    QTest::newRow("AddedNewConnection") << QUuid(AddedNewConnection::TypeId)
                                        << QStringLiteral("{5A84813D-63FC-5617-9209-D380368272F5}")
                                        << roundTrip<AddedNewConnection>()
                                        << QByteArray(R"({"connectionId":"{c49ff20f-a476-5438-a494-1f231aaa0cec}"})")
                                        << QByteArray(R"({"connectionId":5})");
    QTest::newRow("AddedNewGeneration")
        << QUuid(AddedNewGeneration::TypeId) << QStringLiteral("{4DD5C16F-0925-5DFF-B929-BA945B27A919}")
        << roundTrip<AddedNewGeneration>()
        << QByteArray(
               R"({"bunchId":"{e4ad3c3e-a2e6-5fe2-ac4d-673c121e3d24}","connectionId":"{e5a88aa7-d689-5348-8f1b-2356ad548967}","generationId":"{bfb09da0-d297-531b-8dda-45f1044f82c4}"})")
        << QByteArray(
               R"({"bunchId":5,"connectionId":"{e5a88aa7-d689-5348-8f1b-2356ad548967}","generationId":"{bfb09da0-d297-531b-8dda-45f1044f82c4}"})");
    QTest::newRow("AddedNewPlan") << QUuid(AddedNewPlan::TypeId)
                                  << QStringLiteral("{9865386C-88B8-5DB3-9491-AC3190ADF350}")
                                  << roundTrip<AddedNewPlan>()
                                  << QByteArray(R"({"planId":"{6d7d6fd6-623a-5f3a-b617-67c4bf83368c}","subType":8})")
                                  << QByteArray(R"({"planId":5,"subType":8})");
    QTest::newRow("AddedNewRestorePoint")
        << QUuid(AddedNewRestorePoint::TypeId) << QStringLiteral("{D52BD32A-79E4-5F67-B326-741CC4FC1DB6}")
        << roundTrip<AddedNewRestorePoint>()
        << QByteArray(
               R"({"bunchId":"{e4ad3c3e-a2e6-5fe2-ac4d-673c121e3d24}","connectionId":"{e5a88aa7-d689-5348-8f1b-2356ad548967}","generationId":"{bfb09da0-d297-531b-8dda-45f1044f82c4}","sequenceNumber":10})")
        << QByteArray(
               R"({"bunchId":5,"connectionId":"{e5a88aa7-d689-5348-8f1b-2356ad548967}","generationId":"{bfb09da0-d297-531b-8dda-45f1044f82c4}","sequenceNumber":10})");
    QTest::newRow("DeepSyncError")
        << QUuid(DeepSyncError::TypeId) << QStringLiteral("{EE427DC3-400A-5BF8-A6D7-EE637920719F}")
        << roundTrip<DeepSyncError>()
        << QByteArray(
               R"({"bunchId":"{e4ad3c3e-a2e6-5fe2-ac4d-673c121e3d24}","connectionId":"{e5a88aa7-d689-5348-8f1b-2356ad548967}","generationId":"{bfb09da0-d297-531b-8dda-45f1044f82c4}","message":"text message"})")
        << QByteArray(
               R"({"bunchId":5,"connectionId":"{e5a88aa7-d689-5348-8f1b-2356ad548967}","generationId":"{bfb09da0-d297-531b-8dda-45f1044f82c4}","message":"text message"})");
    QTest::newRow("DeepSyncFinished")
        << QUuid(DeepSyncFinished::TypeId) << QStringLiteral("{BC02C05A-5E99-5847-A88C-40D6C2BD6907}")
        << roundTrip<DeepSyncFinished>()
        << QByteArray(
               R"({"bunchId":"{e4ad3c3e-a2e6-5fe2-ac4d-673c121e3d24}","connectionId":"{e5a88aa7-d689-5348-8f1b-2356ad548967}","generationId":"{bfb09da0-d297-531b-8dda-45f1044f82c4}"})")
        << QByteArray(
               R"({"bunchId":5,"connectionId":"{e5a88aa7-d689-5348-8f1b-2356ad548967}","generationId":"{bfb09da0-d297-531b-8dda-45f1044f82c4}"})");
    QTest::newRow("DeepSyncStarted")
        << QUuid(DeepSyncStarted::TypeId) << QStringLiteral("{F2FAFE43-26BB-51A3-8C5E-29B556DB710F}")
        << roundTrip<DeepSyncStarted>()
        << QByteArray(
               R"({"bunchId":"{e4ad3c3e-a2e6-5fe2-ac4d-673c121e3d24}","connectionId":"{e5a88aa7-d689-5348-8f1b-2356ad548967}","generationId":"{bfb09da0-d297-531b-8dda-45f1044f82c4}"})")
        << QByteArray(
               R"({"bunchId":5,"connectionId":"{e5a88aa7-d689-5348-8f1b-2356ad548967}","generationId":"{bfb09da0-d297-531b-8dda-45f1044f82c4}"})");
    QTest::newRow("DeepSyncStatus")
        << QUuid(DeepSyncStatus::TypeId) << QStringLiteral("{486F11B7-CFD0-531E-AD3F-DF6583EB41B6}")
        << roundTrip<DeepSyncStatus>()
        << QByteArray(
               R"({"bunchId":"{e4ad3c3e-a2e6-5fe2-ac4d-673c121e3d24}","connectionId":"{e5a88aa7-d689-5348-8f1b-2356ad548967}","generationId":"{bfb09da0-d297-531b-8dda-45f1044f82c4}","message":"text message"})")
        << QByteArray(
               R"({"bunchId":5,"connectionId":"{e5a88aa7-d689-5348-8f1b-2356ad548967}","generationId":"{bfb09da0-d297-531b-8dda-45f1044f82c4}","message":"text message"})");
    QTest::newRow("PlanProgress")
        << QUuid(PlanProgress::TypeId) << QStringLiteral("{91C186A4-ADA6-53AF-859D-DA002D6A840B}")
        << roundTrip<PlanProgress>()
        << QByteArray(
               R"({"planId":"{6d7d6fd6-623a-5f3a-b617-67c4bf83368c}","progressData":{"workerMode":"Backup","progress":40,"elapsedMs":1000,"speed":10,"dataSize":100,"bytesSent":50,"totalFileCount":4,"uploadedFileCount":3,"failedFileCount":1},"progressItemList":[{"name":"Upload","value":"3 of 4","percent":75}],"subType":10})")
        << QByteArray(
               R"({"planId":5,"progressData":{"workerMode":"Backup","progress":40,"elapsedMs":1000,"speed":10,"dataSize":100,"bytesSent":50,"totalFileCount":4,"uploadedFileCount":3,"failedFileCount":1},"progressItemList":[{"name":"Upload","value":"3 of 4","percent":75}],"subType":10})");
    QTest::newRow("RemoveNbfDataStatus")
        << QUuid(RemoveNbfDataStatus::TypeId) << QStringLiteral("{22CA330F-06EB-51D7-9AE5-B65019E9A0D8}")
        << roundTrip<RemoveNbfDataStatus>()
        << QByteArray(
               R"({"bunchId":"{e4ad3c3e-a2e6-5fe2-ac4d-673c121e3d24}","connectionId":"{e5a88aa7-d689-5348-8f1b-2356ad548967}","generationId":"{bfb09da0-d297-531b-8dda-45f1044f82c4}","message":"text message","status":11})")
        << QByteArray(
               R"({"bunchId":5,"connectionId":"{e5a88aa7-d689-5348-8f1b-2356ad548967}","generationId":"{bfb09da0-d297-531b-8dda-45f1044f82c4}","message":"text message","status":11})");
    QTest::newRow("RemoveRestorePoint")
        << QUuid(RemoveRestorePoint::TypeId) << QStringLiteral("{DE734935-3CC5-51C7-9B54-C9EA09C02C50}")
        << roundTrip<RemoveRestorePoint>()
        << QByteArray(
               R"({"bunchId":"{e4ad3c3e-a2e6-5fe2-ac4d-673c121e3d24}","connectionId":"{e5a88aa7-d689-5348-8f1b-2356ad548967}","generationId":"{bfb09da0-d297-531b-8dda-45f1044f82c4}","sequenceNumber":10})")
        << QByteArray(
               R"({"bunchId":5,"connectionId":"{e5a88aa7-d689-5348-8f1b-2356ad548967}","generationId":"{bfb09da0-d297-531b-8dda-45f1044f82c4}","sequenceNumber":10})");
    QTest::newRow("RemovedBunch")
        << QUuid(RemovedBunch::TypeId) << QStringLiteral("{B221F654-9170-532A-810F-CB975735C8DC}")
        << roundTrip<RemovedBunch>()
        << QByteArray(
               R"({"bunchId":"{e4ad3c3e-a2e6-5fe2-ac4d-673c121e3d24}","connectionId":"{e5a88aa7-d689-5348-8f1b-2356ad548967}"})")
        << QByteArray(R"({"bunchId":5,"connectionId":"{e5a88aa7-d689-5348-8f1b-2356ad548967}"})");
    QTest::newRow("RemovedConnection") << QUuid(RemovedConnection::TypeId)
                                       << QStringLiteral("{DADFA655-0AC3-56E5-9A58-396D88D3ED74}")
                                       << roundTrip<RemovedConnection>()
                                       << QByteArray(R"({"connectionId":"{c49ff20f-a476-5438-a494-1f231aaa0cec}"})")
                                       << QByteArray(R"({"connectionId":5})");
    QTest::newRow("RemovedGeneration")
        << QUuid(RemovedGeneration::TypeId) << QStringLiteral("{B1C5E91F-B5C4-5D5D-95DB-CA18D624BB5F}")
        << roundTrip<RemovedGeneration>()
        << QByteArray(
               R"({"bunchId":"{e4ad3c3e-a2e6-5fe2-ac4d-673c121e3d24}","connectionId":"{e5a88aa7-d689-5348-8f1b-2356ad548967}","generationId":"{bfb09da0-d297-531b-8dda-45f1044f82c4}"})")
        << QByteArray(
               R"({"bunchId":5,"connectionId":"{e5a88aa7-d689-5348-8f1b-2356ad548967}","generationId":"{bfb09da0-d297-531b-8dda-45f1044f82c4}"})");
    QTest::newRow("RemovedPlan") << QUuid(RemovedPlan::TypeId)
                                 << QStringLiteral("{00DB0EE1-2C35-50CA-BFC6-768E345560A6}") << roundTrip<RemovedPlan>()
                                 << QByteArray(R"({"planId":"{6d7d6fd6-623a-5f3a-b617-67c4bf83368c}"})")
                                 << QByteArray(R"({"planId":5})");
    QTest::newRow("StartedPlan") << QUuid(StartedPlan::TypeId)
                                 << QStringLiteral("{96018C7F-07B2-503C-8AE4-7075665B79ED}") << roundTrip<StartedPlan>()
                                 << QByteArray(R"({"planId":"{6d7d6fd6-623a-5f3a-b617-67c4bf83368c}"})")
                                 << QByteArray(R"({"planId":5})");
    QTest::newRow("StoppedPlan") << QUuid(StoppedPlan::TypeId)
                                 << QStringLiteral("{EBE0C73C-456C-5338-8A03-E22D6139F5D8}") << roundTrip<StoppedPlan>()
                                 << QByteArray(R"({"planId":"{6d7d6fd6-623a-5f3a-b617-67c4bf83368c}"})")
                                 << QByteArray(R"({"planId":5})");
    QTest::newRow("SynchronizeRepositoryError")
        << QUuid(SynchronizeRepositoryError::TypeId) << QStringLiteral("{0293F908-7210-5D9A-B7AB-FDECE9A489AC}")
        << roundTrip<SynchronizeRepositoryError>()
        << QByteArray(
               R"({"connectionId":"{c49ff20f-a476-5438-a494-1f231aaa0cec}","errorList":["a","b"],"message":"text message"})")
        << QByteArray(R"({"connectionId":5,"errorList":["a","b"],"message":"text message"})");
    QTest::newRow("SynchronizeRepositoryFinished")
        << QUuid(SynchronizeRepositoryFinished::TypeId) << QStringLiteral("{DF727DA1-26A2-5FFF-8A5D-CDA1BBEC7FF6}")
        << roundTrip<SynchronizeRepositoryFinished>()
        << QByteArray(R"({"connectionId":"{c49ff20f-a476-5438-a494-1f231aaa0cec}"})")
        << QByteArray(R"({"connectionId":5})");
    QTest::newRow("SynchronizeRepositoryStarted")
        << QUuid(SynchronizeRepositoryStarted::TypeId) << QStringLiteral("{868B88BF-9BC0-502B-90DC-FFE13EFD7455}")
        << roundTrip<SynchronizeRepositoryStarted>()
        << QByteArray(R"({"connectionId":"{c49ff20f-a476-5438-a494-1f231aaa0cec}"})")
        << QByteArray(R"({"connectionId":5})");
    QTest::newRow("SynchronizeRepositoryStatus")
        << QUuid(SynchronizeRepositoryStatus::TypeId) << QStringLiteral("{EA2D5885-C09C-59CA-A344-B838AD0CD9DC}")
        << roundTrip<SynchronizeRepositoryStatus>()
        << QByteArray(R"({"connectionId":"{c49ff20f-a476-5438-a494-1f231aaa0cec}","message":"text message"})")
        << QByteArray(R"({"connectionId":5,"message":"text message"})");
    QTest::newRow("UpdateAllConnection") << QUuid(UpdateAllConnection::TypeId)
                                         << QStringLiteral("{1A23B7FC-E995-5E5F-94D5-47D91DEA2D92}")
                                         << roundTrip<UpdateAllConnection>() << QByteArray(R"({})") << QByteArray();
    QTest::newRow("UpdateBunch")
        << QUuid(UpdateBunch::TypeId) << QStringLiteral("{45F8CE9D-01FE-5705-8930-57B2412D23BE}")
        << roundTrip<UpdateBunch>()
        << QByteArray(
               R"({"bunchId":"{e4ad3c3e-a2e6-5fe2-ac4d-673c121e3d24}","connectionId":"{e5a88aa7-d689-5348-8f1b-2356ad548967}"})")
        << QByteArray(R"({"bunchId":5,"connectionId":"{e5a88aa7-d689-5348-8f1b-2356ad548967}"})");
    QTest::newRow("UpdateConnection") << QUuid(UpdateConnection::TypeId)
                                      << QStringLiteral("{CF642F62-B59E-59FA-863B-714DC6E02AB6}")
                                      << roundTrip<UpdateConnection>()
                                      << QByteArray(R"({"connectionId":"{c49ff20f-a476-5438-a494-1f231aaa0cec}"})")
                                      << QByteArray(R"({"connectionId":5})");
    QTest::newRow("UpdateGeneration")
        << QUuid(UpdateGeneration::TypeId) << QStringLiteral("{FD82B9EA-0373-5595-849B-36CE977BF970}")
        << roundTrip<UpdateGeneration>()
        << QByteArray(
               R"({"bunchId":"{e4ad3c3e-a2e6-5fe2-ac4d-673c121e3d24}","connectionId":"{e5a88aa7-d689-5348-8f1b-2356ad548967}","generationId":"{bfb09da0-d297-531b-8dda-45f1044f82c4}"})")
        << QByteArray(
               R"({"bunchId":5,"connectionId":"{e5a88aa7-d689-5348-8f1b-2356ad548967}","generationId":"{bfb09da0-d297-531b-8dda-45f1044f82c4}"})");
    QTest::newRow("UpdatePlan") << QUuid(UpdatePlan::TypeId) << QStringLiteral("{660AD108-B3E3-52CD-A51F-867C7572ED5C}")
                                << roundTrip<UpdatePlan>()
                                << QByteArray(R"({"planId":"{6d7d6fd6-623a-5f3a-b617-67c4bf83368c}"})")
                                << QByteArray(R"({"planId":5})");
    QTest::newRow("UpdateRestorePoint")
        << QUuid(UpdateRestorePoint::TypeId) << QStringLiteral("{D6C0964E-02CD-5F2B-90DF-6A3454A18822}")
        << roundTrip<UpdateRestorePoint>()
        << QByteArray(
               R"({"bunchId":"{e4ad3c3e-a2e6-5fe2-ac4d-673c121e3d24}","connectionId":"{e5a88aa7-d689-5348-8f1b-2356ad548967}","generationId":"{bfb09da0-d297-531b-8dda-45f1044f82c4}","sequenceNumber":10})")
        << QByteArray(
               R"({"bunchId":5,"connectionId":"{e5a88aa7-d689-5348-8f1b-2356ad548967}","generationId":"{bfb09da0-d297-531b-8dda-45f1044f82c4}","sequenceNumber":10})");
}

void TestCatalogue::shouldRoundTripV2Payloads()
{
    QFETCH(QUuid, typeId);
    QFETCH(QString, literal);
    QFETCH(PayloadRoundTrip, roundTrip);
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, badBytes);
    QCOMPARE(typeId, QUuid(literal));
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

void TestCatalogue::shouldLetUpdateRestorePointBeBuiltByHand()
{
    UpdateRestorePoint payload;
    payload.setConnectionId(QUuid::createUuid());
    payload.setBunchId(QUuid::createUuid());
    payload.setGenerationId(QUuid::createUuid());
    payload.setSequenceNumber(12);
    const auto back = UpdateRestorePoint::from(payload.toBytes());
    QVERIFY(back);
    QCOMPARE(back->connectionId(), payload.connectionId());
    QCOMPARE(back->bunchId(), payload.bunchId());
    QCOMPARE(back->generationId(), payload.generationId());
    QCOMPARE(back->sequenceNumber(), 12);
    QVERIFY(!UpdateRestorePoint::from(QByteArrayLiteral(R"({"sequenceNumber":1.5})")));
}

NVB_TEST_GUILESS_MAIN(TestCatalogue)
#include "tst_catalogue.moc"
