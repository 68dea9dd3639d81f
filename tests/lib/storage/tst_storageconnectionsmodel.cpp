#include <QAbstractItemModelTester>
#include <QJsonArray>
#include <QSignalSpy>
#include <QtTest>

#include "enginetestpeer.h"
#include "models/models.h"
#include "service/commands/storage.h"
#include "service/connectionmanager.h"
#include "service/notification/format.h"
#include "service/servicelink.h"
#include "storage/storageconnectionsmodel.h"
#include "testmain.h"

using NVB::GUI::StorageConnectionsModel;
using NvbTest::EngineTestPeer;
namespace Column = NVB::GUI::Models::Table::NvbStorageConnectionModelInfo::Column;
namespace Storage = NVB::Common::Communication::Commands::Format::Storage;
namespace Notify = NVB::Common::Communication::Notification::Format::Storage;

class TestStorageConnectionsModel : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void shouldLoadEveryColumnOfTheReply();
    void shouldMergeRepliesKeepingKnownRows();
    void shouldRetryWhenEngineNeedsRetry();
    void shouldPassReplyErrorOn();
    void shouldFollowStorageNotifications_data();
    void shouldFollowStorageNotifications();
    void shouldLeaveRowsToTheEngineOnRemoveRows();
    void shouldKeepAwaitedIdMissingFromReply();
    void shouldMarkSynchronisation();

private:
    static QJsonObject row(const QUuid& id, const QString& name, int type, const QJsonObject& details = {});
    bool load(StorageConnectionsModel& model);
    void scriptConnections();

    EngineTestPeer* m_peer = nullptr;
    QJsonArray m_rows;
    int m_retries = 0;
};

QJsonObject TestStorageConnectionsModel::row(const QUuid& id, const QString& name, int type, const QJsonObject& details)
{
    return {{QStringLiteral("DisplayName"), name}, {QStringLiteral("ID"), id.toString()},
        {QStringLiteral("Path"), details.value(QStringLiteral("Path"))},
        {QStringLiteral("Prefix"), QStringLiteral("office")},
        {QStringLiteral("PrefixArray"), QJsonArray {QStringLiteral("office"), QStringLiteral("laptop")}},
        {QStringLiteral("Type"), type}, {QStringLiteral("SpaceLimit"), 0}, {QStringLiteral("SpaceUsed"), 1024.0},
        {QStringLiteral("DetailParams"), details}, {QStringLiteral("SyncStatus"), false}};
}

void TestStorageConnectionsModel::initTestCase()
{
    m_peer = new EngineTestPeer(this);
    m_peer->exportSocketPath();
    QVERIFY(NVB::Common::Communication::ServiceLink::instance());
    NVB::Common::Communication::ServiceLink::instance()->client()->setReconnectDelays(10, 50);
    QTRY_VERIFY(NVB::Common::Communication::ConnectionManager::instance()->isLocalManagmentConnected());
}

void TestStorageConnectionsModel::scriptConnections()
{
    m_peer->onCommand(QLatin1String(Storage::GetConnection::Name), [this](const QJsonObject&) {
        if (m_retries > 0) {
            --m_retries;
            return EngineTestPeer::Answer::reply({{QStringLiteral("NeedRetry"), true}});
        }
        return EngineTestPeer::Answer::reply(
            {{QStringLiteral("storageConnection"), m_rows}, {QStringLiteral("NeedRetry"), false}});
    });
}

void TestStorageConnectionsModel::init()
{
    scriptConnections();
    m_rows = QJsonArray();
    m_retries = 0;
}

void TestStorageConnectionsModel::cleanup()
{
    QTRY_COMPARE(NVB::Common::Communication::ServiceLink::instance()->pendingCount(), 0);
}

bool TestStorageConnectionsModel::load(StorageConnectionsModel& model)
{
    QSignalSpy done(&model, &StorageConnectionsModel::complite);
    if (!model.init())
        return false;
    return done.wait(5000);
}

