#include <unistd.h>

#include <functional>

#include <QJsonArray>
#include <QtTest>

#include "enginesession.h"
#include "records/plan/backupfile.h"
#include "records/plan/factory.h"
#include "records/plan/planresult.h"
#include "records/plan/restorefile.h"
#include "service/connectionmanager.h"
#include "service/notification/format.h"
#include "synccommand.h"
#include "testmain.h"

using NVB::Info::Plan::PlanResult;
using NvbTest::EngineProcess;
using NvbTest::EngineSession;
using NvbTest::SyncCommand;
namespace Format = NVB::Common::Communication::Notification::Format;

// Drives the real engine through the console's channel, as the console does.
class TestEngineProcess : public QObject
{
    Q_OBJECT

private:
    EngineSession m_session;
    QTemporaryDir m_source;
    const QUuid m_account = m_session.account();

    static void write(const QString& path, const QByteArray& data) { QVERIFY(EngineSession::write(path, data)); }
    bool waitForState(const QUuid& plan, int state, int timeoutMs = 30000)
    {
        return m_session.waitForState(plan, state, timeoutMs);
    }
    bool run(const QUuid& plan, bool forceFull = false, bool verify = false)
    {
        return m_session.run(plan, forceFull, verify);
    }
    QJsonObject info(const QUuid& plan) { return m_session.info(plan); }
    int notificationsOf(const QUuid& type) const { return m_session.notificationsOf(type); }

    bool waitForConnection()
    {
        const auto connection = NVB::Common::Communication::ConnectionManager::instance();
        return QTest::qWaitFor([&] { return connection && connection->isLocalManagmentConnected(); }, 10000);
    }

    // Starts a run without waiting for its end.
    bool start(const QUuid& plan)
    {
        return !SyncCommand::run(QStringLiteral("PlanExecuteStart"), {{QStringLiteral("ID"), plan.toString()}}).isError;
    }

    QUuid savePlan(const QString& name, const QStringList& items,
        const std::function<void(NVB::Info::Plan::BackupFile&)>& tweak = {})
    {
        NVB::Info::Plan::BackupFile plan;
        plan.setIsArchive(false); // checks the legacy layout on the storage
        plan.setId(QUuid::createUuid());
        plan.setName(name);
        plan.setStorage(m_account);
        plan.setItems(items);
        plan.setUseCompression(false);
        if (tweak)
            tweak(plan);
        return m_session.savePlan(plan.id(), plan.toXml()) ? plan.id() : QUuid();
    }

