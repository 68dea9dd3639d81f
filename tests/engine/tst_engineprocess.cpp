#include <QJsonArray>
#include <QSignalSpy>
#include <QtTest>

#include "engineprocess.h"
#include "records/plan/backupfile.h"
#include "records/plan/factory.h"
#include "records/plan/planresult.h"
#include "records/plan/restorefile.h"
#include "service/connectionmanager.h"
#include "service/notification/format.h"
#include "service/notificationcenter.h"
#include "synccommand.h"
#include "testmain.h"

using NvbTest::EngineProcess;
using NvbTest::SyncCommand;
using NVB::Info::Plan::PlanResult;
namespace Format = NVB::Common::Communication::Notification::Format;

// Drives the real engine through the console's channel, as the console does.
class TestEngineProcess : public QObject
{
    Q_OBJECT

private:
    EngineProcess* m_engine = nullptr;
    QTemporaryDir m_source;
    QTemporaryDir m_storage;
    QUuid m_account = QUuid::createUuid();
    QList<QJsonObject> m_notifications;

    static void write(const QString& path, const QByteArray& data)
    {
        QDir().mkpath(QFileInfo(path).absolutePath());
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(data);
    }

    bool waitForConnection()
    {
        const auto connection = NVB::Common::Communication::ConnectionManager::instance();
        return QTest::qWaitFor([&] { return connection && connection->isLocalManagmentConnected(); }, 10000);
    }

    // Waits for a StateChange of the plan to `state`.
    bool waitForState(const QUuid& plan, int state, int timeoutMs = 30000)
    {
        return QTest::qWaitFor(
            [&] {
                for (const QJsonObject& note : std::as_const(m_notifications)) {
                    const QJsonObject message = note.value(QLatin1String(Format::Header::Message)).toObject();
                    if (QUuid(note.value(QLatin1String(Format::Header::Type)).toString()) == Format::Plan::StateChange::Type
                        && QUuid(message.value(QStringLiteral("id")).toString()) == plan
                        && message.value(QStringLiteral("state")).toInt() == state)
                        return true;
                }
                return false;
            },
            timeoutMs);
    }

    int notificationsOf(const QUuid& type) const
    {
        int count = 0;
        for (const QJsonObject& note : m_notifications)
            count += QUuid(note.value(QLatin1String(Format::Header::Type)).toString()) == type ? 1 : 0;
        return count;
    }

    QUuid savePlan(const QString& name, const QStringList& items)
    {
        NVB::Info::Plan::BackupFile plan;
        plan.setId(QUuid::createUuid());
        plan.setName(name);
        plan.setStorage(m_account);
        plan.setItems(items);
        const auto reply = SyncCommand::run(QStringLiteral("CommonPlanEdit"),
                                            {{QStringLiteral("ID"), plan.id().toString()},
                                             {QStringLiteral("planXML"), plan.toXml()},
                                             {QStringLiteral("profile"), QStringLiteral("tester")}});
        return reply.answered && !reply.isError ? plan.id() : QUuid();
    }

    QJsonObject info(const QUuid& plan)
    {
        return SyncCommand::run(QStringLiteral("PlanGetInfo"), {{QStringLiteral("id"), plan.toString()}})
            .data.value(QStringLiteral("planInfo"))
            .toObject();
    }

    QJsonArray fileHistory(const QUuid& plan)
    {
        return SyncCommand::run(QStringLiteral("HistoryListByFiles"),
                                {{QStringLiteral("planId"), plan.toString(QUuid::WithoutBraces)},
                                 {QStringLiteral("period"), QStringLiteral("All")}})
            .data.value(QStringLiteral("HistoryListByFiles"))
            .toArray();
    }

    bool run(const QUuid& plan, bool forceFull = false)
    {
        m_notifications.clear();
        QJsonObject params{{QStringLiteral("ID"), plan.toString()}};
        if (forceFull)
            params.insert(QStringLiteral("force_full"), true);
        const auto reply = SyncCommand::run(QStringLiteral("PlanExecuteStart"), params);
        return reply.answered && !reply.isError && waitForState(plan, 2);
    }

private slots:
    void initTestCase()
    {
        m_engine = new EngineProcess;
        QVERIFY2(m_engine->start(), m_engine->output().constData());
        m_engine->exportSocketPath();
        connect(NVB::Common::Communication::NotificationCenter::instance(),
                &NVB::Common::Communication::NotificationCenter::notification, this,
                [this](const QJsonDocument& document) { m_notifications.append(document.object()); });
        QVERIFY(waitForConnection());

        const auto saved = SyncCommand::run(
            QStringLiteral("SaveStorage"),
            {{QStringLiteral("ID"), m_account.toString()},
             {QStringLiteral("displayName"), QStringLiteral("Local disk")},
             {QStringLiteral("type"), 1},
             {QStringLiteral("prefix"), QStringLiteral("tester")},
             {QStringLiteral("params"), QJsonObject{{QStringLiteral("Path"), m_storage.path() + QLatin1Char('/')}}}});
        QVERIFY2(saved.answered && !saved.isError, qPrintable(saved.errorString));
        QCOMPARE(saved.data.value(QStringLiteral("SaveStorage")).toString(), QStringLiteral("success"));
        QVERIFY(QTest::qWaitFor([this] { return notificationsOf(Format::Storage::Add::Type) == 1; }));
    }

