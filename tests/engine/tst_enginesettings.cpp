#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QtTest>

#include "engineprocess.h"
#include "records/plan/backupfile.h"
#include "service/connectionmanager.h"
#include "service/notification/format.h"
#include "service/notificationcenter.h"
#include "stores/defaultsettings.h"
#include "synccommand.h"
#include "testenvironment.h"
#include "testmain.h"

using NvbTest::EngineProcess;
using NvbTest::SyncCommand;
namespace Format = NVB::Common::Communication::Notification::Format;

// Default settings written by the console's process while the real engine
// runs: the engine takes them without a restart.
class TestEngineSettings : public QObject
{
    Q_OBJECT

private:
    EngineProcess* m_engine = nullptr;
    QTemporaryDir m_storage;
    QUuid m_account = QUuid::createUuid();
    QList<QJsonObject> m_notifications;

    bool waitForSettingNote(const QString& key)
    {
        return QTest::qWaitFor(
            [&] {
                for (const QJsonObject& note : std::as_const(m_notifications)) {
                    if (QUuid(note.value(QLatin1String(Format::Header::Type)).toString())
                            == Format::System::DefaultSettingsChanged::Type
                        && note.value(QLatin1String(Format::Header::Message))
                                .toObject()
                                .value(QLatin1String(Format::System::DefaultSettingsChanged::Property))
                                .toString()
                            == key)
                        return true;
                }
                return false;
            },
            10000);
    }

    bool runToEnd(const QUuid& plan)
    {
        m_notifications.clear();
        const auto reply
            = SyncCommand::run(QStringLiteral("PlanExecuteStart"), {{QStringLiteral("ID"), plan.toString()}});
        return reply.answered && !reply.isError
            && QTest::qWaitFor(
                [&] {
                    for (const QJsonObject& note : std::as_const(m_notifications)) {
                        const QJsonObject message = note.value(QLatin1String(Format::Header::Message)).toObject();
                        if (QUuid(note.value(QLatin1String(Format::Header::Type)).toString())
                                == Format::Plan::StateChange::Type
                            && message.value(QStringLiteral("state")).toInt() == 2)
                            return true;
                    }
                    return false;
                },
                60000);
    }

private slots:
    void initTestCase()
    {
        // The engine shares this process's configuration, as it shares the
        // console's on a real machine.
        m_engine = new EngineProcess(NvbTest::TestEnvironment::current()->home());
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
                {QStringLiteral("params"), QJsonObject {{QStringLiteral("Path"), m_storage.path() + QLatin1Char('/')}}}});
        QVERIFY2(saved.answered && !saved.isError, qPrintable(saved.errorString));
    }

    void cleanupTestCase()
    {
        if (m_engine)
            QVERIFY(m_engine->stop());
        delete m_engine;
    }

    void shouldTreatSymlinksAsTheSettingSays_data()
    {
        QTest::addColumn<QString>("setting");
        QTest::addColumn<int>("files"); // links kept as links are no files
        QTest::newRow("originals instead of links") << QStringLiteral("2") << 2;
        QTest::newRow("links only") << QStringLiteral("3") << 1;
    }

    void shouldTreatSymlinksAsTheSettingSays()
    {
        QFETCH(QString, setting);
        QFETCH(int, files);
        QTemporaryDir source;
        QFile original(source.filePath(QStringLiteral("original.txt")));
        QVERIFY(original.open(QIODevice::WriteOnly));
        original.write("the original");
        original.close();
        QVERIFY(QFile::link(original.fileName(), source.filePath(QStringLiteral("shortcut.txt"))));
        m_notifications.clear();
        QVERIFY(NVB::DefaultSettings::instance()->setBackupSymlink(setting));
        QVERIFY(waitForSettingNote(QStringLiteral("BackupSymlink")));

        NVB::Info::Plan::BackupFile plan;
        plan.setId(QUuid::createUuid());
        plan.setName(QStringLiteral("Links"));
        plan.setIsArchive(false);
        plan.setStorage(m_account);
        plan.setItems({source.path()});
        plan.setUseCompression(false);
        QVERIFY(!SyncCommand::run(QStringLiteral("CommonPlanEdit"),
            {{QStringLiteral("ID"), plan.id().toString()}, {QStringLiteral("planXML"), plan.toXml()}}).isError);
        QVERIFY(runToEnd(plan.id()));
        const QJsonObject info = SyncCommand::run(QStringLiteral("PlanGetInfo"), {{QStringLiteral("id"), plan.id().toString()}})
                                     .data.value(QStringLiteral("planInfo")).toObject();
        QCOMPARE(info.value(QStringLiteral("LastFileCount")).toInt(), files);
    }

    void shouldHoldBackupsToTheLocalBandwidthSetWhileRunning()
    {
        QTemporaryDir source;
        QFile file(source.filePath(QStringLiteral("five.bin")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QByteArray data(5 << 20, Qt::Uninitialized);
        QRandomGenerator(19).generate(reinterpret_cast<quint32*>(data.data()),
            reinterpret_cast<quint32*>(data.data() + data.size()));
        file.write(data);
        file.close();

        NVB::Info::Plan::BackupFile plan;
        plan.setId(QUuid::createUuid());
        plan.setName(QStringLiteral("Throttled"));
        plan.setIsArchive(false);
        plan.setStorage(m_account);
        plan.setItems({source.path()});
        plan.setUseCompression(false);
        const auto reply = SyncCommand::run(QStringLiteral("CommonPlanEdit"),
            {{QStringLiteral("ID"), plan.id().toString()}, {QStringLiteral("planXML"), plan.toXml()}});
        QVERIFY2(reply.answered && !reply.isError, qPrintable(reply.errorString));

        // 1024 KByte/s: five MiB need about five seconds.
        m_notifications.clear();
        QVERIFY(NVB::DefaultSettings::instance()->setLocalBandwidth(QStringLiteral("1024")));
        QVERIFY(waitForSettingNote(QStringLiteral("Local Bandwidth")));
        QElapsedTimer clock;
        clock.start();
        QVERIFY(runToEnd(plan.id()));
        QVERIFY2(clock.elapsed() >= 4000, qPrintable(QString::number(clock.elapsed())));

        // Lifted again without a restart.
        m_notifications.clear();
        QVERIFY(NVB::DefaultSettings::instance()->setLocalBandwidth(QStringLiteral("-1")));
        QVERIFY(waitForSettingNote(QStringLiteral("Local Bandwidth")));
        QFile more(source.filePath(QStringLiteral("more.bin")));
        QVERIFY(more.open(QIODevice::WriteOnly));
        more.write(data);
        more.close();
        clock.restart();
        QVERIFY(runToEnd(plan.id()));
        QVERIFY2(clock.elapsed() < 4000, qPrintable(QString::number(clock.elapsed())));
    }
};

NVB_TEST_GUILESS_MAIN(TestEngineSettings)
#include "tst_enginesettings.moc"
