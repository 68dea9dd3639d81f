#include <unistd.h>

#include <QStorageInfo>
#include <QtTest>

#include <memory>

#include "engineprocess.h"
#include "records/plan/backupfile.h"
#include "records/plan/planresult.h"
#include "runs/filerestorejob.h"
#include "service/connectionmanager.h"
#include "store/enginestore.h"
#include "synccommand.h"
#include "testmain.h"

using NVB::Info::Plan::PlanResult;
using NvbTest::EngineProcess;
using NvbTest::SyncCommand;
using namespace NVB::Engine;

// A File System account on a small volume of its own that runs full in the
// middle of a run.
class TestEngineFullDisk : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    QString m_loop;
    QString m_mount;
    bool m_mounted = false;
    std::unique_ptr<EngineProcess> m_engine;

    static bool runTool(const QString& program, const QStringList& arguments, QString* output = nullptr)
    {
        QProcess process;
        process.start(program, arguments);
        if (!process.waitForFinished(30000) || process.exitStatus() != QProcess::NormalExit
            || process.exitCode() != 0) {
            qWarning() << program << arguments << process.readAllStandardError();
            return false;
        }
        if (output)
            *output = QString::fromLocal8Bit(process.readAllStandardOutput()).trimmed();
        return true;
    }

    static bool connected()
    {
        const auto connection = NVB::Common::Communication::ConnectionManager::instance();
        return connection && connection->isLocalManagmentConnected();
    }

    static QByteArray writeFile(const QString& path, int size, char fill)
    {
        QDir().mkpath(QFileInfo(path).absolutePath());
        QFile file(path);
        const QByteArray data(size, fill);
        if (!file.open(QIODevice::WriteOnly) || file.write(data) != size)
            return {};
        return data;
    }

    int runPlan(const QUuid& plan, QString* message)
    {
        const auto started
            = SyncCommand::run(QStringLiteral("PlanExecuteStart"), {{QStringLiteral("ID"), plan.toString()}});
        if (started.isError)
            return -1;
        QJsonObject info;
        const bool ended = QTest::qWaitFor(
            [&] {
                info = SyncCommand::run(QStringLiteral("PlanGetInfo"), {{QStringLiteral("id"), plan.toString()}})
                           .data.value(QStringLiteral("planInfo"))
                           .toObject();
                return info.value(QStringLiteral("Status")).toInt() == 2;
            },
            60000);
        if (!ended)
            return -1;
        *message = info.value(QStringLiteral("LastRunMessage")).toString();
        return info.value(QStringLiteral("LastRunStatus")).toInt();
    }

