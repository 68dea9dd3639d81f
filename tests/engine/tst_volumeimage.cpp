#include <fcntl.h>
#include <unistd.h>

#include <QCryptographicHash>
#include <QProcess>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QtTest>

#include "disks/diskscanner.h"
#include "images/volumeimage.h"
#include "records/plan/backupdiskimage.h"
#include "records/plan/planresult.h"
#include "records/plan/restorediskimage.h"
#include "runs/runmanager.h"
#include "store/enginestore.h"
#include "testmain.h"

using namespace NVB::Engine;
using NVB::Info::Plan::PlanResult;

namespace {

bool run(const QString& program, const QStringList& arguments, QString* output = nullptr)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished(60000) || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        return false;
    if (output)
        *output = QString::fromLocal8Bit(process.readAllStandardOutput()).trimmed();
    return true;
}

QByteArray digest(const QString& path)
{
    QFile file(path);
    QCryptographicHash hash(QCryptographicHash::Sha256);
    return file.open(QIODevice::ReadOnly) && hash.addData(&file) ? hash.result() : QByteArray();
}

// A loop device on a new image file, detached at the end of the test.
struct Loop
{
    QString device;
    ~Loop()
    {
        if (!device.isEmpty())
            run(QStringLiteral("losetup"), {QStringLiteral("-d"), device});
    }
    bool attach(const QString& image, const QString& size)
    {
        return run(QStringLiteral("truncate"), {QStringLiteral("-s"), size, image})
            && run(QStringLiteral("losetup"), {QStringLiteral("-f"), QStringLiteral("--show"), image}, &device);
    }
};

// An engine store with a File System account in a temporary folder.
struct Storage
{
    EngineStore store;
    StoredAccount account;
    bool open(const QTemporaryDir& dir)
    {
        const QString root = dir.filePath(QStringLiteral("storage"));
        account = StoredAccount {QUuid::createUuid(), {}, QStringLiteral("Disk"), 1, QStringLiteral("img"),
            QJsonObject {{QStringLiteral("Path"), root}}};
        return store.open(dir.filePath(QStringLiteral("engine.db"))) && QDir().mkpath(root)
            && store.saveAccount(account);
    }
    bool save(const NVB::Info::Plan::Base& record)
    {
        StoredPlan plan {};
        plan.describe(record);
        plan.storageId = account.id;
        return store.savePlan(plan);
    }
};

} // namespace

