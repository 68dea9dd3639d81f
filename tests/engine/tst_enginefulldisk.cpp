#include <unistd.h>

#include <QStorageInfo>
#include <QtTest>

#include <memory>

#include "enginesession.h"
#include "records/plan/backupfile.h"
#include "records/plan/planresult.h"
#include "runs/filerestorejob.h"
#include "store/enginestore.h"
#include "testmain.h"

using NVB::Info::Plan::PlanResult;
using NvbTest::EngineSession;
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
    std::unique_ptr<EngineSession> m_session;

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

    QString message(const QUuid& plan) const
    {
        return m_session->info(plan).value(QStringLiteral("LastRunMessage")).toString();
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
        if (m_session)
            m_session->stop();
        m_session.reset();
        if (m_mounted)
            runTool(QStringLiteral("umount"), {m_mount});
        if (!m_loop.isEmpty())
            runTool(QStringLiteral("losetup"), {QStringLiteral("-d"), m_loop});
    }

    void shouldFailCleanlyWhenTheStorageRunsFull()
    {
        QTemporaryDir source;
        m_session = std::make_unique<EngineSession>();
        QVERIFY2(m_session->start(), qPrintable(m_session->error()));
        const QUuid account = QUuid::createUuid();
        QVERIFY(m_session->saveDiskAccount(account, m_mount, QStringLiteral("full")));
        NVB::Info::Plan::BackupFile plan;
        plan.setIsArchive(false); // checks the legacy layout on the storage
        plan.setId(QUuid::createUuid());
        plan.setName(QStringLiteral("Too much"));
        plan.setStorage(account);
        plan.setItems({source.path()});
        plan.setUseCompression(false);
        QVERIFY(m_session->savePlan(plan.id(), plan.toXml()));

        QMap<QString, QByteArray> first;
        for (int i = 0; i < 8; ++i) {
            const QString path = source.filePath(QStringLiteral("first/%1.bin").arg(i));
            first.insert(path, QByteArray(1 << 20, char('a' + i)));
            QVERIFY(EngineSession::write(path, first.value(path)));
        }
        QVERIFY(m_session->run(plan.id()));
        QCOMPARE(m_session->lastStatus(plan.id()), int(PlanResult::Success));
        const qint64 freeAfterFirst = QStorageInfo(m_mount).bytesAvailable();

        // Far more than the volume holds, the first files of which fit.
        for (int i = 0; i < 90; ++i)
            QVERIFY(EngineSession::write(
                source.filePath(QStringLiteral("second/%1.bin").arg(i)), QByteArray(1 << 20, 'z')));
        QVERIFY(m_session->run(plan.id()));
        QCOMPARE(m_session->lastStatus(plan.id()), int(PlanResult::Failed));
        const QString failure = message(plan.id());
        QVERIFY2(failure.contains(QStringLiteral("No space left")) && failure.contains(QStringLiteral("storage")),
            qPrintable(failure));

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
        QVERIFY(store.open(m_session->engine().dataDirectory() + QStringLiteral("/nvbackup.db")));
        const auto points = store.restorePoints(account, plan.id());
        QCOMPARE(points.size(), 1);
        FileRestoreJob::Parameters parameters;
        parameters.storageRoot = m_mount;
        parameters.content = store.content(points.first().rowId);
        QTemporaryDir target;
        parameters.destination = target.path();
        std::atomic_bool stop {false};
        QCOMPARE(FileRestoreJob(parameters).run(stop, {}).planResult, int(PlanResult::Success));
        QCOMPARE(EngineSession::tree(target.path()), first);
    }
};

NVB_TEST_GUILESS_MAIN(TestEngineFullDisk)
#include "tst_enginefulldisk.moc"