private slots:
    void initTestCase()
    {
        if (::geteuid() != 0 || !QFile::exists(QStringLiteral("/dev/loop-control")))
            QSKIP("A loop-mounted volume needs root and /dev/loop-control; the full-disk test is skipped");
        const QString image = m_dir.filePath(QStringLiteral("volume.img"));
        m_mount = m_dir.filePath(QStringLiteral("volume"));
        QDir().mkpath(m_mount);
        QVERIFY(runTool(QStringLiteral("truncate"), {QStringLiteral("-s"), QStringLiteral("64M"), image}));
        if (!runTool(QStringLiteral("losetup"), {QStringLiteral("-f"), QStringLiteral("--show"), image}, &m_loop))
            QSKIP("No loop device could be attached here; the full-disk test is skipped");
        QVERIFY(runTool(QStringLiteral("mkfs.ext4"), {QStringLiteral("-q"), m_loop}));
        QVERIFY(runTool(QStringLiteral("mount"), {m_loop, m_mount}));
        m_mounted = true;
    }

    void cleanupTestCase()
    {
        if (m_engine)
            m_engine->stop();
        m_engine.reset();
        if (m_mounted)
            runTool(QStringLiteral("umount"), {m_mount});
        if (!m_loop.isEmpty())
            runTool(QStringLiteral("losetup"), {QStringLiteral("-d"), m_loop});
    }

    void shouldFailCleanlyWhenTheStorageRunsFull()
    {
        QTemporaryDir home;
        QTemporaryDir source;
        qputenv("NVB_ENGINE_SOCKET", (home.path() + QStringLiteral("/run/engine.sock")).toUtf8());
        m_engine = std::make_unique<EngineProcess>(home.path());
        QVERIFY2(m_engine->start(), m_engine->output().constData());
        QVERIFY(QTest::qWaitFor(connected, 10000));

        const QUuid account = QUuid::createUuid();
        QVERIFY(!SyncCommand::run(QStringLiteral("SaveStorage"),
            {{QStringLiteral("ID"), account.toString()}, {QStringLiteral("displayName"), QStringLiteral("Small drive")},
                {QStringLiteral("type"), 1}, {QStringLiteral("prefix"), QStringLiteral("full")},
                {QStringLiteral("params"), QJsonObject {{QStringLiteral("Path"), m_mount + QLatin1Char('/')}}}})
                     .isError);
        NVB::Info::Plan::BackupFile plan;
        plan.setIsArchive(false); // checks the legacy layout on the storage
        plan.setId(QUuid::createUuid());
        plan.setName(QStringLiteral("Too much"));
        plan.setStorage(account);
        plan.setItems({source.path()});
        plan.setUseCompression(false);
        QVERIFY(!SyncCommand::run(QStringLiteral("CommonPlanEdit"),
            {{QStringLiteral("ID"), plan.id().toString()}, {QStringLiteral("planXML"), plan.toXml()}})
                     .isError);

        QMap<QString, QByteArray> first;
        for (int i = 0; i < 8; ++i) {
            const QString path = source.filePath(QStringLiteral("first/%1.bin").arg(i));
            first.insert(path, writeFile(path, 1 << 20, char('a' + i)));
        }
        QString message;
        QCOMPARE(runPlan(plan.id(), &message), int(PlanResult::Success));
        const qint64 freeAfterFirst = QStorageInfo(m_mount).bytesAvailable();

        // Far more than the volume holds, the first files of which fit.
        for (int i = 0; i < 90; ++i)
            QVERIFY(!writeFile(source.filePath(QStringLiteral("second/%1.bin").arg(i)), 1 << 20, 'z').isEmpty());
        QCOMPARE(runPlan(plan.id(), &message), int(PlanResult::Failed));
        QVERIFY2(message.contains(QStringLiteral("No space left")), qPrintable(message));
        QVERIFY2(message.contains(QStringLiteral("storage")), qPrintable(message));

        // The failed run left nothing: no temporary object, no copies that
        // no restore point names, so the space is back.
        QStringList stored;
        QDirIterator it(m_mount + QStringLiteral("/NVB_full"), QDir::Files | QDir::Hidden | QDir::System,
            QDirIterator::Subdirectories);
        while (it.hasNext())
            stored << it.next();
        QCOMPARE(stored.size(), first.size() + 1); // and the account's marker
        QVERIFY(QStorageInfo(m_mount).bytesAvailable() >= freeAfterFirst - (1 << 20));

        // The earlier point is listed alone and restores as it was.
        EngineStore store;
        QVERIFY(store.open(m_engine->dataDirectory() + QStringLiteral("/nvbackup.db")));
        const auto points = store.restorePoints(account, plan.id());
        QCOMPARE(points.size(), 1);
        FileRestoreJob::Parameters parameters;
        parameters.storageRoot = m_mount;
        parameters.content = store.content(points.first().rowId);
        QTemporaryDir target;
        parameters.destination = target.path();
        std::atomic_bool stop {false};
        QCOMPARE(FileRestoreJob(parameters).run(stop, {}).planResult, int(PlanResult::Success));
        for (auto it = first.cbegin(); it != first.cend(); ++it) {
            QFile file(target.path() + it.key());
            QVERIFY(file.open(QIODevice::ReadOnly));
            QCOMPARE(file.readAll(), it.value());
        }
    }
};

NVB_TEST_GUILESS_MAIN(TestEngineFullDisk)
#include "tst_enginefulldisk.moc"
