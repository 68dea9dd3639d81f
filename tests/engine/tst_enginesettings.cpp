#include <unistd.h>

#include <QElapsedTimer>
#include <QJsonArray>
#include <QProcess>
#include <QRandomGenerator>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTcpServer>
#include <QTcpSocket>
#include <QtTest>

#include "crypt/cryptns.h"
#include "engineprocess.h"
#include "records/plan/backupfile.h"
#include "service/connectionmanager.h"
#include "service/notification/format.h"
#include "service/notificationcenter.h"
#include "settings/retrypolicy.h"
#include "stores/defaultsettings.h"
#include "synccommand.h"
#include "testenvironment.h"
#include "testmain.h"
#include "web/webinterface.h"

using NvbTest::SyncCommand;
namespace Format = NVB::Common::Communication::Notification::Format;

// The real engine, with default settings written by this process as the
// console writes them: the engine takes them without a restart.
class TestEngineSettings : public QObject
{
    Q_OBJECT

private:
    NvbTest::EngineProcess* m_engine = nullptr;
    QTemporaryDir m_storage;
    QTemporaryDir m_places;
    QUuid m_account = QUuid::createUuid();
    QList<QJsonObject> m_notifications;
    NVB::DefaultSettings* m_settings = NVB::DefaultSettings::instance();

    bool noted(const QUuid& type, const QString& key, const QJsonValue& value)
    {
        return QTest::qWaitFor(
            [&] {
                for (const QJsonObject& note : std::as_const(m_notifications)) {
                    if (QUuid(note.value(QLatin1String(Format::Header::Type)).toString()) == type
                        && note.value(QLatin1String(Format::Header::Message)).toObject().value(key) == value)
                        return true;
                }
                return false;
            },
            60000);
    }

    bool set(const QString& key, const QString& value)
    {
        m_notifications.clear();
        return m_settings->setValue(key, value)
            && noted(Format::System::DefaultSettingsChanged::Type, QStringLiteral("PropertyName"), key);
    }

    QUuid savePlan(const QString& name, const QString& source)
    {
        NVB::Info::Plan::BackupFile plan;
        plan.setId(QUuid::createUuid());
        plan.setName(name);
        plan.setIsArchive(false);
        plan.setStorage(m_account);
        plan.setItems({source});
        plan.setUseCompression(false);
        const auto reply = SyncCommand::run(QStringLiteral("CommonPlanEdit"),
            {{QStringLiteral("ID"), plan.id().toString()}, {QStringLiteral("planXML"), plan.toXml()}});
        return reply.answered && !reply.isError ? plan.id() : QUuid();
    }

    bool runToEnd(const QUuid& plan)
    {
        m_notifications.clear();
        const auto reply
            = SyncCommand::run(QStringLiteral("PlanExecuteStart"), {{QStringLiteral("ID"), plan.toString()}});
        return reply.answered && !reply.isError && noted(Format::Plan::StateChange::Type, QStringLiteral("state"), 2);
    }

    static void write(const QString& path, const QByteArray& data)
    {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(data);
    }

    static bool isOpen(quint16 port)
    {
        QTcpSocket socket;
        socket.connectToHost(QHostAddress::LocalHost, port);
        return socket.waitForConnected(1000);
    }

    // curl, so that the engine's HTTPS is spoken to by a client of its own.
    static QByteArray curl(const QStringList& arguments, const QString& jar)
    {
        QProcess process;
        process.start(QStringLiteral("curl"),
            QStringList {QStringLiteral("-sk"), QStringLiteral("-b"), jar, QStringLiteral("-c"), jar} + arguments);
        process.waitForFinished(20000);
        return process.readAllStandardOutput();
    }

