#include <fcntl.h>
#include <sys/fsuid.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <thread>

#include <QCryptographicHash>
#include <QProcess>
#include <QRandomGenerator>
#include <QtTest>

#include "core/bytename.h"
#include "records/plan/planresult.h"
#include "previouspoint.h"
#include "runs/filebackupjob.h"
#include "runs/filerestorejob.h"
#include "runs/fileverifyjob.h"
#include "store/enginestore.h"
#include "testmain.h"

using namespace NVB::Engine;
using NVB::Info::Plan::PlanResult;

// The ways a backup can claim more than it holds, or a restore can write
// where it should not, each tried on real files.
class TestBackupSafety : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_source;
    QTemporaryDir m_storage;
    std::atomic_bool m_stop {false};
    int m_runs = 0;

    static void write(const QString& path, const QByteArray& data, qint64 mtime = 0, long nsec = 0)
    {
        QDir().mkpath(QFileInfo(path).absolutePath());
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(data);
        file.close();
        if (mtime > 0) {
            const struct timespec times[2] = {{mtime, nsec}, {mtime, nsec}};
            QCOMPARE(::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0), 0);
        }
    }

    static QByteArray read(const QString& path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
    }

    FileBackupJob::Result backup(const QStringList& roots, const QList<StoredContent>& previous = {},
        const QString& storage = QString(), bool compress = false)
    {
        FileBackupJob::Parameters parameters;
        parameters.compress = compress;
        parameters.planId = QUuid::createUuid();
        parameters.storageRoot = storage.isEmpty() ? m_storage.path() : storage;
        parameters.objectPrefix = QStringLiteral("NVB_t/plan/run%1").arg(++m_runs);
        if (!previous.isEmpty())
            PreviousPoint::use(previous, &parameters);
        FileBackupJob job(parameters, FileSelection(roots, {}, FileSelection::FilterType::All, {}, {}, false));
        auto result = job.run(m_stop, {});
        result.content = PreviousPoint::applied(previous, result);
        return result;
    }

    FileRestoreJob::Result restore(const QList<StoredContent>& content, const QString& destination)
    {
        FileRestoreJob::Parameters parameters;
        parameters.storageRoot = m_storage.path();
        parameters.content = content;
        parameters.destination = destination;
        FileRestoreJob job(parameters);
        return job.run(m_stop, {});
    }

    static const StoredContent* find(const QList<StoredContent>& content, const QString& path)
    {
        for (const StoredContent& item : content) {
            if (item.path == path)
                return &item;
        }
        return nullptr;
    }

    // QDir cannot remove names that are not valid in the locale's encoding,
    // which several cases here make on purpose; rm takes them as bytes.
    static void removeTree(const QString& path)
    {
        QProcess::execute(QStringLiteral("rm"), {QStringLiteral("-rf"), QStringLiteral("--"), path});
    }