    void cleanupTestCase()
    {
        if (m_engine)
            QVERIFY(m_engine->stop());
        delete m_engine;
    }

    void shouldSaveListReadAndRemovePlans()
    {
        const QUuid plan = savePlan(QStringLiteral("Documents"), {m_source.path()});
        QVERIFY(!plan.isNull());
        QVERIFY(QTest::qWaitFor([this] { return notificationsOf(Format::Plan::Add::Type) >= 1; }));

        const auto list = SyncCommand::run(QStringLiteral("PlanGetList"));
        QVERIFY(list.answered);
        QStringList names;
        for (const QJsonValue& entry : list.data.value(QStringLiteral("planList")).toArray())
            names << entry.toObject().value(QStringLiteral("Name")).toString();
        QVERIFY(names.contains(QStringLiteral("Documents")));

        const QJsonObject summary = info(plan);
        QCOMPARE(summary.value(QStringLiteral("SubType")).toInt(), 1);
        QCOMPARE(summary.value(QStringLiteral("Type")).toInt(), 0);
        QCOMPARE(QUuid(summary.value(QStringLiteral("StorageId")).toString()), m_account);

        const auto xml = SyncCommand::run(QStringLiteral("PlanGetXML"), {{QStringLiteral("ID"), plan.toString()}});
        const auto record = NVB::Info::Plan::Factory::create(xml.data.value(QStringLiteral("planXML")).toString());
        QVERIFY(record);
        QCOMPARE(record->name(), QStringLiteral("Documents"));

        const auto removed = SyncCommand::run(QStringLiteral("PlanRemove"), {{QStringLiteral("ID"), plan.toString()}});
        QVERIFY(removed.answered && !removed.isError);
        QVERIFY(QTest::qWaitFor([this] { return notificationsOf(Format::Plan::Remove::Type) >= 1; }));
        const auto gone = SyncCommand::run(QStringLiteral("PlanGetInfo"), {{QStringLiteral("id"), plan.toString()}});
        QVERIFY(gone.isError);
        QVERIFY(gone.errorString.contains(plan.toString()));
    }

