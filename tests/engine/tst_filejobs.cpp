#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <thread>

#include <QtTest>

#include "archive/archivebackupjob.h"
#include "archive/archiverestorejob.h"
#include "previouspoint.h"
#include "records/plan/planresult.h"
#include "runs/filebackupjob.h"
#include "runs/filerestorejob.h"
#include "testmain.h"

using namespace NVB::Engine;
using NVB::Info::Plan::PlanResult;

class TestFileJobs : public QObject
{
    Q_OBJECT

private:
    static void write(const QString& path, const QByteArray& data, qint64 mtime = 0)
    {
        QDir().mkpath(QFileInfo(path).absolutePath());
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(data);
        file.close();
        if (mtime > 0) {
            const struct timespec times[2] = {{mtime, 0}, {mtime, 0}};
            ::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0);
        }
    }

    static QByteArray read(const QString& path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
    }

    static FileBackupJob::Parameters parameters(
        const QString& storage, const QString& runName, const QList<StoredContent>& previous = {})
    {
        FileBackupJob::Parameters s;
        s.planId = QUuid::createUuid();
        s.planName = QStringLiteral("Test");
        s.storageRoot = storage;
        s.objectPrefix = QStringLiteral("NVB_test/plan/") + runName;
        if (!previous.isEmpty())
            PreviousPoint::use(previous, &s);
        return s;
    }

    static FileSelection everything(const QString& root, const QStringList& excluded = {})
    {
        return FileSelection({root}, excluded, FileSelection::FilterType::All, {}, {}, false);
    }

    static QStringList paths(const QList<StoredContent>& content)
    {
        QStringList result;
        for (const StoredContent& item : content)
            result << item.path;
        return result;
    }

