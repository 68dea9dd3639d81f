#include <QDirIterator>
#include <QJsonArray>
#include <QSignalSpy>
#include <QtTest>

#include "engineprocess.h"
#include "records/plan/backupfile.h"
#include "records/plan/planresult.h"
#include "records/plan/restorefile.h"
#include "service/connectionmanager.h"
#include "service/notification/format.h"
#include "service/notificationcenter.h"
#include "synccommand.h"
#include "testmain.h"

using NVB::Info::Plan::PlanResult;
using NvbTest::EngineProcess;
using NvbTest::SyncCommand;
namespace Format = NVB::Common::Communication::Notification::Format;

namespace {

const QByteArray Sentence = "Meet me by the old lighthouse at half past nine.";

} // namespace

// What a plan asks of its data, through the real engine: filters,
// encryption, retention.
class TestEnginePlanOptions : public QObject
{
    Q_OBJECT

private:
    EngineProcess* m_engine = nullptr;
    QTemporaryDir m_source;
    QTemporaryDir m_storage;
    QUuid m_account = QUuid::createUuid();
    QList<QJsonObject> m_notifications;

    bool waitForState(const QUuid& plan, int state)
    {
        return QTest::qWaitFor(
            [&] {
                for (const QJsonObject& note : std::as_const(m_notifications)) {
                    const QJsonObject message = note.value(QLatin1String(Format::Header::Message)).toObject();
                    if (QUuid(note.value(QLatin1String(Format::Header::Type)).toString())
                            == Format::Plan::StateChange::Type
                        && QUuid(message.value(QStringLiteral("id")).toString()) == plan
                        && message.value(QStringLiteral("state")).toInt() == state)
                        return true;
                }
                return false;
            },
            60000);
    }

    bool save(const NVB::Info::Plan::Base& plan)
    {
        const auto reply = SyncCommand::run(QStringLiteral("CommonPlanEdit"),
            {{QStringLiteral("ID"), plan.id().toString()}, {QStringLiteral("planXML"), plan.toXml()}});
        return reply.answered && !reply.isError;
    }

    bool run(const QUuid& plan, bool forceFull = false, bool verify = false)
    {
        m_notifications.clear();
        QJsonObject params {{QStringLiteral("ID"), plan.toString()}};
        if (forceFull)
            params.insert(QStringLiteral("force_full"), true);
        if (verify)
            params.insert(QStringLiteral("verify"), true);
        const auto reply = SyncCommand::run(QStringLiteral("PlanExecuteStart"), params);
        return reply.answered && !reply.isError && waitForState(plan, 2);
    }

    // Bytes of every object a plan's runs stored, by "generation/sequence".
    QMap<QString, qint64> storedRuns(const QUuid& plan) const
    {
        const QString folder = m_storage.path() + QStringLiteral("/NVB_tester/") + plan.toString(QUuid::WithoutBraces);
        QMap<QString, qint64> runs;
        QDirIterator it(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (it.hasNext()) {
            it.next();
            runs[it.filePath().mid(folder.size() + 1).section(QLatin1Char('/'), 0, 1)] += it.fileInfo().size();
        }
        return runs;
    }

    static QByteArray randomBytes(int size)
    {
        QByteArray data(size, Qt::Uninitialized);
        QRandomGenerator generator {quint32(size)};
        generator.fillRange(reinterpret_cast<quint32*>(data.data()), size / 4);
        return data;
    }

    static void overwrite(const QString& path, qint64 offset, const QByteArray& data)
    {
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.seek(offset));
        QCOMPARE(file.write(data), qint64(data.size()));
    }

    NVB::Info::Plan::BackupFile blockPlan(const QString& source, const QString& name)
    {
        NVB::Info::Plan::BackupFile plan;
        plan.setId(QUuid::createUuid());
        plan.setName(name);
        plan.setIsArchive(false);
        plan.setStorage(m_account);
        plan.setItems({source});
        plan.setUseCompression(false);
        plan.setUseDifferentialUpload(true);
        plan.setDifferentialBlockSize(64 * 1024);
        return plan;
    }