    // What the console sees of plans and history.
    static QByteArray snapshot()
    {
        QByteArray text;
        for (const char* command : {"PlanGetList", "HistoryListByPlan", "HistoryListByFiles"})
            text += QJsonDocument(SyncCommand::run(QString::fromLatin1(command)).data).toJson(QJsonDocument::Compact);
        return text;
    }

private slots:
    void initTestCase()
    {
        qputenv("NVB_WEB_ADDRESS", "127.0.0.1");
        // The engine shares this process's configuration, as it shares the
        // console's on a real machine.
        m_engine = new NvbTest::EngineProcess(NvbTest::TestEnvironment::current()->home());
        QVERIFY2(m_engine->start(), m_engine->output().constData());
        m_engine->exportSocketPath();
        connect(NVB::Common::Communication::NotificationCenter::instance(),
            &NVB::Common::Communication::NotificationCenter::notification, this,
            [this](const QJsonDocument& document) { m_notifications.append(document.object()); });
        const auto connection = NVB::Common::Communication::ConnectionManager::instance();
        QVERIFY(QTest::qWaitFor([&] { return connection && connection->isLocalManagmentConnected(); }, 10000));
        const auto saved = SyncCommand::run(QStringLiteral("SaveStorage"),
            {{QStringLiteral("ID"), m_account.toString()}, {QStringLiteral("displayName"), QStringLiteral("Disk")},
                {QStringLiteral("type"), 1}, {QStringLiteral("prefix"), QStringLiteral("tester")},
                {QStringLiteral("params"),
                    QJsonObject {{QStringLiteral("Path"), m_storage.path() + QLatin1Char('/')}}}});
        QVERIFY2(saved.answered && !saved.isError, qPrintable(saved.errorString));
    }

    void cleanupTestCase()
    {
        if (m_engine)
            QVERIFY(m_engine->stop());
        delete m_engine;
    }

    void shouldRetryPassingStorageFailuresOnly()
    {
        NVB::Engine::RetryPolicy policy;
        policy.set(3, 10);
        int calls = 0;
        QCOMPARE(policy.run([&] { return ++calls < 3 ? ETIMEDOUT : 0; }), 0);
        QCOMPARE(calls, 3);
        calls = 0;
        QCOMPARE(policy.run([&] { return ++calls, ESTALE; }), ESTALE);
        QCOMPARE(calls, 3);
        calls = 0;
        QCOMPARE(policy.run([&] { return ++calls, ENOSPC; }), ENOSPC);
        QCOMPARE(calls, 1);
    }

    void shouldTreatSymlinksAsTheSettingSays_data()
    {
        QTest::addColumn<QString>("setting");
        QTest::addColumn<int>("files"); // links kept as links are no files
        QTest::addColumn<int>("links");
        QTest::newRow("originals instead of links") << QStringLiteral("2") << 2 << 0;
        QTest::newRow("links only") << QStringLiteral("3") << 1 << 1;
        QTest::newRow("no links") << QStringLiteral("4") << 1 << 0;
    }

