#include <QDirIterator>
#include <QJsonArray>
#include <QtTest>

#include "enginesession.h"
#include "records/plan/backupfile.h"
#include "records/plan/planresult.h"
#include "records/plan/restorefile.h"
#include "synccommand.h"
#include "testmain.h"

using NVB::Info::Plan::PlanResult;
using NvbTest::EngineSession;
using NvbTest::SyncCommand;

namespace {

const QByteArray Sentence = "Meet me by the old lighthouse at half past nine.";

} // namespace

// What a plan asks of its data, through the real engine: filters,
// encryption, retention.
class TestEnginePlanOptions : public QObject
{
    Q_OBJECT

private:
    EngineSession m_session;
    QTemporaryDir m_source;

    bool save(const NVB::Info::Plan::Base& plan) { return m_session.savePlan(plan.id(), plan.toXml()); }
    bool run(const QUuid& plan, bool forceFull = false, bool verify = false)
    {
        return m_session.run(plan, forceFull, verify);
    }
    int status(const QUuid& plan) { return m_session.lastStatus(plan); }
    QString message(const QUuid& plan)
    {
        return m_session.info(plan).value(QStringLiteral("LastRunMessage")).toString();
    }
    static void write(const QString& path, const QByteArray& data) { QVERIFY(EngineSession::write(path, data)); }
    static QMap<QString, QByteArray> tree(const QString& root) { return EngineSession::tree(root); }