    QDateTime lastStart(const QUuid& plan)
    {
        const QJsonArray runs = SyncCommand::run(
            QStringLiteral("HistoryListByPlan"), {{QStringLiteral("planID"), plan.toString(QUuid::WithoutBraces)}})
                                    .data.value(QStringLiteral("HistoryListByPlan"))
                                    .toArray();
        QDateTime start = QDateTime::fromString(
            runs.first().toObject().value(QStringLiteral("StartTimeUTC")).toString(), QStringLiteral("yyyyMMddhhmmss"));
        start.setTimeSpec(Qt::UTC);
        return start;
    }

    QJsonObject info(const QUuid& plan)
    {
        return SyncCommand::run(QStringLiteral("PlanGetInfo"), {{QStringLiteral("id"), plan.toString()}})
            .data.value(QStringLiteral("planInfo"))
            .toObject();
    }

    static QMap<QString, QByteArray> tree(const QString& root)
    {
        QMap<QString, QByteArray> files;
        QDirIterator it(root, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (it.hasNext()) {
            QFile file(it.next());
            if (file.open(QIODevice::ReadOnly))
                files.insert(it.filePath().mid(root.size()), file.readAll());
        }
        return files;
    }

    // Source paths of the files the plan's latest run stored.
    QStringList storedSources(const QUuid& plan) const
    {
        const QString folder = m_storage.path() + QStringLiteral("/NVB_tester/") + plan.toString(QUuid::WithoutBraces);
        QStringList files;
        QDirIterator it(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (it.hasNext())
            files << QLatin1Char('/') + it.next().mid(folder.size() + 1).section(QLatin1Char('/'), 2);
        files.sort();
        return files;
    }

    static void write(const QString& path, const QByteArray& data)
    {
        QDir().mkpath(QFileInfo(path).absolutePath());
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(data);
    }

    QUuid restore(const QUuid& backup, const QString& password, const QString& target, const QDateTime& at = {})
    {
        NVB::Info::Plan::RestoreFile plan;
        plan.setId(QUuid::createUuid());
        plan.setName(QStringLiteral("Back"));
        plan.setStorage(m_account);
        plan.setRestorePoint(QStringLiteral("NVB_Archive\\%1\\latest").arg(backup.toString(QUuid::WithoutBraces)));
        plan.setDestination(target);
        plan.setRestoreToOriginalLocation(false);
        plan.setEncryptionPassword(password);
        if (at.isValid()) {
            plan.setRestoreType(NVB::Info::Plan::Restore::PointInTime);
            plan.setPointInTime(at);
        }
        return save(plan) && run(plan.id()) ? plan.id() : QUuid();
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
        const auto connection = NVB::Common::Communication::ConnectionManager::instance();
        QVERIFY(QTest::qWaitFor([&] { return connection && connection->isLocalManagmentConnected(); }, 10000));
        const auto saved = SyncCommand::run(QStringLiteral("SaveStorage"),
            {{QStringLiteral("ID"), m_account.toString()}, {QStringLiteral("displayName"), QStringLiteral("Disk")},
                {QStringLiteral("type"), 1}, {QStringLiteral("prefix"), QStringLiteral("tester")},
                {QStringLiteral("params"),
                    QJsonObject {{QStringLiteral("Path"), m_storage.path() + QLatin1Char('/')}}}});
        QVERIFY2(saved.answered && !saved.isError, qPrintable(saved.errorString));

        QDir(m_source.path()).mkpath(QStringLiteral("letters/old"));
        QByteArray text;
        for (int i = 0; i < 4000; ++i)
            text += Sentence + ' ' + QByteArray::number(i) + '\n';
        QFile big(m_source.filePath(QStringLiteral("letters/long.txt")));
        QVERIFY(big.open(QIODevice::WriteOnly));
        big.write(text);
        big.close();
        QFile small(m_source.filePath(QStringLiteral("letters/old/note.txt")));
        QVERIFY(small.open(QIODevice::WriteOnly));
        small.write(Sentence);
    }

    void cleanupTestCase()
    {
        if (m_engine)
            QVERIFY(m_engine->stop());
        delete m_engine;
    }

    void shouldStoreExactlyWhatTheFiltersTake()
    {
        QTemporaryDir source;
        const QString root = source.path();
        for (const char* name : {"keep.txt", "Readme.MD", "skip.png", ".hidden.txt", "tmp/in-tmp.txt",
                 "cache-1/in-cache.txt", "docs/deep.txt", "docs/.secret/inside.txt", "busy.txt"})
            write(root + QLatin1Char('/') + QLatin1String(name), "data");
        // Held open for writing by this process while the run reads it.
        QFile busy(root + QStringLiteral("/busy.txt"));
        QVERIFY(busy.open(QIODevice::Append));

        NVB::Info::Plan::BackupFile plan;
        plan.setId(QUuid::createUuid());
        plan.setName(QStringLiteral("Filtered"));
        // Filters, in-use files and encryption are the legacy format's.
        plan.setIsArchive(false);
        plan.setStorage(m_account);
        plan.setItems({root});
        plan.setUseCompression(false);
        plan.setFilterType(NVB::Info::Plan::BackupFile::OnlyListed);
        // As the wizard writes it: blanks kept around the patterns.
        plan.setFilter({QStringLiteral("*.txt"), QStringLiteral(" *.md")});
        plan.setExcludeFolderList({QStringLiteral("tmp"), QStringLiteral(" cache*")});
        plan.setExcludeSystemAndHidden(true);
        plan.setSkipInUseFiles(true);
        QVERIFY(save(plan));
        QVERIFY(run(plan.id()));
        const QJsonObject summary = info(plan.id());
        QCOMPARE(summary.value(QStringLiteral("LastRunStatus")).toInt(), int(PlanResult::Warning));
        QVERIFY2(summary.value(QStringLiteral("LastRunMessage")).toString().contains(QStringLiteral("in use")),
            qPrintable(summary.value(QStringLiteral("LastRunMessage")).toString()));
        QCOMPARE(storedSources(plan.id()),
            (QStringList {root + QStringLiteral("/Readme.MD"), root + QStringLiteral("/docs/deep.txt"),
                root + QStringLiteral("/keep.txt")}));

        // Closed, it is taken by the next run.
        busy.close();
        QVERIFY(run(plan.id()));
        QCOMPARE(info(plan.id()).value(QStringLiteral("LastRunStatus")).toInt(), int(PlanResult::Success));
        QVERIFY(storedSources(plan.id()).contains(root + QStringLiteral("/busy.txt")));
    }

    void shouldKeepOnlyTheNewestVersionsAndRestoreKeptPoints()
    {
        QTemporaryDir source;
        const QString file = source.path() + QStringLiteral("/diary.txt");
        NVB::Info::Plan::BackupFile plan;
        plan.setId(QUuid::createUuid());
        plan.setIsArchive(false);
        plan.setName(QStringLiteral("Versions"));
        plan.setStorage(m_account);
        plan.setItems({source.path()});
        plan.retentionPolicy().setType(NVB::Info::Plan::BackupRetentionPolicy::Custom);
        plan.retentionPolicy().setUseKeepVersion(true);
        plan.retentionPolicy().setKeepVersion(2);
        QVERIFY(save(plan));
        for (int day = 1; day <= 4; ++day) {
            write(file, "entry of day " + QByteArray::number(day));
            QVERIFY(run(plan.id()));
            QCOMPARE(info(plan.id()).value(QStringLiteral("LastRunStatus")).toInt(), int(PlanResult::Success));
            QTest::qWait(1100); // points a second apart, to restore each by its time
        }
        // Two versions stay; the points that named only older ones are gone.
        QCOMPARE(storedSources(plan.id()), (QStringList {file, file}));
        const QJsonArray runs = SyncCommand::run(
            QStringLiteral("HistoryListByPlan"), {{QStringLiteral("planID"), plan.id().toString(QUuid::WithoutBraces)}})
                                    .data.value(QStringLiteral("HistoryListByPlan"))
                                    .toArray();
        QCOMPARE(runs.size(), 4); // newest first
        for (int day : {4, 3, 1}) {
            QDateTime start
                = QDateTime::fromString(runs.at(4 - day).toObject().value(QStringLiteral("StartTimeUTC")).toString(),
                    QStringLiteral("yyyyMMddhhmmss"));
            start.setTimeSpec(Qt::UTC);
            QTemporaryDir target;
            const QUuid back = restore(plan.id(), QString(), target.path(), start);
            const QJsonObject result = info(back);
            if (day == 1) {
                QCOMPARE(result.value(QStringLiteral("LastRunStatus")).toInt(), int(PlanResult::Failed));
                continue;
            }
            QCOMPARE(result.value(QStringLiteral("LastRunStatus")).toInt(), int(PlanResult::Success));
            QFile restored(target.path() + file);
            QVERIFY(restored.open(QIODevice::ReadOnly));
            QCOMPARE(restored.readAll(), "entry of day " + QByteArray::number(day));
        }
    }

    void shouldStoreNothingReadableAndRestoreOnlyWithPassword_data()
    {
        QTest::addColumn<bool>("compress");
        QTest::addColumn<int>("type");
        QTest::newRow("AES 128") << false << 0;
        QTest::newRow("zstd and AES 256") << true << 2;
    }

    void shouldStoreNothingReadableAndRestoreOnlyWithPassword()
    {
        QFETCH(bool, compress);
        QFETCH(int, type);
        NVB::Info::Plan::BackupFile plan;
        plan.setId(QUuid::createUuid());
        plan.setName(QStringLiteral("Secret letters"));
        plan.setIsArchive(false);
        plan.setStorage(m_account);
        plan.setItems({m_source.path()});
        plan.setUseCompression(compress);
        plan.encryption().setEnabled(true);
        plan.encryption().setEncryptionType(NVB::Info::Plan::BackupEncyption::Type(type));
        plan.encryption().setPassword(QStringLiteral("s3cret"));
        QVERIFY(save(plan));
        QVERIFY(run(plan.id()));
        QCOMPARE(info(plan.id()).value(QStringLiteral("LastRunStatus")).toInt(), int(PlanResult::Success));

        const QMap<QString, QByteArray> stored = tree(m_storage.path());
        QVERIFY(!stored.isEmpty());
        for (auto it = stored.cbegin(); it != stored.cend(); ++it) {
            QVERIFY2(!it.value().contains(Sentence.left(20)), qPrintable(it.key()));
            QVERIFY2(!it.value().contains("s3cret"), qPrintable(it.key()));
            QVERIFY2(!it.key().contains(QStringLiteral("letters")) && !it.key().contains(QStringLiteral("note")),
                qPrintable(it.key()));
        }

        // A second run with a changed file keeps the plan's salt: one key
        // derivation restores the whole point.
        write(m_source.filePath(QStringLiteral("letters/old/note.txt")), Sentence + " Again.");
        QVERIFY(run(plan.id()));
        QSet<QByteArray> salts;
        const QMap<QString, QByteArray> objects = tree(m_storage.path());
        for (auto it = objects.cbegin(); it != objects.cend(); ++it) {
            if (it.key().contains(plan.id().toString(QUuid::WithoutBraces)) && it.value().startsWith("NVBC"))
                salts.insert(it.value().mid(12, 16));
        }
        QCOMPARE(salts.size(), 1);

        QTemporaryDir wrong;
        const QUuid refused = restore(plan.id(), QStringLiteral("guess"), wrong.path());
        QVERIFY(!refused.isNull());
        const QJsonObject failed = info(refused);
        QCOMPARE(failed.value(QStringLiteral("LastRunStatus")).toInt(), int(PlanResult::Failed));
        QVERIFY2(failed.value(QStringLiteral("LastRunMessage")).toString().contains(QStringLiteral("wrong password")),
            qPrintable(failed.value(QStringLiteral("LastRunMessage")).toString()));
        QVERIFY(QDir(wrong.path()).isEmpty(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden));

        QTemporaryDir right;
        const QUuid restored = restore(plan.id(), QStringLiteral("s3cret"), right.path());
        QCOMPARE(info(restored).value(QStringLiteral("LastRunStatus")).toInt(), int(PlanResult::Success));
        QMap<QString, QByteArray> back;
        const QMap<QString, QByteArray> all = tree(right.path());
        for (auto it = all.cbegin(); it != all.cend(); ++it)
            back.insert(it.key().mid(m_source.path().size()), it.value());
        QCOMPARE(back, tree(m_source.path()));
    }

    void shouldStoreOnlyChangedBlocksAndRestoreEveryPoint_data()
    {
        QTest::addColumn<bool>("sealed");
        QTest::newRow("plain") << false;
        QTest::newRow("zstd and AES 256") << true;
    }

    void shouldStoreOnlyChangedBlocksAndRestoreEveryPoint()
    {
        QFETCH(bool, sealed);
        QTemporaryDir source;
        const QString file = source.path() + QStringLiteral("/disk.img");
        write(file, randomBytes(32 << 20));
        write(source.path() + QStringLiteral("/small.txt"), Sentence);
        NVB::Info::Plan::BackupFile plan = blockPlan(source.path(), QStringLiteral("Blocks"));
        plan.setUseCompression(sealed);
        plan.encryption().setEnabled(sealed);
        plan.encryption().setEncryptionType(NVB::Info::Plan::BackupEncyption::AES256);
        plan.encryption().setPassword(QStringLiteral("s3cret"));
        QVERIFY(save(plan));
        const QString password = sealed ? QStringLiteral("s3cret") : QString();

        QList<QPair<QDateTime, QByteArray>> points;
        // 192 KiB overwritten in the middle, then 4 KiB near the start: each
        // increment holds every block changed since the full version.
        const QList<QPair<qint64, int>> changes {{-1, 0}, {(9 << 20) + 100, 192 << 10}, {4096 * 3, 4096}};
        for (const auto& [offset, size] : changes) {
            if (offset >= 0)
                overwrite(file, offset, randomBytes(size + 4).mid(4));
            QVERIFY(run(plan.id()));
            QCOMPARE(info(plan.id()).value(QStringLiteral("LastRunStatus")).toInt(), int(PlanResult::Success));
            QFile content(file);
            QVERIFY(content.open(QIODevice::ReadOnly));
            points.append({lastStart(plan.id()), content.readAll()});
            QTest::qWait(1100);
        }
        const QList<qint64> stored = storedRuns(plan.id()).values();
        QCOMPARE(stored.size(), 3);
        QVERIFY2(stored.at(0) > (32 << 20) - (1 << 20) || sealed, qPrintable(QString::number(stored.at(0))));
        // Four 64 KiB blocks hold the 192 KiB; the third run adds one.
        QVERIFY2(stored.at(1) >= (192 << 10) && stored.at(1) <= (320 << 10), qPrintable(QString::number(stored.at(1))));
        QVERIFY2(stored.at(2) >= (192 << 10) && stored.at(2) <= (384 << 10), qPrintable(QString::number(stored.at(2))));

        for (const auto& [start, data] : std::as_const(points)) {
            QTemporaryDir target;
            const QUuid back = restore(plan.id(), password, target.path(), start);
            QCOMPARE(info(back).value(QStringLiteral("LastRunStatus")).toInt(), int(PlanResult::Success));
            QFile restored(target.path() + file);
            QVERIFY(restored.open(QIODevice::ReadOnly));
            QVERIFY(restored.readAll() == data);
        }
        QVERIFY(run(plan.id(), false, true));
        QCOMPARE(info(plan.id()).value(QStringLiteral("LastRunStatus")).toInt(), int(PlanResult::Success));
    }

    void shouldStoreAFullVersionAboveTheShareOrOnTheFullSchedule()
    {
        QTemporaryDir source;
        const QString file = source.path() + QStringLiteral("/video.bin");
        write(file, randomBytes(4 << 20));
        NVB::Info::Plan::BackupFile plan = blockPlan(source.path(), QStringLiteral("Fulls"));
        plan.setForceFullDiffSizeConditionEnable(true);
        plan.setForceFullDiffSizeCondition(50);
        QVERIFY(save(plan));
        QMap<QString, qint64> seen;
        // The run folder ("generation/sequence") and stored bytes of a run.
        const auto runAndSee = [&](bool forceFull) {
            const bool ran = run(plan.id(), forceFull);
            const QMap<QString, qint64> runs = storedRuns(plan.id());
            QPair<QString, qint64> made;
            for (auto it = runs.cbegin(); it != runs.cend(); ++it) {
                if (!seen.contains(it.key()))
                    made = {it.key().section(QLatin1Char('/'), 0, 0), ran ? it.value() : -1};
            }
            seen = runs;
            return made;
        };
        const QString first = runAndSee(false).first;
        // Three fifths changed, over the half the plan allows: the file is
        // whole again in the same generation...
        overwrite(file, 0, randomBytes((12 << 20) / 5 + 8).mid(8));
        QCOMPARE(runAndSee(false), qMakePair(first, qint64(4 << 20)));
        // ... and with that the plan's own share is reached: a new full backup.
        overwrite(file, 1 << 20, "x");
        const auto second = runAndSee(false);
        QVERIFY(second.first != first);
        QCOMPARE(second.second, qint64(4 << 20));
        overwrite(file, 2 << 20, "y");
        const auto increment = runAndSee(false);
        QCOMPARE(increment.first, second.first);
        QVERIFY(increment.second > 0 && increment.second < (128 << 10));
        // The full schedule's run stores the file whole in a new generation.
        overwrite(file, 3 << 20, "z");
        const auto scheduled = runAndSee(true);
        QVERIFY(scheduled.first != second.first && scheduled.first != first);
        QCOMPARE(scheduled.second, qint64(4 << 20));
    }

    void shouldKeepAFullVersionWhileAnIncrementNeedsIt()
    {
        QTemporaryDir source;
        const QString file = source.path() + QStringLiteral("/base.db");
        write(file, randomBytes(2 << 20));
        NVB::Info::Plan::BackupFile plan = blockPlan(source.path(), QStringLiteral("Kept"));
        plan.retentionPolicy().setType(NVB::Info::Plan::BackupRetentionPolicy::Custom);
        plan.retentionPolicy().setUseKeepVersion(true);
        plan.retentionPolicy().setKeepVersion(1);
        QVERIFY(save(plan));
        for (int run = 0; run < 3; ++run) {
            overwrite(file, run * 300000, "change " + QByteArray::number(run));
            QVERIFY(this->run(plan.id()));
        }
        // The middle increment went; the full stays under the newest one.
        QMap<QString, qint64> runs = storedRuns(plan.id());
        QCOMPARE(runs.size(), 2);
        QCOMPARE(runs.first(), qint64(2 << 20));
        QTemporaryDir target;
        QCOMPARE(info(restore(plan.id(), QString(), target.path())).value(QStringLiteral("LastRunStatus")).toInt(),
            int(PlanResult::Success));
        QFile restored(target.path() + file);
        QFile original(file);
        QVERIFY(restored.open(QIODevice::ReadOnly) && original.open(QIODevice::ReadOnly));
        QVERIFY(restored.readAll() == original.readAll());

        // A new full version frees the old one with its increment.
        QVERIFY(run(plan.id(), true));
        runs = storedRuns(plan.id());
        QCOMPARE(runs.size(), 1);
        QCOMPARE(runs.first(), qint64(2 << 20));
    }

    void shouldFailOnlyTheFileOfADamagedIncrement()
    {
        QTemporaryDir source;
        const QStringList files {source.path() + QStringLiteral("/a.bin"), source.path() + QStringLiteral("/b.bin")};
        for (const QString& file : files)
            write(file, randomBytes(1 << 20) + file.toUtf8());
        const NVB::Info::Plan::BackupFile plan = blockPlan(source.path(), QStringLiteral("Damaged"));
        QVERIFY(save(plan));
        QVERIFY(run(plan.id()));
        for (const QString& file : files)
            overwrite(file, 5000, "changed");
        QVERIFY(run(plan.id()));
        const QString folder = m_storage.path() + QStringLiteral("/NVB_tester/")
            + plan.id().toString(QUuid::WithoutBraces) + QLatin1Char('/') + storedRuns(plan.id()).lastKey();
        QFile increment(folder + files.at(0));
        QVERIFY(increment.open(QIODevice::ReadWrite));
        QVERIFY(increment.seek(increment.size() / 2));
        increment.write("garbage");
        increment.close();

        QTemporaryDir target;
        const QJsonObject result = info(restore(plan.id(), QString(), target.path()));
        QCOMPARE(result.value(QStringLiteral("LastRunStatus")).toInt(), int(PlanResult::Warning));
        QVERIFY2(result.value(QStringLiteral("LastRunMessage")).toString().contains(files.at(0)),
            qPrintable(result.value(QStringLiteral("LastRunMessage")).toString()));
        QVERIFY(!QFile::exists(target.path() + files.at(0)));
        QFile restored(target.path() + files.at(1));
        QFile original(files.at(1));
        QVERIFY(restored.open(QIODevice::ReadOnly) && original.open(QIODevice::ReadOnly));
        QVERIFY(restored.readAll() == original.readAll());

        QVERIFY(run(plan.id(), false, true));
        const QString verdict = info(plan.id()).value(QStringLiteral("LastRunMessage")).toString();
        QVERIFY2(verdict.contains(QStringLiteral("1 of 2")), qPrintable(verdict));
    }
};

NVB_TEST_GUILESS_MAIN(TestEnginePlanOptions)
#include "tst_engineplanoptions.moc"