// A whole ext4 volume with files, imaged, wiped, restored and read back.
class TestVolumeImage : public QObject
{
    Q_OBJECT

private slots:
    void shouldRestoreWipedVolumeByteForByte()
    {
        if (!QFile::exists(QStringLiteral("/dev/loop-control")) || ::geteuid() != 0)
            QSKIP("Loop devices are missing or the test does not run as root");
        QTemporaryDir dir;
        Loop volume, small;
        QVERIFY(volume.attach(dir.filePath(QStringLiteral("volume.img")), QStringLiteral("64M")));
        QVERIFY(small.attach(dir.filePath(QStringLiteral("small.img")), QStringLiteral("16M")));
        QVERIFY(run(QStringLiteral("mkfs.ext4"), {QStringLiteral("-q"), volume.device}));
        const QString mnt = dir.filePath(QStringLiteral("mnt"));
        QVERIFY(QDir().mkpath(mnt));
        QVERIFY(run(QStringLiteral("mount"), {volume.device, mnt}));
        QByteArray random(3 << 20, Qt::Uninitialized);
        QRandomGenerator(24).fillRange(reinterpret_cast<quint32*>(random.data()), random.size() / 4);
        QMap<QString, QByteArray> files {{QStringLiteral("random.bin"), random},
            {QStringLiteral("docs/notes.txt"), QByteArray("notes\n").repeated(5000)}};
        QDir(mnt).mkpath(QStringLiteral("docs"));
        for (auto it = files.cbegin(); it != files.cend(); ++it) {
            QFile file(mnt + QLatin1Char('/') + it.key());
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(it.value());
        }
        std::atomic_bool stop {false};
        const QString image = dir.filePath(QStringLiteral("backup.nvbimg"));
        // Mounted read-write: imaged, with a warning that says so.
        const auto live = VolumeImage::backup(volume.device, image, {}, stop);
        QVERIFY2(live.ok, qPrintable(live.error));
        QVERIFY(!live.warnings.isEmpty() && live.warnings.first().contains(QStringLiteral("without a snapshot")));
        // Nothing is written onto a mounted volume.
        const auto refused = VolumeImage::restore(image, volume.device, stop);
        QVERIFY(!refused.ok && refused.error.contains(QStringLiteral("mounted")));
        QVERIFY(run(QStringLiteral("umount"), {mnt}));

        const QByteArray before = digest(volume.device);
        const auto taken = VolumeImage::backup(volume.device, image, {256 << 10, true, false}, stop);
        QVERIFY2(taken.ok, qPrintable(taken.error));
        QVERIFY(taken.warnings.isEmpty());
        QCOMPARE(taken.volumeSize, qint64(64) << 20);
        QVERIFY(taken.blocksSkipped > 0); // the empty part of the file system
        QVERIFY(QFileInfo(image).size() < (16 << 20));

        const auto tooSmall = VolumeImage::restore(image, small.device, stop);
        QVERIFY(!tooSmall.ok && tooSmall.error.contains(QStringLiteral("less than")));

        // Wiped with a pattern, so that a block left unwritten would show.
        {
            QFile device(volume.device);
            QVERIFY(device.open(QIODevice::WriteOnly));
            const QByteArray pattern(1 << 20, 'X');
            for (int i = 0; i < 64; ++i)
                QCOMPARE(device.write(pattern), qint64(pattern.size()));
        }
        QVERIFY(digest(volume.device) != before);
        const auto restored = VolumeImage::restore(image, volume.device, stop);
        QVERIFY2(restored.ok, qPrintable(restored.error));
        QCOMPARE(digest(volume.device), before);
        QVERIFY(run(QStringLiteral("mount"), {volume.device, mnt}));
        for (auto it = files.cbegin(); it != files.cend(); ++it) {
            QFile file(mnt + QLatin1Char('/') + it.key());
            QVERIFY(file.open(QIODevice::ReadOnly));
            QCOMPARE(file.readAll(), it.value());
        }
        QVERIFY(run(QStringLiteral("umount"), {mnt}));

        // A damaged image is refused and named.
        QFile cut(image);
        QVERIFY(cut.resize(cut.size() - 9));
        const auto broken = VolumeImage::restore(image, volume.device, stop);
        QVERIFY(!broken.ok && broken.error.contains(QStringLiteral("damaged")));
    }

