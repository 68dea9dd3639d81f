#include <QJsonArray>
#include <QTcpServer>
#include <QTcpSocket>
#include <QtTest>

#include "commands/commandrouter.h"
#include "core/engine.h"
#include "records/plan/backupfile.h"
#include "records/plan/restorefile.h"
#include "server/notifier.h"
#include "service/notification/format.h"
#include "service/v2/commands/plan/getbackupplanlist.h"
#include "service/v2/commands/plan/getplan.h"
#include "store/enginestore.h"
#include "testmain.h"

using namespace NVB::Engine;
namespace Format = NVB::Common::Communication::Notification::Format;

// The engine's answers to single frames, without a socket in between.
class TestCommandRouter : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    EngineStore m_store;
    Notifier m_notifier;
    Engine* m_engine = nullptr;
    CommandRouter* m_router = nullptr;
    QList<QJsonObject> m_sent;

    static QJsonObject v1(const QString& command, const QJsonValue& params = QJsonObject())
    {
        return {{"type", "request"}, {"id", QUuid::createUuid().toString()}, {"command", command}, {"params", params}};
    }

    static QJsonObject v2(const QUuid& commandId, const QJsonValue& request = QJsonObject())
    {
        return {{"type", "request2"}, {"id", QUuid::createUuid().toString()}, {"command_id", commandId.toString()},
                {"request", request}};
    }

    QUuid save(NVB::Info::Plan::Base& plan, const QString& name)
    {
        plan.setId(QUuid::createUuid());
        plan.setName(name);
        const QJsonObject reply = m_router->handle(v1("CommonPlanEdit", QJsonObject{{"planXML", plan.toXml()}}));
        return reply.value("status").toString() == QLatin1String("success") ? plan.id() : QUuid();
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_store.open(m_dir.filePath(QStringLiteral("engine.db"))));
        m_notifier.setSink([this](const QJsonObject& frame) { m_sent.append(frame); });
        m_engine = new Engine(&m_store, &m_notifier, this);
        m_router = new CommandRouter(m_engine);
    }

    void cleanupTestCase() { delete m_router; }

    void shouldRefuseMalformedFrames()
    {
        const QJsonObject unknown = m_router->handle(v1("NoSuchCommand"));
        QCOMPARE(unknown.value("status").toString(), QStringLiteral("error"));
        QCOMPARE(unknown.value("error_string").toString(), QStringLiteral("Unknown command NoSuchCommand"));
        QCOMPARE(unknown.value("type").toString(), QStringLiteral("reply"));

        QJsonObject noId = v1("PlanGetList");
        noId.remove("id");
        QVERIFY(m_router->handle(noId).isEmpty());
        QVERIFY(m_router->handle(QJsonObject{{"type", "reply"}}).isEmpty());

        const QJsonObject badParams = m_router->handle(v1("PlanGetList", QJsonArray{1, 2}));
        QVERIFY(badParams.value("error_string").toString().contains(QStringLiteral("params")));

        const QJsonObject unknownV2 = m_router->handle(v2(QUuid::createUuid()));
        QCOMPARE(unknownV2.value("status").toInt(), 3);
        QCOMPARE(unknownV2.value("type").toString(), QStringLiteral("reply2"));

        const QJsonObject wrongType = m_router->handle(v2(NVB::Common::Communication::V2::Plan::GetPlan::CommandId,
                                                         QJsonObject{{"planId", 17}}));
        QCOMPARE(wrongType.value("status").toInt(), 3);
        QVERIFY(wrongType.value("error_message").toString().contains(QStringLiteral("wrong type")));
    }

    void shouldRefuseNumbersOutOfRange()
    {
        const auto error = [this](const QString& command, const QJsonObject& params) {
            return m_router->handle(v1(command, params)).value("error_string").toString();
        };
        // Casting these to an integer is undefined; they are refused by name.
        QCOMPARE(error("HistoryListByPlan", {{"lastID", 1e300}}), QStringLiteral("The argument \"lastID\" is out of range"));
        QCOMPARE(error("HistoryListByFiles", {{"lastId", "99999999999999999999"}}),
                 QStringLiteral("The argument \"lastId\" is not a number"));
        QCOMPARE(error("HistoryListByFiles", {{"lastId", 2.5}}),
                 QStringLiteral("The argument \"lastId\" is not a whole number"));
        QCOMPARE(error("SaveStorage", {{"ID", QUuid::createUuid().toString()}, {"displayName", "Disk"},
                                       {"type", 4294967297.0}, {"params", QJsonObject()}}),
                 QStringLiteral("The argument \"type\" is out of range"));
        QCOMPARE(m_router->handle(v1("HistoryListByPlan", QJsonObject{{"lastID", "9007199254740992"}}))
                     .value("status")
                     .toString(),
                 QStringLiteral("success"));
    }

    void shouldPageFileHistoryByOperation()
    {
        // 300 copied files, then 10 failed ones: the newest page of 200 rows
        // holds only failures, and the filter must still fill pages of copies.
        RunRecord run;
        run.planId = QUuid::createUuid();
        run.planName = QStringLiteral("Paged");
        run.startUtc = QDateTime::currentDateTimeUtc();
        const auto runId = m_store.beginRun(run);
        QVERIFY(runId);
        run.id = *runId;
        QList<RunFileRecord> files;
        for (int i = 0; i < 310; ++i) {
            RunFileRecord file;
            file.planId = run.planId;
            file.planName = run.planName;
            file.file = QStringLiteral("/data/%1").arg(i);
            file.operation = i < 300 ? RunFileRecord::Copied : RunFileRecord::Failed;
            file.finishUtc = run.startUtc;
            files << file;
        }
        StoredPlan summary;
        summary.id = run.planId;
        summary.name = run.planName;
        QVERIFY(m_store.finishRun(run, files, summary, nullptr, nullptr, {}));

        QStringList seen;
        qint64 lastId = 0;
        QList<int> pages;
        for (;;) {
            QJsonObject params{{"planId", run.planId.toString(QUuid::WithoutBraces)}, {"filterOperationType", 1}};
            if (lastId > 0)
                params.insert("lastId", double(lastId));
            const QJsonArray rows =
                m_router->handle(v1("HistoryListByFiles", params)).value("data").toObject().value("HistoryListByFiles").toArray();
            if (rows.isEmpty())
                break;
            pages << rows.size();
            for (const QJsonValue& row : rows) {
                QCOMPARE(row.toObject().value("Operation").toInt(), 1);
                seen << row.toObject().value("File").toString();
                lastId = qint64(row.toObject().value("ID").toDouble());
            }
        }
        QCOMPARE(pages, (QList<int>{200, 100}));
        QCOMPARE(seen.size(), 300);
    }

    void shouldFetchCertificatesWithoutHoldingUpOtherRequests()
    {
        // A server that accepts and then says nothing, as a dead TLS service
        // does; it hangs up after a while so the test ends soon.
        QTcpServer silent;
        QVERIFY(silent.listen(QHostAddress::LocalHost));
        QList<QTcpSocket*> held;
        connect(&silent, &QTcpServer::newConnection, this, [&] {
            while (QTcpSocket* socket = silent.nextPendingConnection())
                held << socket;
        });
        QJsonObject certificateReply;
        const bool answers = m_router->handle(
            v1("GetPeerSslCertificate", QJsonObject{{"endpoint", QStringLiteral("127.0.0.1:%1").arg(silent.serverPort())}}),
            [&certificateReply](const QJsonObject& reply) { certificateReply = reply; });
        QVERIFY(answers);
        // The serving thread is free: other requests are answered meanwhile.
        QCOMPARE(m_router->handle(v1("PlanGetList")).value("status").toString(), QStringLiteral("success"));
        QTRY_COMPARE(held.size(), 1);
        QVERIFY(certificateReply.isEmpty());
        qDeleteAll(held);
        QTRY_VERIFY_WITH_TIMEOUT(!certificateReply.isEmpty(), 15000);
        QCOMPARE(certificateReply.value("status").toString(), QStringLiteral("error"));
        QVERIFY2(certificateReply.value("error_string").toString().startsWith(QStringLiteral("Can't get the certificate of 127.0.0.1")),
                 qPrintable(certificateReply.value("error_string").toString()));

        // Bad arguments are answered at once, through the same path.
        const QJsonObject missing = m_router->handle(v1("GetPeerSslCertificate"));
        QCOMPARE(missing.value("error_string").toString(), QStringLiteral("The argument \"endpoint\" is missing"));
    }

    void shouldNotifyAddThenUpdate()
    {
        m_sent.clear();
        NVB::Info::Plan::BackupFile plan;
        const QUuid id = save(plan, QStringLiteral("Notes"));
        QVERIFY(!id.isNull());
        plan.setName(QStringLiteral("Notes, renamed"));
        QCOMPARE(m_router->handle(v1("CommonPlanEdit", QJsonObject{{"planXML", plan.toXml()}, {"ID", id.toString()}}))
                     .value("status")
                     .toString(),
                 QStringLiteral("success"));
        QList<QUuid> types;
        for (const QJsonObject& frame : std::as_const(m_sent)) {
            if (frame.value("type").toString() != QLatin1String("notification2"))
                types << QUuid(frame.value("type").toString());
        }
        QCOMPARE(types, (QList<QUuid>{Format::Plan::Add::Type, Format::Plan::Update::Type}));

        // A request whose id differs from the plan document's is refused.
        const QJsonObject mismatch = m_router->handle(
            v1("CommonPlanEdit", QJsonObject{{"planXML", plan.toXml()}, {"ID", QUuid::createUuid().toString()}}));
        QVERIFY(mismatch.value("error_string").toString().contains(QStringLiteral("does not match")));
    }

    void shouldListPlansByJobKind()
    {
        NVB::Info::Plan::BackupFile backup;
        NVB::Info::Plan::RestoreFile restore;
        const QUuid backupId = save(backup, QStringLiteral("Backup one"));
        const QUuid restoreId = save(restore, QStringLiteral("Restore one"));
        const QJsonObject reply =
            m_router->handle(v2(NVB::Common::Communication::V2::Plan::GetBackupPlanList::CommandId));
        QCOMPARE(reply.value("status").toInt(), 2);
        QStringList ids;
        for (const QJsonValue& plan : reply.value("response").toObject().value("planList").toArray())
            ids << plan.toObject().value("id").toString();
        QVERIFY(ids.contains(backupId.toString()));
        QVERIFY(!ids.contains(restoreId.toString()));
    }
};

NVB_TEST_GUILESS_MAIN(TestCommandRouter)
#include "tst_commandrouter.moc"