void TestStorageConnectionsModel::shouldLoadEveryColumnOfTheReply()
{
    const QUuid id = QUuid::createUuid();
    m_rows = {row(id, QStringLiteral("Office NAS"), 33,
        {{QStringLiteral("Address"), QStringLiteral("nas")}, {QStringLiteral("Path"), QStringLiteral("/b")}})};
    const int asked = m_peer->requestCount(QLatin1String(Storage::GetConnection::Name));
    StorageConnectionsModel model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QVERIFY(load(model));
    QCOMPARE(m_peer->requestCount(QLatin1String(Storage::GetConnection::Name)), asked + 1);

    QCOMPARE(model.rowCount(), 1);
    QCOMPARE(model.index(0, Column::DisplayName).data().toString(), QStringLiteral("Office NAS"));
    QCOMPARE(QUuid(model.index(0, Column::ID).data().toString()), id);
    QCOMPARE(model.index(0, Column::Path).data().toString(), QStringLiteral("/b"));
    QCOMPARE(model.index(0, Column::Prefix).data().toString(), QStringLiteral("office"));
    QCOMPARE(model.index(0, Column::PrefixArray).data().toStringList(),
        QStringList({QStringLiteral("office"), QStringLiteral("laptop")}));
    QCOMPARE(model.index(0, Column::Type).data().toInt(), 33);
    QCOMPARE(model.index(0, Column::SpaceUsed).data().toDouble(), 1024.0);
    QCOMPARE(model.index(0, Column::DetailParams).data().toJsonObject().value(QStringLiteral("Address")).toString(),
        QStringLiteral("nas"));
    QCOMPARE(model.index(0, Column::SyncStatus).data().toBool(), false);
    QVERIFY(!model.index(0, Column::DisplayName).data(Qt::DecorationRole).value<QIcon>().isNull());
}

void TestStorageConnectionsModel::shouldMergeRepliesKeepingKnownRows()
{
    const QUuid a = QUuid::createUuid();
    const QUuid b = QUuid::createUuid();
    const QUuid c = QUuid::createUuid();
    m_rows = {row(a, QStringLiteral("A"), 1), row(b, QStringLiteral("B"), 1)};
    StorageConnectionsModel model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QVERIFY(load(model));
    QCOMPARE(model.rowCount(), 2);

    m_rows = {row(b, QStringLiteral("B renamed"), 1), row(c, QStringLiteral("C"), 2)};
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
    QSignalSpy removed(&model, &QAbstractItemModel::rowsRemoved);
    QVERIFY(load(model));

    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.first().at(0).toModelIndex().row(), 1);
    QCOMPARE(changed.first().at(1).toModelIndex().column(), Column::Count - 1);
    QCOMPARE(inserted.count(), 1);
    QCOMPARE(removed.count(), 1);
    QCOMPARE(removed.first().at(1).toInt(), 0);
    QCOMPARE(model.rowCount(), 2);
    QCOMPARE(model.index(0, Column::DisplayName).data().toString(), QStringLiteral("B renamed"));
    QCOMPARE(model.index(1, Column::DisplayName).data().toString(), QStringLiteral("C"));
}

void TestStorageConnectionsModel::shouldRetryWhenEngineNeedsRetry()
{
    m_rows = {row(QUuid::createUuid(), QStringLiteral("Late"), 1)};
    m_retries = 2;
    StorageConnectionsModel model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QCOMPARE(model.retryInterval(), 60000);
    model.setRetryInterval(20);
    const int before = m_peer->requestCount(QLatin1String(Storage::GetConnection::Name));
    QSignalSpy done(&model, &StorageConnectionsModel::complite);
    QVERIFY(model.init());
    QVERIFY(done.wait(5000));
    QCOMPARE(m_peer->requestCount(QLatin1String(Storage::GetConnection::Name)) - before, 3);
    QCOMPARE(model.rowCount(), 1);
}

void TestStorageConnectionsModel::shouldPassReplyErrorOn()
{
    StorageConnectionsModel model;
    m_peer->onCommand(
        QLatin1String(Storage::GetConnection::Name), EngineTestPeer::Answer::error(QStringLiteral("store is locked")));
    QSignalSpy failed(&model, &StorageConnectionsModel::error);
    QVERIFY(model.init());
    QVERIFY(failed.wait(5000));
    QCOMPARE(failed.first().first().toString(), QStringLiteral("store is locked"));
    QCOMPARE(model.rowCount(), 0);
}

void TestStorageConnectionsModel::shouldFollowStorageNotifications_data()
{
    QTest::addColumn<int>("kind");
    QTest::newRow("add") << 0;
    QTest::newRow("update") << 1;
    QTest::newRow("remove") << 2;
}