    // A disk image plan and its restore plan, run by the run manager against
    // a File System account, as the console starts them.
    void shouldRunDiskImagePlansBackAndRestore()
    {
        if (!QFile::exists(QStringLiteral("/dev/loop-control")) || ::geteuid() != 0)
            QSKIP("Loop devices are missing or the test does not run as root");
        QTemporaryDir dir;
        Loop volume;
        QVERIFY(volume.attach(dir.filePath(QStringLiteral("volume.img")), QStringLiteral("32M")));
        QVERIFY(run(QStringLiteral("mkfs.ext4"), {QStringLiteral("-q"), volume.device}));
        const QString mnt = dir.filePath(QStringLiteral("mnt"));
        QVERIFY(QDir().mkpath(mnt));
        const auto write = [&](const QString& name, const QByteArray& bytes) {
            QFile file(mnt + QLatin1Char('/') + name);
            return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
        };
        QVERIFY(run(QStringLiteral("mount"), {volume.device, mnt}));
        QVERIFY(write(QStringLiteral("kept.txt"), QByteArray("kept\n").repeated(10000)));
        // Random bytes left behind in free blocks: only the file system's
        // bitmap tells that the image needs none of them.
        QByteArray noise(8 << 20, Qt::Uninitialized);
        QRandomGenerator(18).fillRange(reinterpret_cast<quint32*>(noise.data()), noise.size() / 4);
        QVERIFY(write(QStringLiteral("gone.bin"), noise));
        QVERIFY(run(QStringLiteral("sync"), {}));
        QVERIFY(QFile::remove(mnt + QStringLiteral("/gone.bin")));
        QVERIFY(run(QStringLiteral("umount"), {mnt}));

        Storage storage;
        QVERIFY(storage.open(dir));
        EngineStore& store = storage.store;
        const StoredAccount& account = storage.account;
        const auto save = [&](const NVB::Info::Plan::Base& record) { return storage.save(record); };
        const QString name = QFileInfo(volume.device).fileName();
        auto disks = DiskScanner().scan();
        NVB::Info::DiskInfo::Volume chosen;
        for (auto& disk : disks->disks()) {
            for (auto& candidate : disk.volumes()) {
                candidate.setEnabled(candidate.deviceName() == name);
                if (candidate.isEnabled())
                    chosen = candidate;
            }
        }
        QCOMPARE(chosen.deviceName(), name);
        NVB::Info::Plan::BackupDiskImage backup;
        backup.setId(QUuid::createUuid());
        backup.setName(QStringLiteral("Image"));
        backup.setStorage(account.id);
        backup.setBackupVolumesType(NVB::Info::Plan::BackupDiskImage::SelectedPartitions);
        backup.setDiskInfo(disks);
        backup.setDifferentialBlockSize(256 << 10);
        QVERIFY(save(backup));

        RunManager runs(&store);
        QSignalSpy finished(&runs, &RunManager::finished);
        QSignalSpy progressed(&runs, &RunManager::progressed);
        QCOMPARE(runs.start(backup.id(), false), QString());
        QVERIFY(finished.wait(60000));
        QVERIFY2(finished.first().at(2).toInt() == int(PlanResult::Success),
            qPrintable(store.runs(HistoryQuery {}).first().errorMessage));
        const auto point = store.latestRestorePoint(account.id, backup.id());
        QVERIFY(point.has_value());
        const QList<StoredContent> images = store.content(point->rowId);
        QCOMPARE(images.size(), 1);
        QCOMPARE(images.first().path, volume.device);
        QCOMPARE(images.first().size, qint64(32) << 20);
        QVERIFY(QFileInfo(dir.filePath(QStringLiteral("storage/") + images.first().object)).size() < (2 << 20));
        QVERIFY(!progressed.isEmpty());
        const auto last = progressed.last().at(2).value<RunProgress>();
        QCOMPARE(last.volumes.size(), 1);
        QCOMPARE(last.volumes.first().read, 100);

        QVERIFY(run(QStringLiteral("mount"), {volume.device, mnt}));
        QVERIFY(write(QStringLiteral("kept.txt"), "overwritten"));
        QVERIFY(write(QStringLiteral("later.txt"), "made after the image"));

        NVB::Info::Plan::RestoreDiskImage restore;
        restore.setId(QUuid::createUuid());
        restore.setName(QStringLiteral("Image back"));
        restore.setStorage(account.id);
        restore.setRestorePoint(
            QStringLiteral("NVB_Archive\\%1\\latest").arg(backup.id().toString(QUuid::WithoutBraces)));
        auto configuration = NVB::Info::RestoreDiskConfiguration::createFromDiskInfo(disks);
        for (auto& disk : configuration->disks()) {
            for (auto& target : disk.volumes()) {
                target.setDestinationDiskId(chosen.diskId());
                target.setDestinationIdentity(chosen.identity());
                target.setDestinationEnable(true);
            }
        }
        restore.setRestoreDiskConfiguration(configuration);
        QVERIFY(save(restore));
        // A mounted target is refused and left as it is.
        finished.clear();
        QCOMPARE(runs.start(restore.id(), false), QString());
        QVERIFY(finished.wait(60000));
        QCOMPARE(finished.first().at(2).toInt(), int(PlanResult::Failed));
        QVERIFY(QFile::exists(mnt + QStringLiteral("/later.txt")));
        QVERIFY(run(QStringLiteral("umount"), {mnt}));

        finished.clear();
        QCOMPARE(runs.start(restore.id(), false), QString());
        QVERIFY(finished.wait(60000));
        QCOMPARE(finished.first().at(2).toInt(), int(PlanResult::Success));
        QVERIFY(run(QStringLiteral("mount"), {volume.device, mnt}));
        {
            QFile kept(mnt + QStringLiteral("/kept.txt"));
            QVERIFY(kept.open(QIODevice::ReadOnly));
            QCOMPARE(kept.readAll(), QByteArray("kept\n").repeated(10000));
        }
        QVERIFY(!QFile::exists(mnt + QStringLiteral("/later.txt")));
        QVERIFY(run(QStringLiteral("umount"), {mnt}));
    }

