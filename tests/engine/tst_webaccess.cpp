#include <QJsonDocument>
#include <QProcess>
#include <QTcpServer>
#include <QTcpSocket>
#include <QtTest>

#include "crypt/cryptns.h"
#include "engineprocess.h"
#include "records/plan/backupfile.h"
#include "service/connectionmanager.h"
#include "service/notification/format.h"
#include "service/notificationcenter.h"
#include "stores/defaultsettings.h"
#include "synccommand.h"
#include "testenvironment.h"
#include "testmain.h"
#include "web/webinterface.h"

using NvbTest::EngineProcess;
using NvbTest::SyncCommand;
namespace Format = NVB::Common::Communication::Notification::Format;

// The web interface of the real engine, switched by the settings this
// process writes as the console does, and looked at by a real browser.
class TestWebAccess : public QObject
{
    Q_OBJECT

private:
    EngineProcess* m_engine = nullptr;
    QTemporaryDir m_storage;
    QTemporaryDir m_source;
    QUuid m_plan = QUuid::createUuid();
    QList<QJsonObject> m_notifications;

    static quint16 freePort()
    {
        QTcpServer probe;
        probe.listen(QHostAddress::LocalHost);
        return probe.serverPort();
    }

    static bool isOpen(quint16 port)
    {
        QTcpSocket socket;
        socket.connectToHost(QHostAddress::LocalHost, port);
        return socket.waitForConnected(1000);
    }