void TestStorageConnectionsModel::shouldFollowStorageNotifications()
{
    QFETCH(int, kind);
    const QUuid kept = QUuid::createUuid();
    const QUuid changing = QUuid::createUuid();
    m_rows = {row(kept, QStringLiteral("Kept"), 1)};
    if (kind != 0)
        m_rows.append(row(changing, QStringLiteral("Before"), 33));
    StorageConnectionsModel model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QVERIFY(load(model));

    QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    QSignalSpy removed(&model, &QAbstractItemModel::rowsRemoved);
    const QJsonObject message {{QStringLiteral("id"), changing.toString()}};
    if (kind == 0) {
        m_rows.append(row(changing, QStringLiteral("After"), 33));
        m_peer->notify(Notify::Add::Type, message);
        QTRY_COMPARE(inserted.count(), 1);
        QCOMPARE(model.rowCount(), 2);
        QCOMPARE(model.index(1, Column::DisplayName).data().toString(), QStringLiteral("After"));
        // The other row was left alone.
        QCOMPARE(changed.count(), 0);
    } else if (kind == 1) {
        m_rows = {row(kept, QStringLiteral("Kept"), 1), row(changing, QStringLiteral("After"), 33)};
        m_peer->notify(Notify::Update::Type, message);
        QTRY_COMPARE(changed.count(), 1);
        QCOMPARE(changed.first().at(0).toModelIndex().row(), 1);
        QCOMPARE(model.index(1, Column::DisplayName).data().toString(), QStringLiteral("After"));
        QCOMPARE(inserted.count(), 0);
    } else {
        m_peer->notify(Notify::Remove::Type, message);
        QTRY_COMPARE(removed.count(), 1);
        QCOMPARE(model.rowCount(), 1);
        QCOMPARE(QUuid(model.index(0, Column::ID).data().toString()), kept);
    }
    QVERIFY(model.awaitedIds().isEmpty());
}

void TestStorageConnectionsModel::shouldLeaveRowsToTheEngineOnRemoveRows()
{
    const QUuid id = QUuid::createUuid();
    m_rows = {row(id, QStringLiteral("Gone soon"), 1)};
    StorageConnectionsModel model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QVERIFY(load(model));
    // A refusal (an account that plans use) keeps the row and says why.
    m_peer->onCommand(QLatin1String(Storage::DeleteFileSystem::Name),
        EngineTestPeer::Answer::error(QStringLiteral("The storage account is used by 1 plans")));
    QSignalSpy failed(&model, &StorageConnectionsModel::error);
    QVERIFY(model.removeRows(0, 1));
    QVERIFY(failed.wait(5000));
    QCOMPARE(failed.takeFirst().first().toString(), QStringLiteral("The storage account is used by 1 plans"));
    QCOMPARE(model.rowCount(), 1);

    QJsonObject deleteRequest;
    m_peer->onCommand(QLatin1String(Storage::DeleteFileSystem::Name), [&deleteRequest](const QJsonObject& request) {
        deleteRequest = request;
        return EngineTestPeer::Answer::reply({{QStringLiteral("storageDeleteFileSystem"), QStringLiteral("success")}});
    });

    QVERIFY(model.removeRows(0, 1));
    QTRY_VERIFY(!deleteRequest.isEmpty());
    const QJsonObject params = deleteRequest.value(QStringLiteral("params")).toObject();
    QCOMPARE(QUuid(params.value(QStringLiteral("ID")).toString()), id);
    QVERIFY(params.contains(QStringLiteral("profile")));
    QCOMPARE(model.rowCount(), 1);

    m_peer->notify(Notify::Remove::Type, {{QStringLiteral("id"), id.toString()}});
    QTRY_COMPARE(model.rowCount(), 0);
    QVERIFY(!model.removeRows(0, 1));
    model.removeStorage(id);
    QCOMPARE(failed.count(), 1);
    QCOMPARE(failed.first().first().toString(), QStringLiteral("There isn't such storage account in model"));
}

void TestStorageConnectionsModel::shouldKeepAwaitedIdMissingFromReply()
{
    m_rows = {row(QUuid::createUuid(), QStringLiteral("Other"), 1)};
    StorageConnectionsModel model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    const QUuid missing = QUuid::createUuid();
    QSignalSpy done(&model, &StorageConnectionsModel::complite);
    model.editStorage(missing);
    QVERIFY(done.wait(5000));
    QCOMPARE(model.awaitedIds(), QVector<QUuid>({missing}));
    // Only awaited ids come in through editStorage.
    QCOMPARE(model.rowCount(), 0);
}

void TestStorageConnectionsModel::shouldMarkSynchronisation()
{
    const QUuid id = QUuid::createUuid();
    m_rows = {row(id, QStringLiteral("Syncing"), 2)};
    StorageConnectionsModel model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QVERIFY(load(model));
    m_peer->notify(Notify::SynchronizeRepositoryStarted::Type, {{QStringLiteral("id"), id.toString()}});
    QTRY_VERIFY(model.index(0, Column::SyncStatus).data().toBool());
    m_peer->notify(Notify::SynchronizeRepositoryFinished::Type, {{QStringLiteral("id"), id.toString()}});
    QTRY_VERIFY(!model.index(0, Column::SyncStatus).data().toBool());
}

NVB_TEST_MAIN(TestStorageConnectionsModel)
#include "tst_storageconnectionsmodel.moc"
