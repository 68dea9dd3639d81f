#include <unistd.h>

#include <QCryptographicHash>
#include <QProcess>
#include <QRandomGenerator>
#include <QtTest>

#include "images/volumeimage.h"
#include "testmain.h"

using NVB::Engine::VolumeImage;

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
};

NVB_TEST_MAIN(TestVolumeImage)
#include "tst_volumeimage.moc"