    bool settingApplied(const QString& key)
    {
        return QTest::qWaitFor(
            [&] {
                for (const QJsonObject& note : std::as_const(m_notifications)) {
                    if (QUuid(note.value(QLatin1String(Format::Header::Type)).toString())
                            == Format::System::DefaultSettingsChanged::Type
                        && note.value(QLatin1String(Format::Header::Message)).toObject().value(QStringLiteral("PropertyName")).toString() == key)
                        return true;
                }
                return false;
            },
            10000);
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

private slots:
    void initTestCase()
    {
        qputenv("NVB_WEB_ADDRESS", "127.0.0.1");
        m_engine = new EngineProcess(NvbTest::TestEnvironment::current()->home());
        QVERIFY2(m_engine->start(), m_engine->output().constData());
        m_engine->exportSocketPath();
        connect(NVB::Common::Communication::NotificationCenter::instance(),
            &NVB::Common::Communication::NotificationCenter::notification, this,
            [this](const QJsonDocument& document) { m_notifications.append(document.object()); });
        const auto connection = NVB::Common::Communication::ConnectionManager::instance();
        QVERIFY(QTest::qWaitFor([&] { return connection && connection->isLocalManagmentConnected(); }, 10000));
        const QUuid account = QUuid::createUuid();
        const auto saved = SyncCommand::run(QStringLiteral("SaveStorage"),
            {{QStringLiteral("ID"), account.toString()}, {QStringLiteral("displayName"), QStringLiteral("Disk")},
                {QStringLiteral("type"), 1}, {QStringLiteral("prefix"), QStringLiteral("tester")},
                {QStringLiteral("params"), QJsonObject {{QStringLiteral("Path"), m_storage.path() + QLatin1Char('/')}}}});
        QVERIFY2(saved.answered && !saved.isError, qPrintable(saved.errorString));
        NVB::Info::Plan::BackupFile plan;
        plan.setId(m_plan);
        plan.setName(QStringLiteral("Nightly documents"));
        plan.setIsArchive(false);
        plan.setStorage(account);
        plan.setItems({m_source.path()});
        const auto edited = SyncCommand::run(QStringLiteral("CommonPlanEdit"),
            {{QStringLiteral("ID"), m_plan.toString()}, {QStringLiteral("planXML"), plan.toXml()}});
        QVERIFY2(edited.answered && !edited.isError, qPrintable(edited.errorString));
    }

    void cleanupTestCase()
    {
        if (m_engine)
            QVERIFY(m_engine->stop());
        delete m_engine;
    }

    void shouldServeThePlansOverHttpsOnlyWhileEnabledAndProtected()
    {
        NVB::DefaultSettings* settings = NVB::DefaultSettings::instance();
        const quint16 port = freePort();
        QVERIFY(settings->setWebAccessHttpsPort(QString::number(port)));
        QVERIFY(settings->setWebAccessUseHttps(QStringLiteral("true")));
        QVERIFY(settingApplied(QStringLiteral("WebAccessUseHttps")));
        QVERIFY2(!isOpen(port), "no master password, no web access");

        QVERIFY(settings->setMasterPassword(SHARED::cryptNS::encrypt_local_password(QStringLiteral("open sesame"))));
        QVERIFY(QTest::qWaitFor([&] { return isOpen(port); }, 10000));

        QTemporaryDir client;
        const QString jar = client.filePath(QStringLiteral("cookies"));
        const QString base = QStringLiteral("https://127.0.0.1:%1").arg(port);
        const QByteArray refused = curl({QStringLiteral("-d"), QStringLiteral("password=wrong"), base + QStringLiteral("/api/login")}, jar);
        QVERIFY2(refused.contains("wrong"), refused.constData());
        QVERIFY(curl({base + QStringLiteral("/api/plans")}, jar).contains("Log in first"));

        // The browser gets its own session from a one-time login link.
        const QJsonObject login = QJsonDocument::fromJson(curl({QStringLiteral("--data-urlencode"),
            QStringLiteral("password=open sesame"), base + QStringLiteral("/api/login")}, jar)).object();
        const QString ticket = login.value(QStringLiteral("ticket")).toString();
        QVERIFY2(!ticket.isEmpty(), qPrintable(QJsonDocument(login).toJson()));
        QProcess chromium;
        chromium.start(QStringLiteral("/usr/bin/chromium"),
            {QStringLiteral("--headless"), QStringLiteral("--no-sandbox"), QStringLiteral("--disable-gpu"),
                QStringLiteral("--ignore-certificate-errors"),
                QStringLiteral("--user-data-dir=") + client.filePath(QStringLiteral("profile")),
                QStringLiteral("--dump-dom"), base + QStringLiteral("/login?ticket=") + ticket});
        QVERIFY(chromium.waitForFinished(90000));
        const QByteArray dom = chromium.readAllStandardOutput();
        QVERIFY2(dom.contains("id=\"plans\"") && dom.contains("Nightly documents") && dom.contains("Idle"),
            dom.constData());

        // For the documentation's picture of the page.
        if (qEnvironmentVariableIsSet("NVB_WEB_SCREENSHOT")) {
            const QString again = QJsonDocument::fromJson(curl({QStringLiteral("--data-urlencode"),
                QStringLiteral("password=open sesame"), base + QStringLiteral("/api/login")}, jar)).object().value(QStringLiteral("ticket")).toString();
            chromium.start(QStringLiteral("/usr/bin/chromium"),
                {QStringLiteral("--headless"), QStringLiteral("--no-sandbox"), QStringLiteral("--disable-gpu"),
                    QStringLiteral("--ignore-certificate-errors"), QStringLiteral("--window-size=1000,420"),
                    QStringLiteral("--user-data-dir=") + client.filePath(QStringLiteral("profile")),
                    QStringLiteral("--screenshot=") + qEnvironmentVariable("NVB_WEB_SCREENSHOT"),
                    base + QStringLiteral("/login?ticket=") + again});
            chromium.waitForFinished(90000);
        }

        // Start through the JSON endpoint, then the run is in the history.
        const QString id = m_plan.toString(QUuid::WithoutBraces);
        QVERIFY(curl({QStringLiteral("-X"), QStringLiteral("POST"), base + QStringLiteral("/api/plans/%1/start").arg(id)}, jar)
                    .contains("\"ok\":true"));
        QVERIFY(QTest::qWaitFor(
            [&] {
                return QJsonDocument::fromJson(curl({base + QStringLiteral("/api/plans/%1/history").arg(id)}, jar))
                           .object().value(QStringLiteral("runs")).toArray().size() == 1;
            },
            30000));

        QVERIFY(settings->setWebAccessUseHttps(QStringLiteral("false")));
        QVERIFY(QTest::qWaitFor([&] { return !isOpen(port); }, 10000));
    }

    void shouldSendRemotePlainHttpToHttps()
    {
        NVB::Engine::WebInterface web(nullptr, [] { return QString(); });
        NVB::Engine::WebRequest request;
        request.method = "GET";
        request.path = QStringLiteral("/plans");
        request.headers.insert("host", "backup.example:8080");
        QCOMPARE(web.answer(request, 0).status, 403);
        const NVB::Engine::WebResponse moved = web.answer(request, 8443);
        QCOMPARE(moved.status, 303);
        QCOMPARE(moved.headers.value(0).second, QByteArray("https://backup.example:8443/plans"));
    }
};

NVB_TEST_GUILESS_MAIN(TestWebAccess)
#include "tst_webaccess.moc"