    // An enciphered plan of two volumes: the storage holds nothing readable,
    // a wrong password writes nothing, and one restore brings both volumes
    // back, going on past a volume that cannot be written and naming it.
    void shouldEncipherImagesAndRestoreSeveralVolumes()
    {
        if (!QFile::exists(QStringLiteral("/dev/loop-control")) || ::geteuid() != 0)
            QSKIP("Loop devices are missing or the test does not run as root");
        QTemporaryDir dir;
        Loop first, second;
        QVERIFY(first.attach(dir.filePath(QStringLiteral("first.img")), QStringLiteral("24M")));
        QVERIFY(second.attach(dir.filePath(QStringLiteral("second.img")), QStringLiteral("16M")));
        const QString mnt = dir.filePath(QStringLiteral("mnt"));
        QVERIFY(QDir().mkpath(mnt));
        const QByteArray sentence("The quick brown fox jumps over the lazy dog.\n");
        for (const Loop* loop : {&first, &second}) {
            QVERIFY(run(QStringLiteral("mkfs.ext4"), {QStringLiteral("-q"), loop->device}));
            QVERIFY(run(QStringLiteral("mount"), {loop->device, mnt}));
            QFile file(mnt + QStringLiteral("/fox.txt"));
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(sentence.repeated(20000) + loop->device.toUtf8());
            file.close();
            QVERIFY(run(QStringLiteral("umount"), {mnt}));
        }
        const QByteArray firstBefore = digest(first.device);
        const QByteArray secondBefore = digest(second.device);

        Storage storage;
        QVERIFY(storage.open(dir));
        EngineStore& store = storage.store;
        const StoredAccount& account = storage.account;
        const auto save = [&](const NVB::Info::Plan::Base& record) { return storage.save(record); };
        const QStringList names {QFileInfo(first.device).fileName(), QFileInfo(second.device).fileName()};
        auto disks = DiskScanner().scan();
        QHash<QUuid, QPair<QUuid, QUuid>> itself; // source volume: its own disk and volume
        for (auto& disk : disks->disks()) {
            for (auto& volume : disk.volumes()) {
                volume.setEnabled(names.contains(volume.deviceName()));
                if (volume.isEnabled())
                    itself.insert(volume.identity(), {volume.diskId(), volume.identity()});
            }
        }
        QCOMPARE(itself.size(), 2);
        NVB::Info::Plan::BackupDiskImage backup;
        backup.setId(QUuid::createUuid());
        backup.setName(QStringLiteral("Sealed"));
        backup.setStorage(account.id);
        backup.setBackupVolumesType(NVB::Info::Plan::BackupDiskImage::SelectedPartitions);
        backup.setDiskInfo(disks);
        backup.setDifferentialBlockSize(1 << 20);
        backup.setUseCompression(false); // so the sentence would show if the cipher were skipped
        backup.encryption().setEnabled(true);
        backup.encryption().setEncryptionType(NVB::Info::Plan::BackupEncyption::AES192);
        backup.encryption().setPassword(QStringLiteral("correct horse"));
        QVERIFY(save(backup));

        RunManager runs(&store);
        QSignalSpy finished(&runs, &RunManager::finished);
        QCOMPARE(runs.start(backup.id(), false), QString());
        QVERIFY(finished.wait(60000));
        QVERIFY2(finished.first().at(2).toInt() == int(PlanResult::Success),
            qPrintable(store.runs(HistoryQuery {}).first().errorMessage));
        const auto point = store.latestRestorePoint(account.id, backup.id());
        QVERIFY(point && point->encrypted);
        const QList<StoredContent> images = store.content(point->rowId);
        QCOMPARE(images.size(), 2);
        for (const StoredContent& image : images) {
            QFile stored(dir.filePath(QStringLiteral("storage/") + image.object));
            QVERIFY(stored.open(QIODevice::ReadOnly));
            const QByteArray bytes = stored.readAll();
            QVERIFY(bytes.startsWith("NVBC"));
            QVERIFY(!bytes.contains(sentence));
            QVERIFY(!bytes.contains("NVBIMG01"));
        }

        NVB::Info::Plan::RestoreDiskImage restore;
        restore.setId(QUuid::createUuid());
        restore.setName(QStringLiteral("Unseal"));
        restore.setStorage(account.id);
        restore.setRestorePoint(
            QStringLiteral("NVB_Archive\\%1\\latest").arg(backup.id().toString(QUuid::WithoutBraces)));
        auto configuration = NVB::Info::RestoreDiskConfiguration::createFromDiskInfo(disks);
        for (auto& disk : configuration->disks()) {
            for (auto& target : disk.volumes()) {
                if (!itself.contains(target.sourceIdentity()))
                    continue;
                target.setDestinationDiskId(itself.value(target.sourceIdentity()).first);
                target.setDestinationIdentity(itself.value(target.sourceIdentity()).second);
                target.setDestinationEnable(true);
            }
        }
        restore.setRestoreDiskConfiguration(configuration);
        const auto restoreWith = [&](const QString& password) {
            restore.setEncryptionPassword(password);
            finished.clear();
            return save(restore) && runs.start(restore.id(), false).isEmpty() && finished.wait(60000)
                ? finished.first().at(2).toInt()
                : -1;
        };
        // Wiped with a pattern, so that any write would show.
        for (const Loop* loop : {&first, &second}) {
            QFile device(loop->device);
            QVERIFY(device.open(QIODevice::WriteOnly));
            QCOMPARE(device.write(QByteArray(1 << 20, 'X')), qint64(1 << 20));
        }
        const QByteArray firstWiped = digest(first.device);
        const QByteArray secondWiped = digest(second.device);
        QCOMPARE(restoreWith(QStringLiteral("wrong horse")), int(PlanResult::Failed));
        QVERIFY(store.runs(HistoryQuery {}).first().errorMessage.contains(QStringLiteral("wrong password")));
        QCOMPARE(digest(first.device), firstWiped);
        QCOMPARE(digest(second.device), secondWiped);

        // The volume restored first is held open exclusively: it fails, and
        // the one after it is still restored.
        QString early;
        for (const auto& disk : disks->disks()) {
            for (const auto& volume : disk.volumes()) {
                if (early.isEmpty() && names.contains(volume.deviceName()))
                    early = QStringLiteral("/dev/") + volume.deviceName();
            }
        }
        const Loop& held = early == first.device ? first : second;
        const Loop& other = early == first.device ? second : first;
        const int fd = ::open(QFile::encodeName(held.device).constData(), O_RDONLY | O_EXCL);
        QVERIFY(fd >= 0);
        const int partly = restoreWith(QStringLiteral("correct horse"));
        ::close(fd);
        QCOMPARE(partly, int(PlanResult::Failed));
        QCOMPARE(digest(other.device), &other == &first ? firstBefore : secondBefore);
        QCOMPARE(digest(held.device), &held == &first ? firstWiped : secondWiped);
        const QString message = store.runs(HistoryQuery {}).first().errorMessage;
        QVERIFY2(
            message.startsWith(held.device + QLatin1Char(':')) && !message.contains(other.device + QLatin1Char(':')),
            qPrintable(message));

        QCOMPARE(restoreWith(QStringLiteral("correct horse")), int(PlanResult::Success));
        QCOMPARE(digest(first.device), firstBefore);
        QCOMPARE(digest(second.device), secondBefore);
    }
};

NVB_TEST_MAIN(TestVolumeImage)
#include "tst_volumeimage.moc"
