#include <unistd.h>

#include <QJsonArray>
#include <QProcess>
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

// Moving the real engine's database with the MoveDatabase command.
class TestDatabaseMove : public QObject
{
    Q_OBJECT

private:
    EngineProcess* m_engine = nullptr;
    QTemporaryDir m_storage;
    QTemporaryDir m_source;
    QTemporaryDir m_places;
    QList<QUuid> m_plans;
    bool m_idle = false;

    static SyncCommand::Result move(const QString& path)
    {
        return SyncCommand::run(QStringLiteral("MoveDatabase"), {{QStringLiteral("Path"), path}}, 30000);
    }

    // What the console sees of plans and history.
    static QByteArray snapshot()
    {
        QByteArray text;
        for (const char* command : {"PlanGetList", "HistoryListByPlan", "HistoryListByFiles"})
            text += QJsonDocument(SyncCommand::run(QString::fromLatin1(command)).data).toJson(QJsonDocument::Compact);
        return text;
    }

    static bool mount(const QString& options, const QString& folder)
    {
        QDir().mkpath(folder);
        return QProcess::execute(QStringLiteral("mount"),
                   {QStringLiteral("-t"), QStringLiteral("tmpfs"), QStringLiteral("-o"), options,
                       QStringLiteral("nvbtest"), folder})
            == 0;
    }

    static void unmount(const QString& folder) { QProcess::execute(QStringLiteral("umount"), {folder}); }

private slots:
    void initTestCase()
    {
        m_engine = new EngineProcess(NvbTest::TestEnvironment::current()->home());
        QVERIFY2(m_engine->start(), m_engine->output().constData());
        m_engine->exportSocketPath();
        connect(NVB::Common::Communication::NotificationCenter::instance(),
            &NVB::Common::Communication::NotificationCenter::notification, this, [this](const QJsonDocument& note) {
                if (QUuid(note.object().value(QLatin1String(Format::Header::Type)).toString()) == Format::Plan::StateChange::Type
                    && note.object().value(QLatin1String(Format::Header::Message)).toObject().value(QStringLiteral("state")).toInt() == 2)
                    m_idle = true;
            });
        const auto connection = NVB::Common::Communication::ConnectionManager::instance();
        QVERIFY(QTest::qWaitFor([&] { return connection && connection->isLocalManagmentConnected(); }, 10000));
        const QUuid account = QUuid::createUuid();
        QVERIFY(!SyncCommand::run(QStringLiteral("SaveStorage"),
            {{QStringLiteral("ID"), account.toString()}, {QStringLiteral("displayName"), QStringLiteral("Disk")},
                {QStringLiteral("type"), 1}, {QStringLiteral("prefix"), QStringLiteral("tester")},
                {QStringLiteral("params"), QJsonObject {{QStringLiteral("Path"), m_storage.path() + QLatin1Char('/')}}}})
                     .isError);
        QFile file(m_source.filePath(QStringLiteral("letter.txt")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("Dear reader");
        file.close();
        for (const char* name : {"Documents", "Photos"}) {
            NVB::Info::Plan::BackupFile plan;
            plan.setId(QUuid::createUuid());
            plan.setName(QString::fromLatin1(name));
            plan.setIsArchive(false);
            plan.setStorage(account);
            plan.setItems({m_source.path()});
            QVERIFY(!SyncCommand::run(QStringLiteral("CommonPlanEdit"),
                {{QStringLiteral("ID"), plan.id().toString()}, {QStringLiteral("planXML"), plan.toXml()}})
                         .isError);
            m_plans << plan.id();
        }
        m_idle = false;
        QVERIFY(!SyncCommand::run(QStringLiteral("PlanExecuteStart"), {{QStringLiteral("ID"), m_plans.first().toString()}}).isError);
        QVERIFY(QTest::qWaitFor([&] { return m_idle; }, 30000));
    }

    void cleanupTestCase()
    {
        if (m_engine)
            QVERIFY(m_engine->stop());
        delete m_engine;
    }

    void shouldRefuseUnfitPlacesAndKeepTheOldFile_data()
    {
        QTest::addColumn<QString>("mountOptions");
        QTest::addColumn<QString>("reason");
        QTest::newRow("read-only folder") << QStringLiteral("ro,size=4m") << QStringLiteral("Read-only");
        QTest::newRow("full disk") << QStringLiteral("size=16k") << QStringLiteral("No space");
    }

    void shouldRefuseUnfitPlacesAndKeepTheOldFile()
    {
        QFETCH(QString, mountOptions);
        QFETCH(QString, reason);
        if (::geteuid() != 0)
            QSKIP("a read-only or full file system needs root to mount");
        const QString folder = m_places.filePath(QStringLiteral("unfit"));
        if (!mount(mountOptions, folder))
            QSKIP("tmpfs cannot be mounted here");
        const QByteArray before = snapshot();
        const SyncCommand::Result refused = move(folder + QStringLiteral("/nvbackup.db"));
        unmount(folder);
        QVERIFY(refused.isError);
        QVERIFY2(refused.errorString.contains(reason), qPrintable(refused.errorString));
        QVERIFY(QFile::exists(m_engine->dataDirectory() + QStringLiteral("/nvbackup.db")));
        QCOMPARE(snapshot(), before);
        // Still working: a change is stored.
        m_idle = false;
        QVERIFY(!SyncCommand::run(QStringLiteral("PlanExecuteStart"), {{QStringLiteral("ID"), m_plans.last().toString()}}).isError);
        QVERIFY(QTest::qWaitFor([&] { return m_idle; }, 30000));
    }

    void shouldMoveEveryPlanAndHistoryRowAndStartThereAgain()
    {
        const QByteArray before = snapshot();
        QVERIFY(before.contains("Documents") && before.contains("Photos"));
        const QString target = m_places.filePath(QStringLiteral("elsewhere/store/nvbackup.db"));
        const SyncCommand::Result moved = move(target);
        QVERIFY2(moved.answered && !moved.isError, qPrintable(moved.errorString));
        QVERIFY(QFile::exists(target));
        QVERIFY(!QFile::exists(m_engine->dataDirectory() + QStringLiteral("/nvbackup.db")));
        QCOMPARE(snapshot(), before);
        NVB::DefaultSettings::instance()->reload();
        QCOMPARE(NVB::DefaultSettings::instance()->value(QStringLiteral("DatabasePath")), target);

        // The engine opens the moved store at its next start.
        QVERIFY(m_engine->stop());
        QVERIFY2(m_engine->start(), m_engine->output().constData());
        QVERIFY(QTest::qWaitFor(
            [] {
                const auto reply = SyncCommand::run(QStringLiteral("PlanGetList"), {}, 1000);
                return reply.answered && !reply.isError;
            },
            20000));
        QCOMPARE(snapshot(), before);
        QVERIFY(!QFile::exists(m_engine->dataDirectory() + QStringLiteral("/nvbackup.db")));
    }
};

NVB_TEST_GUILESS_MAIN(TestDatabaseMove)
#include "tst_databasemove.moc"