    // Every file below the plan's folder on the storage, relative to it.
    QStringList storedFiles(const QUuid& plan) const
    {
        const QString folder = m_session.planFolder(plan);
        QStringList files;
        QDirIterator it(folder, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
        while (it.hasNext())
            files << it.next().mid(folder.size() + 1);
        files.sort();
        return files;
    }

    QJsonArray fileHistory(const QUuid& plan)
    {
        return SyncCommand::run(QStringLiteral("HistoryListByFiles"),
            {{QStringLiteral("planId"), plan.toString(QUuid::WithoutBraces)},
                {QStringLiteral("period"), QStringLiteral("All")}})
            .data.value(QStringLiteral("HistoryListByFiles"))
            .toArray();
    }

    QJsonArray runHistory(const QUuid& plan, const QJsonObject& extra = {})
    {
        QJsonObject params = extra;
        params.insert(QStringLiteral("planID"), plan.toString(QUuid::WithoutBraces));
        return SyncCommand::run(QStringLiteral("HistoryListByPlan"), params)
            .data.value(QStringLiteral("HistoryListByPlan"))
            .toArray();
    }

private slots:
    void initTestCase()
    {
        QVERIFY2(m_session.start(), qPrintable(m_session.error()));
        QVERIFY(QTest::qWaitFor([this] { return notificationsOf(Format::Storage::Add::Type) == 1; }));
    }

    void cleanupTestCase() { QVERIFY(m_session.stop()); }

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

        QCOMPARE(QUuid(info(plan).value(QStringLiteral("StorageId")).toString()), m_account);

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
        QTest::newRow("unknown plan") << "PlanExecuteStart" << QJsonObject {{"ID", QUuid::createUuid().toString()}}
                                      << "There is no plan";
        QTest::newRow("id of wrong type") << "PlanRemove" << QJsonObject {{"ID", 42}} << "\"ID\"";
        QTest::newRow("xml that is no plan")
            << "CommonPlanEdit" << QJsonObject {{"planXML", "<nothing/>"}} << "cannot be read";
        QTest::newRow("unknown account") << "StorageDeleteFileSystem"
                                         << QJsonObject {{"ID", QUuid::createUuid().toString()}}
                                         << "No storage account";
        QTest::newRow("bad period") << "HistoryListByPlan" << QJsonObject {{"period", "Yesterday"}} << "Yesterday";
        QTest::newRow("no snapshot driver") << "SnapshotInstall" << QJsonObject {{"type", 1}} << "not available";
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

    void shouldReportProgressToFullWithShrinkingTimeLeft()
    {
        // Enough incompressible data that the copy spans several reports.
        QRandomGenerator random(18);
        QByteArray block(1 << 20, Qt::Uninitialized);
        for (int i = 0; i < 160; ++i) {
            random.fillRange(reinterpret_cast<quint32*>(block.data()), block.size() / 4);
            write(m_source.filePath(QStringLiteral("big/%1.bin").arg(i)), block);
        }
        const QUuid plan = savePlan(QStringLiteral("Progress"), {m_source.filePath(QStringLiteral("big"))},
            [](NVB::Info::Plan::BackupFile& record) { record.setUseCompression(true); });
        QVERIFY(run(plan));

        QList<QJsonObject> first, second;
        for (const QJsonObject& note : m_session.notifications()) {
            const QUuid type(note.value(QLatin1String(Format::Header::Type)).toString());
            const QJsonObject message = note.value(QLatin1String(Format::Header::Message)).toObject();
            if (type == Format::Worker::ReportProgress::Type)
                first << message;
            else if (type == Format::Worker::ReportProgress2::Type)
                second << message;
        }
        QVERIFY(!first.isEmpty());
        QCOMPARE(first.last().value(QLatin1String(Format::Worker::ReportProgress::ProgressBar)).toInt(), 100);
        QCOMPARE(first.last().value(QLatin1String(Format::Worker::ReportProgress::FilesCopiedValue)).toString(),
            QStringLiteral("160 of 160"));
        QList<double> estimates;
        int percent = -1;
        for (const QJsonObject& message : std::as_const(second)) {
            const int now = message.value(QLatin1String(Format::Worker::ReportProgress2::Progress)).toInt();
            QVERIFY2(now >= percent, "the share done went back");
            percent = now;
            const double left = message.value(QLatin1String(Format::Worker::ReportProgress2::TimeLeft)).toDouble();
            if (now > 0 && now < 100 && left >= 0)
                estimates << left;
        }
        QCOMPARE(second.last().value(QLatin1String(Format::Worker::ReportProgress2::TotalFileCount)).toInt(), 160);
        QVERIFY2(estimates.size() >= 2, qPrintable(QStringLiteral("%1 estimates").arg(estimates.size())));
        QVERIFY2(estimates.last() < estimates.first(),
            qPrintable(QStringLiteral("%1 then %2").arg(estimates.first()).arg(estimates.last())));

        // The next run is told against the last run's totals instead of a
        // count of its own; a tree grown beyond them must still end whole,
        // with the share never going back.
        for (int i = 160; i < 200; ++i) {
            random.fillRange(reinterpret_cast<quint32*>(block.data()), block.size() / 4);
            write(m_source.filePath(QStringLiteral("big/%1.bin").arg(i)), block);
        }
        QVERIFY(run(plan));
        percent = -1;
        QJsonObject last;
        for (const QJsonObject& note : m_session.notifications()) {
            if (QUuid(note.value(QLatin1String(Format::Header::Type)).toString())
                != Format::Worker::ReportProgress2::Type)
                continue;
            last = note.value(QLatin1String(Format::Header::Message)).toObject();
            const int now = last.value(QLatin1String(Format::Worker::ReportProgress2::Progress)).toInt();
            QVERIFY2(now >= percent, "the share done went back");
            percent = now;
        }
        QCOMPARE(percent, 100);
        QCOMPARE(last.value(QLatin1String(Format::Worker::ReportProgress2::TotalFileCount)).toInt(), 200);
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
        QStringList copied;
        for (const QString& file : storedFiles(plan))
            copied << QFileInfo(file).fileName();
        QCOMPARE(copied, (QStringList {QStringLiteral("a.txt"), QStringLiteral("b.txt")}));
        QCOMPARE(fileHistory(plan).size(), 2);

        QTest::qWait(1100); // a new modification time
        write(m_source.filePath(QStringLiteral("inc/a.txt")), "alpha, changed");
        QVERIFY(run(plan));
        const QJsonArray rows = fileHistory(plan);
        QCOMPARE(rows.size(), 3);
        QCOMPARE(rows.first().toObject().value(QStringLiteral("File")).toString(),
            m_source.filePath(QStringLiteral("inc/a.txt")));
        QCOMPARE(info(plan).value(QStringLiteral("LastUploadedCount")).toInt(), 1);

        const QJsonArray history = runHistory(
            plan, {{QStringLiteral("period"), QStringLiteral("DayLast")}, {QStringLiteral("generateCSV"), true}});
        QCOMPARE(history.size(), 2);
        QCOMPARE(history.first().toObject().value(QStringLiteral("Result")).toInt(), int(PlanResult::Success));
        QVERIFY(history.first()
                    .toObject()
                    .value(QStringLiteral("CSVLine"))
                    .toString()
                    .startsWith(QStringLiteral("\"Incremental\"")));
        QVERIFY(history.first().toObject().value(QStringLiteral("DbID")).toInt()
            > history.last().toObject().value(QStringLiteral("DbID")).toInt());

        // Restore the first version of the changed file, from the first run.
        NVB::Info::Plan::RestoreFile restore;
        restore.setId(QUuid::createUuid());
        restore.setName(QStringLiteral("Get it back"));
        restore.setStorage(m_account);
        restore.setRestoreType(NVB::Info::Plan::Restore::PointInTime);
        const QString firstRun = history.last().toObject().value(QStringLiteral("StartTimeUTC")).toString();
        restore.setRestorePoint(
            QStringLiteral("NVB_Archive\\%1\\%2").arg(plan.toString(QUuid::WithoutBraces), firstRun));
        QTemporaryDir target;
        restore.setDestination(target.path());
        restore.setRestoreToOriginalLocation(false);
        restore.setRestoreItems({m_source.filePath(QStringLiteral("inc/a.txt"))});
        QDateTime point = QDateTime::fromString(firstRun, QStringLiteral("yyyyMMddhhmmss"));
        point.setTimeSpec(Qt::UTC);
        restore.setPointInTime(point);
        QVERIFY(m_session.savePlan(restore.id(), restore.toXml()));
        QVERIFY(run(restore.id()));
        QCOMPARE(info(restore.id()).value(QStringLiteral("LastRunStatus")).toInt(), int(PlanResult::Success));
        QFile restored(target.path() + m_source.filePath(QStringLiteral("inc/a.txt")));
        QVERIFY(restored.open(QIODevice::ReadOnly));
        QCOMPARE(restored.readAll(), QByteArray("alpha"));

        // A verify run reads the last restore point back: clean, then with
        // one object damaged on the storage (same size, other bytes).
        QVERIFY(run(plan, false, true));
        QCOMPARE(info(plan).value(QStringLiteral("LastRunStatus")).toInt(), int(PlanResult::Success));
        const QStringList stored = storedFiles(plan);
        const auto b = std::find_if(
            stored.cbegin(), stored.cend(), [](const QString& file) { return file.endsWith(QLatin1String("/b.txt")); });
        QVERIFY(b != stored.cend());
        write(m_session.planFolder(plan) + QLatin1Char('/') + *b, "BETA");
        QVERIFY(run(plan, false, true));
        const QJsonObject verified = info(plan);
        QCOMPARE(verified.value(QStringLiteral("LastRunStatus")).toInt(), int(PlanResult::Failed));
        QVERIFY(verified.value(QStringLiteral("LastRunMessage")).toString().contains(QStringLiteral("do not match")));
        QCOMPARE(fileHistory(plan).first().toObject().value(QStringLiteral("File")).toString(),
            m_source.filePath(QStringLiteral("inc/sub/b.txt")));
    }

    void shouldRefuseWhatItCannotHonour()
    {
        write(m_source.filePath(QStringLiteral("honour/a.txt")), "a");
        const QStringList items {m_source.filePath(QStringLiteral("honour"))};

        // Paths that are relative or climb are refused when the plan is saved.
        for (const QString& bad : {m_source.filePath(QStringLiteral("honour/../honour")), QStringLiteral("honour")}) {
            NVB::Info::Plan::BackupFile plan;
            plan.setIsArchive(false); // checks the legacy layout on the storage
            plan.setId(QUuid::createUuid());
            plan.setName(QStringLiteral("Bad path"));
            plan.setStorage(m_account);
            plan.setItems({bad});
            const auto saved = SyncCommand::run(QStringLiteral("CommonPlanEdit"),
                {{QStringLiteral("ID"), plan.id().toString()}, {QStringLiteral("planXML"), plan.toXml()}});
            QVERIFY2(
                saved.isError && saved.errorString.contains(QStringLiteral("refused")), qPrintable(saved.errorString));
        }

        // An option that is not carried out fails the run, by name, and
        // leaves nothing on the storage.
        const QList<QPair<QString, std::function<void(NVB::Info::Plan::BackupFile&)>>> options {
            {QStringLiteral("encryption"), [](auto& plan) { plan.encryption().setEnabled(true); }},
            {QStringLiteral("skipping files in use in the new backup format"),
                [](auto& plan) {
                    plan.setIsArchive(true);
                    plan.setSkipInUseFiles(true);
                }},
            {QStringLiteral("repository synchronisation"), [](auto& plan) { plan.setSyncBeforeRun(true); }},
        };
        for (const auto& [name, tweak] : options) {
            const QUuid plan = savePlan(QStringLiteral("Asks for ") + name, items, tweak);
            QVERIFY(run(plan));
            const QJsonObject summary = info(plan);
            QCOMPARE(summary.value(QStringLiteral("LastRunStatus")).toInt(), int(PlanResult::Failed));
            QVERIFY2(summary.value(QStringLiteral("LastRunMessage")).toString().contains(name),
                qPrintable(summary.value(QStringLiteral("LastRunMessage")).toString()));
            QCOMPARE(storedFiles(plan), QStringList());
        }

        // The account's folder must exist and carry the account's marker,
        // else a missing drive would fill the disk under its mount point.
        const QString home = m_session.storagePath() + QStringLiteral("/NVB_tester");
        QVERIFY(QFile::exists(home + QStringLiteral("/.nvb-account")));
        QVERIFY(QDir().rename(home, home + QStringLiteral(".away")));
        const QUuid plan = savePlan(QStringLiteral("Marker"), items);
        QVERIFY(run(plan));
        QVERIFY(info(plan).value(QStringLiteral("LastRunMessage")).toString().contains(QStringLiteral("marker")));
        QVERIFY(!QFileInfo::exists(home));
        // The same folder without its marker (as an older engine left it)
        // is recognised by its backups and marked.
        QVERIFY(QDir().rename(home + QStringLiteral(".away"), home));
        QVERIFY(QFile::remove(home + QStringLiteral("/.nvb-account")));
        QVERIFY(run(plan));
        QCOMPARE(info(plan).value(QStringLiteral("LastRunStatus")).toInt(), int(PlanResult::Success));
        QVERIFY(QFile::exists(home + QStringLiteral("/.nvb-account")));
    }

    void shouldStopARunCleanly()
    {
        // Many small files, then one that takes long to read: a stop must
        // not wait for it, and must leave nothing of the run behind.
        for (int i = 0; i < 200; ++i)
            write(m_source.filePath(QStringLiteral("many/%1/f%2.bin").arg(i / 20).arg(i)), QByteArray(4096, 'x'));
        const QString large = m_source.filePath(QStringLiteral("many/zz/large.bin"));
        write(large, QByteArray());
        QVERIFY(::truncate(QFile::encodeName(large).constData(), qint64(16) << 30) == 0);
        const QUuid plan = savePlan(QStringLiteral("Many files"), {m_source.filePath(QStringLiteral("many"))});
        QVERIFY(start(plan));
        const auto again
            = SyncCommand::run(QStringLiteral("PlanExecuteStart"), {{QStringLiteral("ID"), plan.toString()}});
        QVERIFY(again.isError);
        QVERIFY(waitForState(plan, 1));
        QTest::qWait(500); // well into the large file
        QVERIFY(
            !SyncCommand::run(QStringLiteral("PlanExecuteStop"), {{QStringLiteral("ID"), plan.toString()}}).isError);
        QVERIFY(waitForState(plan, 2, 10000));
        QCOMPARE(info(plan).value(QStringLiteral("LastRunStatus")).toInt(), int(PlanResult::Interrupted));
        QCOMPARE(storedFiles(plan), QStringList());
        const auto stopAgain
            = SyncCommand::run(QStringLiteral("PlanExecuteStop"), {{QStringLiteral("ID"), plan.toString()}});
        QVERIFY(stopAgain.isError);
        QVERIFY(stopAgain.errorString.contains(QStringLiteral("not running")));
    }

    void shouldFailRunsToOtherProvidersWithReason()
    {
        const QUuid account = QUuid::createUuid();
        QVERIFY(!SyncCommand::run(QStringLiteral("SaveStorage"),
            {{QStringLiteral("ID"), account.toString()}, {QStringLiteral("displayName"), QStringLiteral("Bucket")},
                {QStringLiteral("type"), 3}, {QStringLiteral("params"), QJsonObject()}})
                     .isError);
        const QUuid plan = savePlan(QStringLiteral("To the cloud"), {m_source.path()},
            [account](NVB::Info::Plan::BackupFile& record) { record.setStorage(account); });
        QVERIFY(run(plan));
        const QJsonObject summary = info(plan);
        QCOMPARE(summary.value(QStringLiteral("LastRunStatus")).toInt(), int(PlanResult::Failed));
        QVERIFY(
            summary.value(QStringLiteral("LastRunMessage")).toString().contains(QStringLiteral("not supported yet")));

        // An account in use cannot be removed.
        const auto refused
            = SyncCommand::run(QStringLiteral("StorageDeleteFileSystem"), {{QStringLiteral("ID"), account.toString()}});
        QVERIFY(refused.isError);
    }

    void shouldKeepEverythingWhenKilledDuringARun()
    {
        const QUuid plan = savePlan(QStringLiteral("Survivor"), {m_source.filePath(QStringLiteral("many"))});
        QVERIFY(start(plan));
        QVERIFY(waitForState(plan, 1));
        QTest::qWait(400); // the small files are copied, the large one is under way
        m_session.engine().kill();
        const auto connection = NVB::Common::Communication::ConnectionManager::instance();
        QVERIFY(QTest::qWaitFor([&] { return !connection->isLocalManagmentConnected(); }, 10000));

        // A second engine on the same data refuses while the first runs; here
        // the first is dead, so a new one takes over.
        EngineProcess twin(m_session.engine().home());
        QVERIFY(twin.start());
        EngineProcess third(m_session.engine().home());
        QVERIFY(!third.start(3000));
        QVERIFY(third.output().contains("Another engine"));
        QVERIFY(waitForConnection());

        const QJsonObject summary = info(plan);
        QCOMPARE(summary.value(QStringLiteral("Name")).toString(), QStringLiteral("Survivor"));
        QCOMPARE(summary.value(QStringLiteral("Status")).toInt(), 2);
        const QJsonArray history = runHistory(plan);
        QCOMPARE(history.size(), 1);
        QCOMPARE(history.first().toObject().value(QStringLiteral("Result")).toInt(), int(PlanResult::Interrupted));
        const auto accounts = SyncCommand::run(QStringLiteral("StorageGetConnection"));
        QCOMPARE(accounts.data.value(QStringLiteral("storageConnection")).toArray().size(), 2);

        // What the dead run copied is no restore point's; the next run
        // clears it away and stores exactly the source.
        QVERIFY(!storedFiles(plan).isEmpty());
        QVERIFY(QFile::remove(m_source.filePath(QStringLiteral("many/zz/large.bin"))));
        QVERIFY(run(plan));
        QCOMPARE(info(plan).value(QStringLiteral("LastRunStatus")).toInt(), int(PlanResult::Success));
        QStringList expected;
        QDirIterator source(m_source.filePath(QStringLiteral("many")), QDir::Files, QDirIterator::Subdirectories);
        while (source.hasNext())
            expected << source.next();
        QStringList stored;
        for (const QString& file : storedFiles(plan))
            stored << file.section(QLatin1Char('/'), 2); // less "<generation>/<sequence>"
        expected.sort();
        stored.sort();
        for (QString& file : expected)
            file = file.mid(1);
        QCOMPARE(stored, expected);
        QVERIFY(twin.stop());
        QVERIFY(QTest::qWaitFor([&] { return !connection->isLocalManagmentConnected(); }, 10000));
        QVERIFY(m_session.engine().start());
        QVERIFY(waitForConnection());
    }
};

NVB_TEST_GUILESS_MAIN(TestEngineProcess)
#include "tst_engineprocess.moc"
