#include <unistd.h>

#include <QProcess>
#include <QtTest>

#include "disks/diskscanner.h"
#include "testmain.h"

using NVB::Engine::DiskScanner;

namespace {

bool run(const QString& program, const QStringList& arguments, QString* output = nullptr)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished(30000) || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        return false;
    if (output)
        *output = QString::fromLocal8Bit(process.readAllStandardOutput()).trimmed();
    return true;
}

} // namespace

// The machine's real disks, seen through a loop device made for the test.
class TestDiskScanner : public QObject
{
    Q_OBJECT

private slots:
    void shouldDescribeLoopVolumeWithFileSystemAndMount()
    {
        if (!QFile::exists(QStringLiteral("/dev/loop-control")) || ::geteuid() != 0)
            QSKIP("Loop devices are missing or the test does not run as root");
        QTemporaryDir dir;
        const QString image = dir.filePath(QStringLiteral("volume.img"));
        QVERIFY(run(QStringLiteral("truncate"), {QStringLiteral("-s"), QStringLiteral("32M"), image}));
        QVERIFY(run(QStringLiteral("mkfs.ext4"),
            {QStringLiteral("-q"), QStringLiteral("-L"), QStringLiteral("nvbscan"), image}));
        QString device;
        QVERIFY(run(QStringLiteral("losetup"), {QStringLiteral("-f"), QStringLiteral("--show"), image}, &device));
        const QString name = device.mid(5);
        const QString mountPoint = dir.filePath(QStringLiteral("mnt"));
        QVERIFY(QDir().mkpath(mountPoint));
        const bool mounted = run(QStringLiteral("mount"), {device, mountPoint});
        const auto info = DiskScanner().scan();
        if (mounted)
            run(QStringLiteral("umount"), {mountPoint});
        run(QStringLiteral("losetup"), {QStringLiteral("-d"), device});
        QVERIFY(mounted);

        const auto disk = info->diskById(DiskScanner::diskIdFor(name));
        QCOMPARE(disk.deviceName(), name);
        QCOMPARE(disk.capacity(), qint64(32) << 20);
        QCOMPARE(disk.model(), image);
        QCOMPARE(disk.volumes().size(), 1);
        const auto volume = disk.volumes().first();
        QCOMPARE(volume.fileSystemType(), QStringLiteral("ext4"));
        QCOMPARE(volume.label(), QStringLiteral("nvbscan"));
        QCOMPARE(volume.length(), qint64(32) << 20);
        QCOMPARE(volume.mountPoints(), QStringList {mountPoint});
        QVERIFY(volume.usedSpace() > 0 && volume.usedSpace() < volume.length());
        QVERIFY(!volume.identity().isNull());
        // The record survives the trip through its XML form.
        QCOMPARE(*NVB::Info::DiskInfo::createFromXml(info->toXml()), *info);
    }
};

NVB_TEST_MAIN(TestDiskScanner)
#include "tst_diskscanner.moc"