    // Objects below the plan's folder, as "generation/sequence" -> bytes.
    QMap<QString, qint64> storedRuns(const QUuid& plan) const
    {
        const QString folder = m_session.planFolder(plan);
        QMap<QString, qint64> runs;
        QDirIterator it(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (it.hasNext()) {
            it.next();
            runs[it.filePath().mid(folder.size() + 1).section(QLatin1Char('/'), 0, 1)] += it.fileInfo().size();
        }
        return runs;
    }

    // Source paths of the files the plan's runs stored.
    QStringList storedSources(const QUuid& plan) const
    {
        const QString folder = m_session.planFolder(plan);
        QStringList files;
        QDirIterator it(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (it.hasNext())
            files << QLatin1Char('/') + it.next().mid(folder.size() + 1).section(QLatin1Char('/'), 2);
        files.sort();
        return files;
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

    static bool sameFile(const QString& a, const QString& b)
    {
        QFile left(a);
        QFile right(b);
        return left.open(QIODevice::ReadOnly) && right.open(QIODevice::ReadOnly) && left.readAll() == right.readAll();
    }

    NVB::Info::Plan::BackupFile plan(const QStringList& items, const QString& name, bool blocks = true)
    {
        NVB::Info::Plan::BackupFile plan;
        plan.setId(QUuid::createUuid());
        plan.setName(name);
        // Filters, in-use files, encryption and block uploads are the legacy
        // format's.
        plan.setIsArchive(false);
        plan.setStorage(m_session.account());
        plan.setItems(items);
        plan.setUseCompression(false);
        if (blocks) {
            plan.setUseDifferentialUpload(true);
            plan.setDifferentialBlockSize(64 * 1024);
        }
        return plan;
    }

    QList<QDateTime> runStarts(const QUuid& plan)
    {
        const QJsonArray runs = SyncCommand::run(
            QStringLiteral("HistoryListByPlan"), {{QStringLiteral("planID"), plan.toString(QUuid::WithoutBraces)}})
                                    .data.value(QStringLiteral("HistoryListByPlan"))
                                    .toArray();
        QList<QDateTime> starts; // newest first
        for (const QJsonValue& run : runs) {
            QDateTime start = QDateTime::fromString(
                run.toObject().value(QStringLiteral("StartTimeUTC")).toString(), QStringLiteral("yyyyMMddhhmmss"));
            start.setTimeSpec(Qt::UTC);
            starts << start;
        }
        return starts;
    }

    QUuid restore(const QUuid& backup, const QString& password, const QString& target, const QDateTime& at = {})
    {
        NVB::Info::Plan::RestoreFile plan;
        plan.setId(QUuid::createUuid());
        plan.setName(QStringLiteral("Back"));
        plan.setStorage(m_session.account());
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
        QVERIFY2(m_session.start(), qPrintable(m_session.error()));
        QByteArray text;
        for (int i = 0; i < 4000; ++i)
            text += Sentence + ' ' + QByteArray::number(i) + '\n';
        write(m_source.filePath(QStringLiteral("letters/long.txt")), text);
        write(m_source.filePath(QStringLiteral("letters/old/note.txt")), Sentence);
    }

    void cleanupTestCase() { QVERIFY(m_session.stop()); }

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

        NVB::Info::Plan::BackupFile plan = this->plan({root}, QStringLiteral("Filtered"), false);
        plan.setFilterType(NVB::Info::Plan::BackupFile::OnlyListed);
        // As the wizard writes it: blanks kept around the patterns.
        plan.setFilter({QStringLiteral("*.txt"), QStringLiteral(" *.md")});
        plan.setExcludeFolderList({QStringLiteral("tmp"), QStringLiteral(" cache*")});
        plan.setExcludeSystemAndHidden(true);
        plan.setSkipInUseFiles(true);
        QVERIFY(save(plan) && run(plan.id()));
        QCOMPARE(status(plan.id()), int(PlanResult::Warning));
        QVERIFY2(message(plan.id()).contains(QStringLiteral("in use")), qPrintable(message(plan.id())));
        QCOMPARE(storedSources(plan.id()),
            (QStringList {root + QStringLiteral("/Readme.MD"), root + QStringLiteral("/docs/deep.txt"),
                root + QStringLiteral("/keep.txt")}));

        // Closed, it is taken by the next run.
        busy.close();
        QVERIFY(run(plan.id()));
        QCOMPARE(status(plan.id()), int(PlanResult::Success));
        QVERIFY(storedSources(plan.id()).contains(root + QStringLiteral("/busy.txt")));
    }

    void shouldKeepOnlyTheNewestVersionsAndRestoreKeptPoints()
    {
        QTemporaryDir source;
        const QString file = source.path() + QStringLiteral("/diary.txt");
        NVB::Info::Plan::BackupFile plan = this->plan({source.path()}, QStringLiteral("Versions"), false);
        plan.retentionPolicy().setType(NVB::Info::Plan::BackupRetentionPolicy::Custom);
        plan.retentionPolicy().setUseKeepVersion(true);
        plan.retentionPolicy().setKeepVersion(2);
        QVERIFY(save(plan));
        for (int day = 1; day <= 4; ++day) {
            write(file, "entry of day " + QByteArray::number(day));
            QVERIFY(run(plan.id()));
            QCOMPARE(status(plan.id()), int(PlanResult::Success));
            QTest::qWait(1100); // points a second apart, to restore each by its time
        }
        // Two versions stay; the points that named only older ones are gone.
        QCOMPARE(storedSources(plan.id()), (QStringList {file, file}));
        const QList<QDateTime> starts = runStarts(plan.id());
        QCOMPARE(starts.size(), 4);
        for (int day : {4, 3, 1}) {
            QTemporaryDir target;
            const QUuid back = restore(plan.id(), QString(), target.path(), starts.at(4 - day));
            QCOMPARE(status(back), int(day == 1 ? PlanResult::Failed : PlanResult::Success));
            if (day != 1)
                QCOMPARE(tree(target.path()).value(file), "entry of day " + QByteArray::number(day));
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
        NVB::Info::Plan::BackupFile plan = this->plan({m_source.path()}, QStringLiteral("Secret letters"), false);
        plan.setUseCompression(compress);
        plan.encryption().setEnabled(true);
        plan.encryption().setEncryptionType(NVB::Info::Plan::BackupEncyption::Type(type));
        plan.encryption().setPassword(QStringLiteral("s3cret"));
        QVERIFY(save(plan) && run(plan.id()));
        QCOMPARE(status(plan.id()), int(PlanResult::Success));

        const QMap<QString, QByteArray> stored = tree(m_session.storagePath());
        QVERIFY(!stored.isEmpty());
        for (auto it = stored.cbegin(); it != stored.cend(); ++it) {
            QVERIFY2(!it.value().contains(Sentence.left(20)) && !it.value().contains("s3cret"), qPrintable(it.key()));
            QVERIFY2(!it.key().contains(QStringLiteral("letters")) && !it.key().contains(QStringLiteral("note")),
                qPrintable(it.key()));
        }

        // A second run with a changed file keeps the plan's salt: one key
        // derivation restores the whole point.
        write(m_source.filePath(QStringLiteral("letters/old/note.txt")), Sentence + " Again.");
        QVERIFY(run(plan.id()));
        QSet<QByteArray> salts;
        const QMap<QString, QByteArray> objects = tree(m_session.planFolder(plan.id()));
        for (const QByteArray& object : objects) {
            if (object.startsWith("NVBC"))
                salts.insert(object.mid(12, 16));
        }
        QCOMPARE(salts.size(), 1);

        QTemporaryDir wrong;
        const QUuid refused = restore(plan.id(), QStringLiteral("guess"), wrong.path());
        QVERIFY(!refused.isNull());
        QCOMPARE(status(refused), int(PlanResult::Failed));
        QVERIFY2(message(refused).contains(QStringLiteral("wrong password")), qPrintable(message(refused)));
        QVERIFY(QDir(wrong.path()).isEmpty(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden));

        QTemporaryDir right;
        QCOMPARE(status(restore(plan.id(), QStringLiteral("s3cret"), right.path())), int(PlanResult::Success));
        QCOMPARE(tree(right.path() + m_source.path()), tree(m_source.path()));
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
        NVB::Info::Plan::BackupFile plan = this->plan({source.path()}, QStringLiteral("Blocks"));
        plan.setUseCompression(sealed);
        plan.encryption().setEnabled(sealed);
        plan.encryption().setEncryptionType(NVB::Info::Plan::BackupEncyption::AES256);
        plan.encryption().setPassword(QStringLiteral("s3cret"));
        QVERIFY(save(plan));
        const QString password = sealed ? QStringLiteral("s3cret") : QString();

        QList<QByteArray> points;
        // 192 KiB overwritten in the middle, then 4 KiB near the start: each
        // increment holds every block changed since the full version.
        const QList<QPair<qint64, int>> changes {{-1, 0}, {(9 << 20) + 100, 192 << 10}, {4096 * 3, 4096}};
        for (const auto& [offset, size] : changes) {
            if (offset >= 0)
                overwrite(file, offset, randomBytes(size + 4).mid(4));
            QVERIFY(run(plan.id()));
            QCOMPARE(status(plan.id()), int(PlanResult::Success));
            points.prepend(tree(source.path()).value(QStringLiteral("/disk.img")));
            QTest::qWait(1100);
        }
        const QList<qint64> stored = storedRuns(plan.id()).values();
        QCOMPARE(stored.size(), 3);
        QVERIFY2(stored.at(0) > (32 << 20) - (1 << 20) || sealed, qPrintable(QString::number(stored.at(0))));
        // Four 64 KiB blocks hold the 192 KiB; the third run adds one.
        QVERIFY2(stored.at(1) >= (192 << 10) && stored.at(1) <= (320 << 10), qPrintable(QString::number(stored.at(1))));
        QVERIFY2(stored.at(2) >= (192 << 10) && stored.at(2) <= (384 << 10), qPrintable(QString::number(stored.at(2))));

        const QList<QDateTime> starts = runStarts(plan.id());
        QCOMPARE(starts.size(), points.size());
        for (int i = 0; i < points.size(); ++i) {
            QTemporaryDir target;
            QCOMPARE(status(restore(plan.id(), password, target.path(), starts.at(i))), int(PlanResult::Success));
            QVERIFY(tree(target.path()).value(file) == points.at(i));
        }
        QVERIFY(run(plan.id(), false, true));
        QCOMPARE(status(plan.id()), int(PlanResult::Success));
    }

    void shouldStoreAFullVersionAboveTheShareOrOnTheFullSchedule()
    {
        QTemporaryDir source;
        const QString file = source.path() + QStringLiteral("/video.bin");
        write(file, randomBytes(4 << 20));
        NVB::Info::Plan::BackupFile plan = this->plan({source.path()}, QStringLiteral("Fulls"));
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
        NVB::Info::Plan::BackupFile plan = this->plan({source.path()}, QStringLiteral("Kept"));
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
        QCOMPARE(status(restore(plan.id(), QString(), target.path())), int(PlanResult::Success));
        QVERIFY(sameFile(target.path() + file, file));

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
        const NVB::Info::Plan::BackupFile plan = this->plan({source.path()}, QStringLiteral("Damaged"));
        QVERIFY(save(plan) && run(plan.id()));
        for (const QString& file : files)
            overwrite(file, 5000, "changed");
        QVERIFY(run(plan.id()));
        const QString increment
            = m_session.planFolder(plan.id()) + QLatin1Char('/') + storedRuns(plan.id()).lastKey() + files.at(0);
        overwrite(increment, QFileInfo(increment).size() / 2, "garbage");

        QTemporaryDir target;
        const QUuid back = restore(plan.id(), QString(), target.path());
        QCOMPARE(status(back), int(PlanResult::Warning));
        QVERIFY2(message(back).contains(files.at(0)), qPrintable(message(back)));
        QVERIFY(!QFile::exists(target.path() + files.at(0)));
        QVERIFY(sameFile(target.path() + files.at(1), files.at(1)));

        QVERIFY(run(plan.id(), false, true));
        QVERIFY2(message(plan.id()).contains(QStringLiteral("1 of 2")), qPrintable(message(plan.id())));
    }
};

NVB_TEST_GUILESS_MAIN(TestEnginePlanOptions)
#include "tst_engineplanoptions.moc"