    void shouldTreatSymlinksAsTheSettingSays()
    {
        QFETCH(QString, setting);
        QFETCH(int, files);
        QFETCH(int, links);
        QTemporaryDir source;
        write(source.filePath(QStringLiteral("original.txt")), "the original");
        QVERIFY(
            QFile::link(source.filePath(QStringLiteral("original.txt")), source.filePath(QStringLiteral("link.txt"))));
        QVERIFY(set(QStringLiteral("BackupSymlink"), setting));
        const QUuid plan = savePlan(QStringLiteral("Links"), source.path());
        QVERIFY(runToEnd(plan));
        const QJsonObject info
            = SyncCommand::run(QStringLiteral("PlanGetInfo"), {{QStringLiteral("id"), plan.toString()}})
                  .data.value(QStringLiteral("planInfo"))
                  .toObject();
        QCOMPARE(info.value(QStringLiteral("LastFileCount")).toInt(), files);
        // What the point holds of the link, read from the engine's store.
        {
            QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("links"));
            db.setDatabaseName(m_engine->dataDirectory() + QStringLiteral("/nvbackup.db"));
            db.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
            QVERIFY(db.open());
            QSqlQuery query(db);
            QVERIFY(query.prepare(QStringLiteral("SELECT COUNT(*) FROM contents WHERE path=? AND type=3")));
            query.addBindValue(source.filePath(QStringLiteral("link.txt")));
            QVERIFY(query.exec() && query.next());
            QCOMPARE(query.value(0).toInt(), links);
        }
        QSqlDatabase::removeDatabase(QStringLiteral("links"));
    }

    void shouldHoldBackupsToTheLocalBandwidthSetWhileRunning()
    {
        QTemporaryDir source;
        QByteArray data(5 << 20, Qt::Uninitialized);
        QRandomGenerator(19).generate(
            reinterpret_cast<quint32*>(data.data()), reinterpret_cast<quint32*>(data.data() + data.size()));
        write(source.filePath(QStringLiteral("five.bin")), data);
        const QUuid plan = savePlan(QStringLiteral("Throttled"), source.path());
        // 1024 KByte/s: five MiB need about five seconds.
        QVERIFY(set(QStringLiteral("Local Bandwidth"), QStringLiteral("1024")));
        QElapsedTimer clock;
        clock.start();
        QVERIFY(runToEnd(plan));
        QVERIFY2(clock.elapsed() >= 4000, qPrintable(QString::number(clock.elapsed())));
        QVERIFY(set(QStringLiteral("Local Bandwidth"), QStringLiteral("-1")));
    }

    void shouldServeThePlansOverHttpsOnlyWhileEnabledAndProtected()
    {
        QTemporaryDir source;
        const QUuid plan = savePlan(QStringLiteral("Nightly documents"), source.path());
        QTcpServer probe;
        probe.listen(QHostAddress::LocalHost);
        const quint16 port = probe.serverPort();
        probe.close();
        QVERIFY(m_settings->setWebAccessHttpsPort(QString::number(port)));
        QVERIFY(set(QStringLiteral("WebAccessUseHttps"), QStringLiteral("true")));
        QVERIFY2(!isOpen(port), "no master password, no web access");
        QVERIFY(m_settings->setMasterPassword(SHARED::cryptNS::encrypt_local_password(QStringLiteral("open sesame"))));
        QVERIFY(QTest::qWaitFor([&] { return isOpen(port); }, 10000));

        QTemporaryDir client;
        const QString jar = client.filePath(QStringLiteral("cookies"));
        const QString base = QStringLiteral("https://127.0.0.1:%1").arg(port);
        QVERIFY(curl({QStringLiteral("-d"), QStringLiteral("password=wrong"), base + QStringLiteral("/api/login")}, jar)
                    .contains("wrong"));
        QVERIFY(curl({base + QStringLiteral("/api/plans")}, jar).contains("Log in first"));
        // The browser gets a session of its own from a one-time login link.
        const QString ticket
            = QJsonDocument::fromJson(curl({QStringLiteral("--data-urlencode"), QStringLiteral("password=open sesame"),
                                               base + QStringLiteral("/api/login")},
                                          jar))
                  .object()
                  .value(QStringLiteral("ticket"))
                  .toString();
        QVERIFY(!ticket.isEmpty());
        QProcess chromium;
        chromium.start(QStringLiteral("/usr/bin/chromium"),
            {QStringLiteral("--headless"), QStringLiteral("--no-sandbox"), QStringLiteral("--disable-gpu"),
                QStringLiteral("--ignore-certificate-errors"),
                QStringLiteral("--user-data-dir=") + client.filePath(QStringLiteral("profile")),
                QStringLiteral("--dump-dom"), base + QStringLiteral("/login?ticket=") + ticket});
        QVERIFY(chromium.waitForFinished(90000));
        const QByteArray dom = chromium.readAllStandardOutput();
        QVERIFY2(
            dom.contains("id=\"plans\"") && dom.contains("Nightly documents") && dom.contains("Idle"), dom.constData());

        // Started through the JSON endpoint, the run is in the history.
        const QString id = plan.toString(QUuid::WithoutBraces);
        QVERIFY(curl(
            {QStringLiteral("-X"), QStringLiteral("POST"), base + QStringLiteral("/api/plans/%1/start").arg(id)}, jar)
                    .contains("\"ok\":true"));
        QVERIFY(QTest::qWaitFor(
            [&] {
                return QJsonDocument::fromJson(curl({base + QStringLiteral("/api/plans/%1/history").arg(id)}, jar))
                           .object()
                           .value(QStringLiteral("runs"))
                           .toArray()
                           .size()
                    == 1;
            },
            30000));
        QVERIFY(m_settings->setWebAccessUseHttps(QStringLiteral("false")));
        QVERIFY(QTest::qWaitFor([&] { return !isOpen(port); }, 10000));

        // Plain HTTP from elsewhere: sent to HTTPS, or refused while it is off.
        NVB::Engine::WebInterface web(nullptr, [] { return QString(); });
        NVB::Engine::WebRequest remote;
        remote.method = "GET";
        remote.path = QStringLiteral("/plans");
        remote.headers.insert("host", "backup.example:8080");
        QCOMPARE(web.answer(remote, 0).status, 403);
        QCOMPARE(web.answer(remote, 8443).headers.value(0).second, QByteArray("https://backup.example:8443/plans"));
    }

    void shouldKeepTheOldDatabaseWhenTheNewPlaceIsUnfit_data()
    {
        QTest::addColumn<QString>("mountOptions");
        QTest::addColumn<QString>("reason");
        QTest::newRow("read-only folder") << QStringLiteral("ro,size=4m") << QStringLiteral("Read-only");
        QTest::newRow("full disk") << QStringLiteral("size=16k") << QStringLiteral("No space");
    }

    void shouldKeepTheOldDatabaseWhenTheNewPlaceIsUnfit()
    {
        QFETCH(QString, mountOptions);
        QFETCH(QString, reason);
        const QString folder = m_places.filePath(QStringLiteral("unfit"));
        QDir().mkpath(folder);
        if (::geteuid() != 0
            || QProcess::execute(QStringLiteral("mount"),
                   {QStringLiteral("-t"), QStringLiteral("tmpfs"), QStringLiteral("-o"), mountOptions,
                       QStringLiteral("nvbtest"), folder})
                != 0)
            QSKIP("a read-only or full file system needs root and tmpfs");
        const QByteArray before = snapshot();
        const auto refused = SyncCommand::run(
            QStringLiteral("MoveDatabase"), {{QStringLiteral("Path"), folder + QStringLiteral("/nvbackup.db")}});
        QProcess::execute(QStringLiteral("umount"), {folder});
        QVERIFY2(refused.isError && refused.errorString.contains(reason), qPrintable(refused.errorString));
        QCOMPARE(snapshot(), before);
        // Still working on the old file.
        QTemporaryDir source;
        QVERIFY(runToEnd(savePlan(QStringLiteral("After"), source.path())));
        QVERIFY(snapshot() != before);
    }

    void shouldMoveEveryPlanAndHistoryRowAndStartThereAgain()
    {
        const QByteArray before = snapshot();
        QVERIFY(before.contains("Nightly documents") && before.contains("HistoryListByPlan\":[{"));
        const QString target = m_places.filePath(QStringLiteral("elsewhere/nvbackup.db"));
        const auto moved = SyncCommand::run(QStringLiteral("MoveDatabase"), {{QStringLiteral("Path"), target}});
        QVERIFY2(moved.answered && !moved.isError, qPrintable(moved.errorString));
        QVERIFY(QFile::exists(target) && !QFile::exists(m_engine->dataDirectory() + QStringLiteral("/nvbackup.db")));
        QCOMPARE(snapshot(), before);
        // A console that has not read the new place yet saves another key;
        // the engine still opens the moved store at its next start.
        QVERIFY(m_settings->setLogsRotateTimeout(QStringLiteral("31")));
        QVERIFY(m_engine->stop());
        QVERIFY2(m_engine->start(), m_engine->output().constData());
        QVERIFY(QTest::qWaitFor(
            [] {
                const auto reply = SyncCommand::run(QStringLiteral("PlanGetList"), {}, 1000);
                return reply.answered && !reply.isError;
            },
            20000));
        QCOMPARE(snapshot(), before);
    }
};

NVB_TEST_GUILESS_MAIN(TestEngineSettings)
#include "tst_enginesettings.moc"