    void shouldAnswerBadRequestsWithClearErrors_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QJsonObject>("params");
        QTest::addColumn<QString>("text");
        QTest::newRow("unknown plan") << "PlanExecuteStart" << QJsonObject{{"ID", QUuid::createUuid().toString()}}
                                      << "There is no plan";
        QTest::newRow("id of wrong type") << "PlanRemove" << QJsonObject{{"ID", 42}} << "\"ID\"";
        QTest::newRow("missing xml") << "CommonPlanEdit" << QJsonObject{{"ID", QUuid::createUuid().toString()}}
                                     << "\"planXML\"";
        QTest::newRow("xml that is no plan") << "CommonPlanEdit" << QJsonObject{{"planXML", "<nothing/>"}}
                                             << "cannot be read";
        QTest::newRow("unknown account") << "StorageDeleteFileSystem"
                                         << QJsonObject{{"ID", QUuid::createUuid().toString()}} << "No storage account";
        QTest::newRow("bad period") << "HistoryListByPlan" << QJsonObject{{"period", "Yesterday"}} << "Yesterday";
    }

    void shouldAnswerBadRequestsWithClearErrors()
    {
        QFETCH(QString, command);
        QFETCH(QJsonObject, params);
        QFETCH(QString, text);
        const auto reply = SyncCommand::run(command, params);
        QVERIFY(reply.answered);
        QVERIFY(reply.isError);
        QVERIFY2(reply.errorString.contains(text), qPrintable(reply.errorString));
    }

    void shouldBackUpIncrementallyAndRecordHistory()
    {
        write(m_source.filePath(QStringLiteral("inc/a.txt")), "alpha");
        write(m_source.filePath(QStringLiteral("inc/sub/b.txt")), "beta");
        const QUuid plan = savePlan(QStringLiteral("Incremental"), {m_source.filePath(QStringLiteral("inc"))});
        QVERIFY(!plan.isNull());

        QVERIFY(run(plan));
        QVERIFY(waitForState(plan, 1)); // it did pass through running
        QCOMPARE(info(plan).value(QStringLiteral("LastRunStatus")).toInt(), int(PlanResult::Success));
        QCOMPARE(info(plan).value(QStringLiteral("Status")).toInt(), 2);
        QVERIFY(notificationsOf(Format::Worker::ReportProgress::Type) >= 1);
        QVERIFY(QTest::qWaitFor([this] { return notificationsOf(Format::Storage::UpdateConnections::Type) >= 1; }));
        const QString copy = m_storage.path() + QStringLiteral("/NVB_tester/") + plan.toString(QUuid::WithoutBraces);
        QStringList copied;
        QDirIterator files(copy, QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext())
            copied << QFileInfo(files.next()).fileName();
        copied.sort();
        QCOMPARE(copied, (QStringList{QStringLiteral("a.txt"), QStringLiteral("b.txt")}));
        QCOMPARE(fileHistory(plan).size(), 2);

        QTest::qWait(1100); // a new modification time
        write(m_source.filePath(QStringLiteral("inc/a.txt")), "alpha, changed");
        QVERIFY(run(plan));
        const QJsonArray rows = fileHistory(plan);
        QCOMPARE(rows.size(), 3);
        QCOMPARE(rows.first().toObject().value(QStringLiteral("File")).toString(),
                 m_source.filePath(QStringLiteral("inc/a.txt")));
        QCOMPARE(info(plan).value(QStringLiteral("LastUploadedCount")).toInt(), 1);

        const auto runs = SyncCommand::run(QStringLiteral("HistoryListByPlan"),
                                           {{QStringLiteral("planID"), plan.toString(QUuid::WithoutBraces)},
                                            {QStringLiteral("period"), QStringLiteral("DayLast")},
                                            {QStringLiteral("generateCSV"), true}});
        const QJsonArray history = runs.data.value(QStringLiteral("HistoryListByPlan")).toArray();
        QCOMPARE(history.size(), 2);
        QCOMPARE(history.first().toObject().value(QStringLiteral("Result")).toInt(), int(PlanResult::Success));
        QCOMPARE(history.first().toObject().value(QStringLiteral("Operation")).toInt(), 0);
        QVERIFY(history.first().toObject().value(QStringLiteral("CSVLine")).toString().startsWith(QStringLiteral("\"Incremental\"")));
        QVERIFY(history.first().toObject().value(QStringLiteral("DbID")).toInt() > history.last().toObject().value(QStringLiteral("DbID")).toInt());

        // Restore the first version of the changed file, from the first run.
        NVB::Info::Plan::RestoreFile restore;
        restore.setId(QUuid::createUuid());
        restore.setName(QStringLiteral("Get it back"));
        restore.setStorage(m_account);
        restore.setRestoreType(NVB::Info::Plan::Restore::PointInTime);
        const QString firstRun = history.last().toObject().value(QStringLiteral("StartTimeUTC")).toString();
        restore.setPointInTime(QDateTime::fromString(firstRun, QStringLiteral("yyyyMMddhhmmss")).addSecs(0));
        restore.setRestorePoint(QStringLiteral("NVB_Archive\\%1\\%2").arg(plan.toString(QUuid::WithoutBraces), firstRun));
        QTemporaryDir target;
        restore.setDestination(target.path());
        restore.setRestoreToOriginalLocation(false);
        restore.setRestoreItems({m_source.filePath(QStringLiteral("inc/a.txt"))});
        QDateTime point = QDateTime::fromString(firstRun, QStringLiteral("yyyyMMddhhmmss"));
        point.setTimeSpec(Qt::UTC);
        restore.setPointInTime(point);
        const auto saved = SyncCommand::run(QStringLiteral("CommonPlanEdit"),
                                            {{QStringLiteral("ID"), restore.id().toString()},
                                             {QStringLiteral("planXML"), restore.toXml()}});
        QVERIFY2(!saved.isError, qPrintable(saved.errorString));
        QVERIFY(run(restore.id()));
        QCOMPARE(info(restore.id()).value(QStringLiteral("LastRunStatus")).toInt(), int(PlanResult::Success));
        QFile restored(target.path() + m_source.filePath(QStringLiteral("inc/a.txt")));
        QVERIFY(restored.open(QIODevice::ReadOnly));
        QCOMPARE(restored.readAll(), QByteArray("alpha"));
    }

    void shouldStopARunCleanly()
    {
        for (int i = 0; i < 3000; ++i)
            write(m_source.filePath(QStringLiteral("many/%1/f%2.bin").arg(i / 100).arg(i)), QByteArray(32 * 1024, 'x'));
        const QUuid plan = savePlan(QStringLiteral("Many files"), {m_source.filePath(QStringLiteral("many"))});
        m_notifications.clear();
        QVERIFY(!SyncCommand::run(QStringLiteral("PlanExecuteStart"), {{QStringLiteral("ID"), plan.toString()}}).isError);
        const auto again = SyncCommand::run(QStringLiteral("PlanExecuteStart"), {{QStringLiteral("ID"), plan.toString()}});
        QVERIFY(again.isError);
        QVERIFY(!SyncCommand::run(QStringLiteral("PlanExecuteStop"), {{QStringLiteral("ID"), plan.toString()}}).isError);
        QVERIFY(waitForState(plan, 2));
        QCOMPARE(info(plan).value(QStringLiteral("LastRunStatus")).toInt(), int(PlanResult::Interrupted));
        const auto stopAgain = SyncCommand::run(QStringLiteral("PlanExecuteStop"), {{QStringLiteral("ID"), plan.toString()}});
        QVERIFY(stopAgain.isError);
        QVERIFY(stopAgain.errorString.contains(QStringLiteral("not running")));
    }

    void shouldFailRunsToOtherProvidersWithReason()
    {
        const QUuid account = QUuid::createUuid();
        QVERIFY(!SyncCommand::run(QStringLiteral("SaveStorage"),
                                  {{QStringLiteral("ID"), account.toString()},
                                   {QStringLiteral("displayName"), QStringLiteral("Bucket")},
                                   {QStringLiteral("type"), 3},
                                   {QStringLiteral("params"), QJsonObject()}})
                     .isError);
        NVB::Info::Plan::BackupFile plan;
        plan.setId(QUuid::createUuid());
        plan.setName(QStringLiteral("To the cloud"));
        plan.setStorage(account);
        plan.setItems({m_source.path()});
        QVERIFY(!SyncCommand::run(QStringLiteral("CommonPlanEdit"),
                                  {{QStringLiteral("ID"), plan.id().toString()}, {QStringLiteral("planXML"), plan.toXml()}})
                     .isError);
        QVERIFY(run(plan.id()));
        const QJsonObject summary = info(plan.id());
        QCOMPARE(summary.value(QStringLiteral("LastRunStatus")).toInt(), int(PlanResult::Failed));
        QVERIFY(summary.value(QStringLiteral("LastRunMessage")).toString().contains(QStringLiteral("not supported yet")));

        // An account in use cannot be removed.
        const auto refused = SyncCommand::run(QStringLiteral("StorageDeleteFileSystem"), {{QStringLiteral("ID"), account.toString()}});
        QVERIFY(refused.isError);
    }

    void shouldKeepEverythingWhenKilledDuringARun()
    {
        const QUuid plan = savePlan(QStringLiteral("Survivor"), {m_source.filePath(QStringLiteral("many"))});
        m_notifications.clear();
        QVERIFY(!SyncCommand::run(QStringLiteral("PlanExecuteStart"), {{QStringLiteral("ID"), plan.toString()}}).isError);
        QVERIFY(waitForState(plan, 1));
        m_engine->kill();
        const auto connection = NVB::Common::Communication::ConnectionManager::instance();
        QVERIFY(QTest::qWaitFor([&] { return !connection->isLocalManagmentConnected(); }, 10000));

        // A second engine on the same data refuses while the first runs; here
        // the first is dead, so a new one takes over.
        EngineProcess twin(m_engine->home());
        QVERIFY(twin.start());
        EngineProcess third(m_engine->home());
        QVERIFY(!third.start(3000));
        QVERIFY(third.output().contains("Another engine"));
        QVERIFY(waitForConnection());

        const QJsonObject summary = info(plan);
        QCOMPARE(summary.value(QStringLiteral("Name")).toString(), QStringLiteral("Survivor"));
        QCOMPARE(summary.value(QStringLiteral("Status")).toInt(), 2);
        const auto runs = SyncCommand::run(QStringLiteral("HistoryListByPlan"),
                                           {{QStringLiteral("planID"), plan.toString(QUuid::WithoutBraces)}});
        const QJsonArray history = runs.data.value(QStringLiteral("HistoryListByPlan")).toArray();
        QCOMPARE(history.size(), 1);
        QCOMPARE(history.first().toObject().value(QStringLiteral("Result")).toInt(), int(PlanResult::Interrupted));
        const auto accounts = SyncCommand::run(QStringLiteral("StorageGetConnection"));
        QCOMPARE(accounts.data.value(QStringLiteral("storageConnection")).toArray().size(), 2);
        QVERIFY(twin.stop());
        QVERIFY(QTest::qWaitFor([&] { return !connection->isLocalManagmentConnected(); }, 10000));
        QVERIFY(m_engine->start());
        QVERIFY(waitForConnection());
    }
};

NVB_TEST_GUILESS_MAIN(TestEngineProcess)
#include "tst_engineprocess.moc"
