// A 1 GiB ext4 loop volume, half full of incompressible files, imaged by
// VolumeImage against `dd` of the same volume to a file: time and stored
// size. Needs root and loop devices.

#include <unistd.h>

#include <cstdio>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include "images/volumeimage.h"

using NVB::Engine::VolumeImage;

namespace {

bool run(const QString& program, const QStringList& arguments, QString* output = nullptr)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished(-1) || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        return false;
    if (output)
        *output = QString::fromLocal8Bit(process.readAllStandardOutput()).trimmed();
    return true;
}

void dropCaches()
{
    ::sync();
    QFile drop(QStringLiteral("/proc/sys/vm/drop_caches"));
    if (drop.open(QIODevice::WriteOnly))
        drop.write("3\n");
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    if (!QFile::exists(QStringLiteral("/dev/loop-control")) || ::geteuid() != 0) {
        std::printf("skipped: loop devices are missing or not running as root\n");
        return 0;
    }
    QTemporaryDir dir(QDir::tempPath() + QStringLiteral("/bench-volume-XXXXXX"));
    const QString backing = dir.filePath(QStringLiteral("volume.img"));
    QString device;
    if (!run(QStringLiteral("truncate"), {QStringLiteral("-s"), QStringLiteral("1G"), backing})
        || !run(QStringLiteral("losetup"), {QStringLiteral("-f"), QStringLiteral("--show"), backing}, &device)) {
        std::fprintf(stderr, "cannot make the loop device\n");
        return 1;
    }
    const QString mnt = dir.filePath(QStringLiteral("mnt"));
    QDir().mkpath(mnt);
    run(QStringLiteral("mkfs.ext4"), {QStringLiteral("-q"), device});
    run(QStringLiteral("mount"), {device, mnt});
    QByteArray block(16 << 20, Qt::Uninitialized);
    QRandomGenerator random(1);
    for (int i = 0; i < 32; ++i) { // 512 MiB
        random.fillRange(reinterpret_cast<quint32*>(block.data()), block.size() / 4);
        QFile file(QStringLiteral("%1/f%2.bin").arg(mnt).arg(i));
        file.open(QIODevice::WriteOnly);
        file.write(block);
    }
    QString used;
    run(QStringLiteral("df"), {QStringLiteral("--output=used"), QStringLiteral("-B1"), mnt}, &used);
    run(QStringLiteral("umount"), {mnt});
    const qint64 usedBytes = used.split(QLatin1Char('\n')).last().trimmed().toLongLong();

    const QString ddTarget = dir.filePath(QStringLiteral("dd.img"));
    dropCaches();
    QElapsedTimer clock;
    clock.start();
    run(QStringLiteral("dd"),
        {QStringLiteral("if=") + device, QStringLiteral("of=") + ddTarget, QStringLiteral("bs=1M"),
            QStringLiteral("conv=fsync"), QStringLiteral("status=none")});
    const qint64 ddMs = clock.elapsed();
    QFile::remove(ddTarget);

    const QString image = dir.filePath(QStringLiteral("volume.nvbimg"));
    std::atomic_bool stop {false};
    dropCaches();
    clock.restart();
    const auto result = VolumeImage::backup(device, image, {1 << 20, true, false}, stop);
    const qint64 imageMs = clock.elapsed();
    run(QStringLiteral("losetup"), {QStringLiteral("-d"), device});
    if (!result.ok) {
        std::fprintf(stderr, "%s\n", qPrintable(result.error));
        return 1;
    }
    const qint64 stored = QFileInfo(image).size();
    std::printf("volume 1 GiB, used %.1f MiB (%.1f%%)\n", usedBytes / 1048576.0, usedBytes * 100.0 / (1 << 30));
    std::printf("dd: %lld ms\n", ddMs);
    std::printf("image: %lld ms (%.2fx dd), %lld blocks stored, %lld skipped\n", imageMs, double(imageMs) / ddMs,
        result.blocksStored, result.blocksSkipped);
    std::printf("stored %.1f MiB = %.1f%% of the volume; used share plus 5%% is %.1f%%\n", stored / 1048576.0,
        stored * 100.0 / (1 << 30), usedBytes * 100.0 / (1 << 30) + 5);
    return 0;
}