private slots:
    void init() { m_stop = false; }

    void cleanupTestCase()
    {
        removeTree(m_source.path());
        removeTree(m_storage.path());
    }

    void shouldKeepNamesApartFromTemporaryOnes()
    {
        const QString folder = m_source.filePath(QStringLiteral("names"));
        const QString longName = QString(255, QLatin1Char('n'));
        write(folder + QStringLiteral("/X"), "the file");
        write(folder + QStringLiteral("/X.part"), "a download");
        write(folder + QLatin1Char('/') + longName, "long");
        const auto saved = backup({folder});
        QCOMPARE(saved.planResult, int(PlanResult::Success));
        QCOMPARE(saved.totals.copiedCount, 3);
        for (const char* name : {"X", "X.part"}) {
            const StoredContent* item = find(saved.content, folder + QLatin1Char('/') + QLatin1String(name));
            QVERIFY(item);
            QCOMPARE(read(m_storage.filePath(item->object)), read(folder + QLatin1Char('/') + QLatin1String(name)));
        }
        QCOMPARE(read(m_storage.filePath(find(saved.content, folder + QLatin1Char('/') + longName)->object)),
            QByteArray("long"));

        // In place, beside the user's own X.part and over a link planted at
        // X: the user's file and the link's target stay as they were.
        QTemporaryDir target;
        QTemporaryDir elsewhere;
        const QString landing = target.path() + folder;
        write(landing + QStringLiteral("/X.part"), "user's own");
        write(elsewhere.filePath(QStringLiteral("victim")), "victim");
        QVERIFY(QFile::link(elsewhere.filePath(QStringLiteral("victim")), landing + QStringLiteral("/X")));
        const auto back = restore({*find(saved.content, folder + QStringLiteral("/X"))}, target.path());
        QCOMPARE(back.planResult, int(PlanResult::Success));
        QCOMPARE(read(landing + QStringLiteral("/X")), QByteArray("the file"));
        QVERIFY(!QFileInfo(landing + QStringLiteral("/X")).isSymLink());
        QCOMPARE(read(landing + QStringLiteral("/X.part")), QByteArray("user's own"));
        QCOMPARE(read(elsewhere.filePath(QStringLiteral("victim"))), QByteArray("victim"));
        QCOMPARE(QDir(landing).entryList(QDir::Files | QDir::Hidden).size(), 2);
    }

    void shouldNoticeEveryChange_data()
    {
        QTest::addColumn<QString>("change");
        QTest::newRow("same size, same second") << QStringLiteral("edit");
        QTest::newRow("replaced with the old times") << QStringLiteral("replace");
        QTest::newRow("stored copy cut short") << QStringLiteral("truncate");
    }

    void shouldNoticeEveryChange()
    {
        QFETCH(QString, change);
        const QString folder = m_source.filePath(QStringLiteral("change-") + change);
        const QString file = folder + QStringLiteral("/doc.txt");
        write(file, "version one", 1700000000, 100);
        const auto first = backup({folder});
        QCOMPARE(first.totals.copiedCount, 1);
        const StoredContent* stored = find(first.content, file);
        QVERIFY(stored);
        QCOMPARE(stored->checksum, QCryptographicHash::hash("version one", QCryptographicHash::Sha256));

        if (change == QLatin1String("edit")) {
            write(file, "version two", 1700000000, 100);
        } else if (change == QLatin1String("replace")) {
            write(folder + QStringLiteral("/new"), "version two", 1700000000, 100);
            QVERIFY(::rename(QFile::encodeName(folder + QStringLiteral("/new")).constData(),
                        QFile::encodeName(file).constData())
                == 0);
        } else {
            QVERIFY(::truncate(QFile::encodeName(m_storage.filePath(stored->object)).constData(), 3) == 0);
        }
        const auto second = backup({folder}, first.content);
        QCOMPARE(second.planResult, int(PlanResult::Success));
        QCOMPARE(second.totals.copiedCount, 1);
        const StoredContent* again = find(second.content, file);
        QCOMPARE(read(m_storage.filePath(again->object)), read(file));
        QVERIFY(again->object != stored->object);
    }

    void shouldVerifyEveryCopyAgainstItsChecksum()
    {
        const QString folder = m_source.filePath(QStringLiteral("verify"));
        write(folder + QStringLiteral("/good.txt"), "good data");
        write(folder + QStringLiteral("/bad.txt"), "bad data!");
        const auto saved = backup({folder});
        const QString bad = folder + QStringLiteral("/bad.txt");

        FileVerifyJob::Parameters parameters;
        parameters.storageRoot = m_storage.path();
        parameters.content = saved.content;
        QCOMPARE(FileVerifyJob(parameters).run(m_stop, {}).planResult, int(PlanResult::Success));

        // Flip bytes without changing the size: only the checksum sees it.
        write(m_storage.filePath(find(saved.content, bad)->object), "BAD DATA!");
        const auto verified = FileVerifyJob(parameters).run(m_stop, {});
        QCOMPARE(verified.planResult, int(PlanResult::Failed));
        QCOMPARE(verified.totals.failedCount, 1);
        QCOMPARE(verified.files.size(), 1);
        QCOMPARE(verified.files.first().file, bad);
        QVERIFY(verified.files.first().message.contains(QStringLiteral("checksum")));

        // A restore refuses the damaged copy and leaves the file on disk.
        write(bad, "current");
        const auto back = restore(saved.content, QString());
        QCOMPARE(back.planResult, int(PlanResult::Warning));
        QCOMPARE(back.totals.failedCount, 1);
        QCOMPARE(read(bad), QByteArray("current"));
        QVERIFY(back.message.contains(QStringLiteral("checksum")));
    }

    void shouldCompressAndRestoreExactly()
    {
        const QString folder = m_source.filePath(QStringLiteral("compress"));
        const QString text = folder + QStringLiteral("/text.log");
        const QString noise = folder + QStringLiteral("/noise.bin");
        QByteArray lines;
        for (int i = 0; lines.size() < (3 << 20); ++i)
            lines += "line " + QByteArray::number(i % 977) + " of a log that repeats itself\n";
        QByteArray random(300000, Qt::Uninitialized);
        for (char& byte : random)
            byte = char(QRandomGenerator::global()->generate());
        write(text, lines);
        write(noise, random);

        const auto first = backup({folder}, {}, QString(), true);
        QCOMPARE(first.planResult, int(PlanResult::Success));
        const StoredContent* stored = find(first.content, text);
        QVERIFY(stored);
        QVERIFY(QFileInfo(m_storage.filePath(stored->object)).size() < lines.size() / 10);
        QCOMPARE(stored->storedSize, QFileInfo(m_storage.filePath(stored->object)).size());

        const QString back = m_source.filePath(QStringLiteral("compress-back"));
        QDir().mkpath(back);
        const auto restored = restore(first.content, back);
        QVERIFY2(restored.planResult == int(PlanResult::Success), qPrintable(restored.message));
        QCOMPARE(read(back + text), lines);
        QCOMPARE(read(back + noise), random);

        // Switching compression off keeps the unchanged compressed copies.
        const auto second = backup({folder}, first.content);
        QCOMPARE(second.planResult, int(PlanResult::Success));
        QCOMPARE(second.totals.copiedCount, 0);
        QCOMPARE(find(second.content, text)->object, stored->object);

        // A damaged frame fails its own file, loudly, on restore and verify.
        QFile object(m_storage.filePath(stored->object));
        QVERIFY(object.open(QIODevice::ReadWrite));
        object.seek(object.size() / 2);
        object.write("\xff\x00\xff\x00");
        object.close();
        const QString again = m_source.filePath(QStringLiteral("compress-again"));
        QDir().mkpath(again);
        const auto damaged = restore(second.content, again);
        QCOMPARE(damaged.planResult, int(PlanResult::Warning));
        QCOMPARE(damaged.totals.failedCount, 1);
        FileVerifyJob::Parameters parameters;
        parameters.storageRoot = m_storage.path();
        parameters.content = second.content;
        const auto verified = FileVerifyJob(parameters).run(m_stop, {});
        QCOMPARE(verified.planResult, int(PlanResult::Failed));
        QCOMPARE(verified.files.size(), 1);
        QCOMPARE(verified.files.first().file, text);
    }

    void shouldKeepNamesAsBytes()
    {
        // Any byte string survives the trip through text.
        QRandomGenerator random(7);
        for (int n = 0; n < 2000; ++n) {
            QByteArray name(int(random.bounded(1, 24)), Qt::Uninitialized);
            for (char& byte : name)
                byte = char(random.bounded(1, 256));
            QCOMPARE(NVL::ByteName::encode(NVL::ByteName::decode(name)), name);
        }
        QCOMPARE(NVL::ByteName::decode("Grüße"), QStringLiteral("Grüße"));

        // Names that are not UTF-8, two that a lossy reading would merge,
        // and one holding the codec's own escape character.
        const QString folder = m_source.filePath(QStringLiteral("bytes"));
        QDir().mkpath(folder);
        const QList<QByteArray> names {"a\xff", "a\xfe", "caf\xe9", "x\xef\xa3\xbf", "plain"};
        for (const QByteArray& name : names) {
            const QByteArray path = QFile::encodeName(folder) + '/' + name;
            const int fd = ::open(path.constData(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
            QVERIFY(fd >= 0);
            QCOMPARE(::write(fd, name.constData(), size_t(name.size())), ssize_t(name.size()));
            ::close(fd);
        }
        const auto saved = backup({folder});
        QCOMPARE(saved.planResult, int(PlanResult::Success));
        QCOMPARE(saved.totals.copiedCount, names.size());

        // The store keeps them apart.
        EngineStore store;
        QVERIFY(store.open(m_storage.filePath(QStringLiteral("bytes.db"))));
        StoredPlan plan;
        plan.id = QUuid::createUuid();
        plan.name = QStringLiteral("Bytes");
        plan.xml = QStringLiteral("<plan/>");
        plan.storageId = QUuid::createUuid();
        QVERIFY(store.savePlan(plan));
        RunRecord run;
        run.planId = plan.id;
        run.startUtc = QDateTime::currentDateTimeUtc();
        run.id = *store.beginRun(run);
        StoredBunch bunch {plan.storageId, plan.id, plan.name, 0, plan.xml};
        StoredRestorePoint point;
        point.connectionId = plan.storageId;
        point.bunchId = plan.id;
        point.generationId = QUuid::createUuid();
        point.sequenceNumber = 1;
        point.startUtc = run.startUtc;
        qint64 row = 0;
        QVERIFY2(store.finishRun(run, {}, plan, &bunch, &point, saved.content, &row), qPrintable(store.lastError()));
        const QList<StoredContent> kept = store.content(row);
        QCOMPARE(kept.size(), saved.content.size());

        QTemporaryDir target;
        const auto back = restore(kept, target.path());
        QCOMPARE(back.planResult, int(PlanResult::Success));
        for (const QByteArray& name : names) {
            const QByteArray path = QFile::encodeName(target.path() + folder) + '/' + name;
            const int fd = ::open(path.constData(), O_RDONLY);
            QVERIFY2(fd >= 0, path.toHex().constData());
            char data[32] = {};
            QCOMPARE(::read(fd, data, sizeof data), ssize_t(name.size()));
            ::close(fd);
            QCOMPARE(QByteArray(data, name.size()), name);
        }
        removeTree(target.path());
    }

    void shouldRestoreModesTimesLinksAndOwners()
    {
        const QString folder = m_source.filePath(QStringLiteral("meta"));
        const QString sub = folder + QStringLiteral("/locked");
        const QString file = sub + QStringLiteral("/secret.txt");
        write(file, "secret", 1600000000, 5);
        QVERIFY(QFile::link(QStringLiteral("../elsewhere/target"), folder + QStringLiteral("/link")));
        const bool root = ::geteuid() == 0;
        if (root)
            QCOMPARE(::chown(QFile::encodeName(file).constData(), 1234, 2345), 0);
        QCOMPARE(::chmod(QFile::encodeName(file).constData(), 0640), 0);
        QCOMPARE(::chmod(QFile::encodeName(sub).constData(), 0751), 0);
        const struct timespec times[2] = {{1500000000, 0}, {1500000000, 700}};
        QCOMPARE(::utimensat(AT_FDCWD, QFile::encodeName(sub).constData(), times, 0), 0);
        const auto saved = backup({folder});
        QCOMPARE(saved.planResult, int(PlanResult::Success));

        QTemporaryDir target;
        const auto back = restore(saved.content, target.path());
        QCOMPARE(back.planResult, int(PlanResult::Success));
        struct stat info
        {
        };
        QCOMPARE(::stat(QFile::encodeName(target.path() + sub).constData(), &info), 0);
        QCOMPARE(info.st_mode & 07777, 0751u);
        QCOMPARE(qint64(info.st_mtim.tv_sec), qint64(1500000000));
        QCOMPARE(qint64(info.st_mtim.tv_nsec), qint64(700));
        QCOMPARE(::stat(QFile::encodeName(target.path() + file).constData(), &info), 0);
        QCOMPARE(info.st_mode & 07777, 0640u);
        QCOMPARE(qint64(info.st_mtim.tv_nsec), qint64(5));
        if (root) {
            QCOMPARE(info.st_uid, uid_t(1234));
            QCOMPARE(info.st_gid, gid_t(2345));
        }
        char linked[64] = {};
        const QByteArray link = QFile::encodeName(target.path() + folder + QStringLiteral("/link"));
        QVERIFY(::readlink(link.constData(), linked, sizeof linked - 1) > 0);
        QCOMPARE(QByteArray(linked), QByteArray("../elsewhere/target"));
    }

    void shouldWarnAboutFilesChangingWhileRead()
    {
        const QString folder = m_source.filePath(QStringLiteral("busy"));
        const QString log = folder + QStringLiteral("/growing.log");
        write(log, QByteArray());
        QVERIFY(::truncate(QFile::encodeName(log).constData(), qint64(32) << 20) == 0);
        std::atomic_bool done {false};
        // Something keeps writing to the file during both reads of it.
        std::thread writer([&] {
            QFile file(log);
            if (!file.open(QIODevice::Append))
                return;
            while (!done) {
                file.write("x");
                file.flush();
                std::this_thread::sleep_for(std::chrono::milliseconds(5));
            }
        });
        const auto result = backup({folder});
        done = true;
        writer.join();
        QCOMPARE(result.planResult, int(PlanResult::Warning));
        QCOMPARE(result.totals.copiedCount, 1);
        QCOMPARE(result.files.size(), 1);
        QVERIFY2(result.files.first().message.contains(log), qPrintable(result.files.first().message));
        QVERIFY(result.message.contains(QStringLiteral("changed while it was read")));
    }

    void shouldCountFailuresOnceAndStoreNothingFalse()
    {
        QTemporaryDir source;
        QTemporaryDir storage;
        const QString folder = source.filePath(QStringLiteral("unreadable"));
        write(folder + QStringLiteral("/a"), "a");
        write(folder + QStringLiteral("/b"), "b");
        const auto open = QFileDevice::Permissions(0x7555);
        for (const QString& path : {source.path(), folder})
            QFile::setPermissions(path, open);
        QFile::setPermissions(storage.path(), QFileDevice::Permissions(0x7777));
        QFile::setPermissions(folder + QStringLiteral("/a"), QFileDevice::Permissions());
        QFile::setPermissions(folder + QStringLiteral("/b"), QFileDevice::Permissions());
        // Root reads everything; the job runs on this thread, which takes
        // the rights of nobody for file access meanwhile.
        const bool root = ::geteuid() == 0;
        if (root)
            ::setfsuid(65534);
        const auto result = backup({folder}, {}, storage.path());
        if (root)
            ::setfsuid(0);
        QCOMPARE(result.totals.scannedCount, 2);
        QCOMPARE(result.totals.failedCount, 2);
        QCOMPARE(result.planResult, int(PlanResult::Failed));
        QVERIFY(result.content.isEmpty());
        QVERIFY(!QFileInfo::exists(storage.filePath(QStringLiteral("NVB_t/plan/run%1").arg(m_runs))));
    }

    void shouldFollowChosenLinksAndKeepItsOwnFoldersOut()
    {
        const QString real = m_source.filePath(QStringLiteral("real"));
        write(real + QStringLiteral("/inside.txt"), "inside");
        const QString link = m_source.filePath(QStringLiteral("chosen-link"));
        QVERIFY(QFile::link(real, link));
        const auto followed = backup({link});
        QCOMPARE(followed.planResult, int(PlanResult::Success));
        QCOMPARE(followed.totals.copiedCount, 1);
        QVERIFY(find(followed.content, link + QStringLiteral("/inside.txt")));
        // Back in place through the same link, which is the system's own.
        write(real + QStringLiteral("/inside.txt"), "edited");
        QCOMPARE(restore(followed.content, QString()).planResult, int(PlanResult::Success));
        QCOMPARE(read(real + QStringLiteral("/inside.txt")), QByteArray("inside"));

        // The storage and the data folder below a source are never taken.
        QTemporaryDir tree;
        write(tree.filePath(QStringLiteral("mine.txt")), "mine");
        write(tree.filePath(QStringLiteral("data/engine.db")), "db");
        FileBackupJob::Parameters parameters;
        parameters.storageRoot = tree.filePath(QStringLiteral("storage"));
        QDir().mkpath(parameters.storageRoot);
        parameters.objectPrefix = QStringLiteral("NVB_t/p/1");
        parameters.neverTaken = QStringList {parameters.storageRoot, tree.filePath(QStringLiteral("data"))};
        const auto own
            = FileBackupJob(parameters, FileSelection({tree.path()}, {}, FileSelection::FilterType::All, {}, {}, false))
                  .run(m_stop, {});
        QCOMPARE(own.planResult, int(PlanResult::Success));
        QCOMPARE(own.totals.scannedCount, 1);

        // Nothing to take is said, not passed off as a clean success.
        QTemporaryDir empty;
        const auto none = backup({empty.path()});
        QCOMPARE(none.planResult, int(PlanResult::Warning));
        QVERIFY(none.message.contains(QStringLiteral("no files")));
    }

    void shouldStayOnTheRootsFileSystemWhenAsked()
    {
        if (::geteuid() != 0)
            QSKIP("Mounting a file system for this test needs root");
        QTemporaryDir tree;
        write(tree.filePath(QStringLiteral("here.txt")), "here");
        const QString mountPoint = tree.filePath(QStringLiteral("other"));
        QDir().mkpath(mountPoint);
        if (::mount("nvbtest", QFile::encodeName(mountPoint).constData(), "tmpfs", 0, "size=1m") != 0)
            QSKIP("tmpfs cannot be mounted here");
        write(mountPoint + QStringLiteral("/there.txt"), "there");
        FileBackupJob::Parameters parameters;
        parameters.storageRoot = m_storage.path();
        const auto run = [&](std::optional<bool> oneFileSystem) {
            parameters.objectPrefix = QStringLiteral("NVB_t/fs/%1").arg(++m_runs);
            parameters.oneFileSystem = oneFileSystem;
            return FileBackupJob(
                parameters, FileSelection({tree.path()}, {}, FileSelection::FilterType::All, {}, {}, false))
                .run(m_stop, {})
                .totals.copiedCount;
        };
        const qint64 crossing = run(std::nullopt);
        const qint64 staying = run(true);
        ::umount2(QFile::encodeName(mountPoint).constData(), MNT_DETACH);
        QCOMPARE(crossing, 2);
        QCOMPARE(staying, 1);
    }

    void shouldRefuseStoredPathsThatLeaveTheirFolder_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("object");
        QTest::newRow("climbing path") << QStringLiteral("/../../escaped.txt") << QStringLiteral("NVB_t/x/1/a");
        QTest::newRow("relative path") << QStringLiteral("escaped.txt") << QStringLiteral("NVB_t/x/1/a");
        QTest::newRow("climbing object") << QStringLiteral("/ok.txt") << QStringLiteral("../../etc/hostname");
        QTest::newRow("absolute object") << QStringLiteral("/ok.txt") << QStringLiteral("/etc/hostname");
    }

    void shouldRefuseStoredPathsThatLeaveTheirFolder()
    {
        QFETCH(QString, path);
        QFETCH(QString, object);
        write(m_storage.filePath(QStringLiteral("NVB_t/x/1/a")), "data");
        QTemporaryDir outer;
        const QString destination = outer.filePath(QStringLiteral("a/b"));
        QDir().mkpath(destination);
        StoredContent item;
        item.path = path;
        item.object = object;
        item.size = 4;
        const auto result = restore({item}, destination);
        QCOMPARE(result.planResult, int(PlanResult::Failed));
        QVERIFY(result.message.contains(QStringLiteral("refused")));
        QCOMPARE(QDir(outer.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList {"a"});
        QVERIFY(QDir(destination).isEmpty());

        // A folder of the destination that is a link is not gone through.
        QTemporaryDir elsewhere;
        QVERIFY(QFile::link(elsewhere.path(), destination + QStringLiteral("/home")));
        item.path = QStringLiteral("/home/ok.txt");
        item.object = QStringLiteral("NVB_t/x/1/a");
        QCOMPARE(restore({item}, destination).planResult, int(PlanResult::Failed));
        QVERIFY(QDir(elsewhere.path()).isEmpty());
    }
};

NVB_TEST_GUILESS_MAIN(TestBackupSafety)
#include "tst_backupsafety.moc"