private slots:
    void shouldCopyOnlyWhatChanged()
    {
        QTemporaryDir source;
        QTemporaryDir storage;
        const QString root = source.path();
        write(root + QStringLiteral("/a.txt"), "alpha", 1700000000);
        write(root + QStringLiteral("/sub/b.txt"), "beta", 1700000000);
        write(root + QStringLiteral("/skip/c.txt"), "gamma", 1700000000);
        std::atomic_bool stop {false};

        FileBackupJob first(
            parameters(storage.path(), QStringLiteral("run1")), everything(root, {root + QStringLiteral("/skip")}));
        int reports = 0;
        const auto full = first.run(stop, [&reports](const RunProgress&) { ++reports; });
        QCOMPARE(full.planResult, int(PlanResult::Success));
        QCOMPARE(full.totals.copiedCount, 2);
        QVERIFY(reports >= 1);
        QCOMPARE(read(storage.path() + QStringLiteral("/NVB_test/plan/run1") + root + QStringLiteral("/sub/b.txt")),
            QByteArray("beta"));
        QVERIFY(!paths(full.content).contains(root + QStringLiteral("/skip/c.txt")));
        QVERIFY(paths(full.content).contains(root + QStringLiteral("/sub")));

        FileBackupJob unchanged(parameters(storage.path(), QStringLiteral("run2"), full.content), everything(root));
        auto same = unchanged.run(stop, {});
        same.content = PreviousPoint::applied(full.content, same);
        QCOMPARE(same.totals.copiedCount, 1); // only the folder that was excluded before
        QCOMPARE(same.files.size(), 1);
        QCOMPARE(same.files.first().file, root + QStringLiteral("/skip/c.txt"));

        write(root + QStringLiteral("/a.txt"), "alpha, changed", 1700000500);
        FileBackupJob changed(parameters(storage.path(), QStringLiteral("run3"), same.content), everything(root));
        auto delta = changed.run(stop, {});
        delta.content = PreviousPoint::applied(same.content, delta);
        QCOMPARE(delta.totals.copiedCount, 1);
        QCOMPARE(delta.files.first().file, root + QStringLiteral("/a.txt"));
        // An unchanged file keeps the copy of the run that made it.
        for (const StoredContent& item : delta.content) {
            if (item.path.endsWith(QLatin1String("b.txt")))
                QVERIFY(item.object.startsWith(QLatin1String("NVB_test/plan/run1")));
            if (item.path.endsWith(QLatin1String("a.txt")))
                QVERIFY(item.object.startsWith(QLatin1String("NVB_test/plan/run3")));
        }
    }

    void shouldApplyFilters_data()
    {
        QTest::addColumn<int>("filterType");
        QTest::addColumn<QStringList>("filter");
        QTest::addColumn<QStringList>("folders");
        QTest::addColumn<bool>("hidden");
        QTest::addColumn<QStringList>("taken");
        QTest::newRow("all") << 0 << QStringList {QStringLiteral("txt")} << QStringList() << false
                             << QStringList {"doc.txt", "img.JPG", ".hidden", "cache/x.txt"};
        QTest::newRow("only listed") << 1 << QStringList {QStringLiteral("txt"), QStringLiteral("*.jpg")}
                                     << QStringList() << false << QStringList {"doc.txt", "img.JPG", "cache/x.txt"};
        QTest::newRow("all but listed") << 2 << QStringList {QStringLiteral(".txt")} << QStringList() << false
                                        << QStringList {"img.JPG", ".hidden"};
        QTest::newRow("folder patterns") << 0 << QStringList() << QStringList {QStringLiteral("ca*")} << false
                                         << QStringList {"doc.txt", "img.JPG", ".hidden"};
        QTest::newRow("no hidden") << 0 << QStringList() << QStringList() << true
                                   << QStringList {"doc.txt", "img.JPG", "cache/x.txt"};
    }

    void shouldApplyFilters()
    {
        QFETCH(int, filterType);
        QFETCH(QStringList, filter);
        QFETCH(QStringList, folders);
        QFETCH(bool, hidden);
        QFETCH(QStringList, taken);
        QTemporaryDir source;
        QTemporaryDir storage;
        for (const char* name : {"doc.txt", "img.JPG", ".hidden", "cache/x.txt"})
            write(source.filePath(QString::fromLatin1(name)), "x");
        std::atomic_bool stop {false};
        FileBackupJob job(parameters(storage.path(), QStringLiteral("r")),
            FileSelection({source.path()}, {}, FileSelection::FilterType(filterType), filter, folders, hidden));
        const auto result = job.run(stop, {});
        QStringList files;
        for (const StoredContent& item : result.content) {
            if (item.type == StoredContent::File)
                files << item.path.mid(source.path().size() + 1);
        }
        files.sort();
        taken.sort();
        QCOMPARE(files, taken);
    }

    void shouldNeverFollowFolderLinks()
    {
        QTemporaryDir source;
        QTemporaryDir storage;
        write(source.filePath(QStringLiteral("real/file.txt")), "x");
        QVERIFY(QFile::link(source.path(), source.filePath(QStringLiteral("real/loop"))));
        std::atomic_bool stop {false};
        FileBackupJob job(parameters(storage.path(), QStringLiteral("r")), everything(source.path()));
        const auto result = job.run(stop, {});
        QCOMPARE(result.planResult, int(PlanResult::Success));
        QCOMPARE(result.totals.copiedCount, 1);
    }

    void shouldReportMissingSourceAsFailure()
    {
        QTemporaryDir storage;
        std::atomic_bool stop {false};
        FileBackupJob job(
            parameters(storage.path(), QStringLiteral("r")), everything(QStringLiteral("/no/such/folder")));
        const auto result = job.run(stop, {});
        QCOMPARE(result.planResult, int(PlanResult::Failed));
        QVERIFY(result.message.contains(QStringLiteral("/no/such/folder")));
    }

    void shouldStopInsideALargeFile()
    {
        QTemporaryDir source;
        QTemporaryDir storage;
        write(source.filePath(QStringLiteral("small.txt")), "small");
        // Sparse, so it costs no disk to make, but reading it all takes far
        // longer than the stop below allows.
        const QString large = source.filePath(QStringLiteral("zz-large.bin"));
        write(large, QByteArray());
        QVERIFY(::truncate(QFile::encodeName(large).constData(), qint64(8) << 30) == 0);
        std::atomic_bool stop {false};
        FileBackupJob job(parameters(storage.path(), QStringLiteral("r")), everything(source.path()));
        std::thread stopper([&stop] {
            std::this_thread::sleep_for(std::chrono::milliseconds(300));
            stop = true;
        });
        const auto result = job.run(stop, {});
        stopper.join();
        QCOMPARE(result.planResult, int(PlanResult::Interrupted));
        QVERIFY(result.totals.copiedSize < (qint64(8) << 30));
        QVERIFY(result.content.isEmpty());
        // Neither the copy in progress nor the run's finished copies remain.
        QDirIterator it(storage.path(), QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
        QStringList left;
        while (it.hasNext())
            left << it.next();
        QCOMPARE(left, QStringList());
    }

    void shouldRestoreNewFormatPastFilesItKeeps()
    {
        QTemporaryDir source;
        QTemporaryDir storage;
        QTemporaryDir target;
        // Small files share a pack and come in one read; the large one spans
        // several chunks. A file kept at the destination must not shift the
        // chunks read ahead for the files after it.
        QRandomGenerator random(7);
        const auto bytes = [&random](int size) {
            QByteArray data(size, Qt::Uninitialized);
            random.fillRange(reinterpret_cast<quint32*>(data.data()), size / 4);
            return data;
        };
        for (int n = 0; n < 30; ++n)
            write(source.filePath(QStringLiteral("d/f%1").arg(n, 2, 10, QLatin1Char('0'))), bytes(4000 + 4 * n));
        write(source.filePath(QStringLiteral("d/large")), bytes(3 * 1024 * 1024));
        ArchiveBackupJob::Parameters backup;
        backup.storageRoot = storage.path();
        backup.repositoryRoot = QStringLiteral("archive");
        backup.generation = QUuid::createUuid();
        backup.sequence = 1;
        backup.newGeneration = true;
        backup.compress = true;
        backup.startUtc = QDateTime::currentDateTimeUtc();
        std::atomic_bool stop {false};
        QCOMPARE(
            ArchiveBackupJob(backup, everything(source.path())).run(stop, {}).planResult, int(PlanResult::Success));

        const QString kept = target.path() + source.filePath(QStringLiteral("d/f07"));
        write(kept, "mine");
        ArchiveRestoreJob::Parameters restore;
        restore.storageRoot = storage.path();
        restore.repositoryRoot = backup.repositoryRoot;
        restore.generation = backup.generation;
        restore.sequence = 1;
        restore.destination = target.path();
        restore.skipExistingFiles = true;
        const auto result = ArchiveRestoreJob(restore).run(stop, {});
        QCOMPARE(result.planResult, int(PlanResult::Success));
        QCOMPARE(result.totals.copiedCount, 30);
        QCOMPARE(read(kept), QByteArray("mine"));
        QDirIterator it(source.filePath(QStringLiteral("d")), QDir::Files);
        while (it.hasNext()) {
            const QString path = it.next();
            if (path != source.filePath(QStringLiteral("d/f07")))
                QVERIFY2(read(target.path() + path) == read(path), qPrintable(path));
        }

        // Asked to, a restore replaces what it found there.
        restore.skipExistingFiles = false;
        QCOMPARE(ArchiveRestoreJob(restore).run(stop, {}).totals.copiedCount, 31);
        QCOMPARE(read(kept), read(source.filePath(QStringLiteral("d/f07"))));
        QCOMPARE(QDir(QFileInfo(kept).path()).entryList(QDir::Files).size(), 31);
    }

    void shouldRestoreChosenItems()
    {
        QTemporaryDir source;
        QTemporaryDir storage;
        QTemporaryDir target;
        write(source.filePath(QStringLiteral("keep/one.txt")), "one", 1700000000);
        write(source.filePath(QStringLiteral("keep/two.txt")), "two", 1700000000);
        write(source.filePath(QStringLiteral("other.txt")), "other", 1700000000);
        std::atomic_bool stop {false};
        FileBackupJob backup(parameters(storage.path(), QStringLiteral("r")), everything(source.path()));
        const auto saved = backup.run(stop, {});

        FileRestoreJob::Parameters restoreSpec;
        restoreSpec.storageRoot = storage.path();
        restoreSpec.content = saved.content;
        restoreSpec.items = QStringList {source.filePath(QStringLiteral("keep"))};
        restoreSpec.destination = target.path();
        FileRestoreJob restore(restoreSpec);
        const auto result = restore.run(stop, {});
        QCOMPARE(result.planResult, int(PlanResult::Success));
        QCOMPARE(result.totals.copiedCount, 2);
        const QString landed
            = FileRestoreJob::targetPath(target.path(), source.filePath(QStringLiteral("keep/two.txt")));
        QCOMPARE(read(landed), QByteArray("two"));
        QCOMPARE(QFileInfo(landed).lastModified().toSecsSinceEpoch(), 1700000000);
        QVERIFY(
            !QFile::exists(FileRestoreJob::targetPath(target.path(), source.filePath(QStringLiteral("other.txt")))));

        // Put back in place: an existing file is left alone when asked to.
        write(source.filePath(QStringLiteral("other.txt")), "edited");
        restoreSpec.items = QStringList {source.filePath(QStringLiteral("other.txt"))};
        restoreSpec.destination.clear();
        restoreSpec.skipExistingFiles = true;
        FileRestoreJob inPlace(restoreSpec);
        QCOMPARE(inPlace.run(stop, {}).files.first().operation, int(RunFileRecord::Skipped));
        QCOMPARE(read(source.filePath(QStringLiteral("other.txt"))), QByteArray("edited"));
        restoreSpec.skipExistingFiles = false;
        FileRestoreJob overwrite(restoreSpec);
        QCOMPARE(overwrite.run(stop, {}).planResult, int(PlanResult::Success));
        QCOMPARE(read(source.filePath(QStringLiteral("other.txt"))), QByteArray("other"));
    }
};

NVB_TEST_GUILESS_MAIN(TestFileJobs)
#include "tst_filejobs.moc"
