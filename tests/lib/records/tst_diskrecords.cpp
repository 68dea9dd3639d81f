#include <QTest>

#include "logcapture.h"
#include "records/disk/diskimagemetadata.h"
#include "records/disk/driveshares.h"
#include "records/disk/restorediskconfiguration.h"
#include "sampledisks.h"
#include "testmain.h"

using namespace NVB::Info;

class TestDiskRecords : public QObject
{
    Q_OBJECT

private slots:
    void shouldRoundTripDiskInfo();
    void shouldGiveNullForBadXml_data();
    void shouldGiveNullForBadXml();
    void shouldFindDisksAndVolumes();
    void shouldSelectDrives();
    void shouldCopyMarksWithSetOptions();
    void shouldBuildRestoreChoiceFromDisks();
    void shouldReadMetaDataWithAndWithoutDisks();
    void shouldTranslatePaths_data();
    void shouldTranslatePaths();
};

void TestDiskRecords::shouldRoundTripDiskInfo()
{
    const auto info = sampleDiskInfo();
    const auto read = DiskInfo::createFromXml(info->toXml());
    QVERIFY(read);
    QVERIFY(*read == *info);
    QCOMPARE(read->disks().at(0).model(), QStringLiteral("Fast & <Reliable> SSD"));
    QCOMPARE(read->disks().at(1).volumes().at(1).mountPoints().size(), 2);
}

void TestDiskRecords::shouldGiveNullForBadXml_data()
{
    QTest::addColumn<QString>("xml");
    QTest::addColumn<QString>("logged");
    const auto row = [](const char* name, const char* xml, const char* logged) {
        QTest::newRow(name) << QString::fromLatin1(xml) << QString::fromLatin1(logged);
    };
    row("empty", "", "Empty XML document");
    row("garbage", "<<<", "XML error");
    row("other root", "<Disks version=\"1\"/>", "Unknown disk document element <Disks>");
    row("no disks element", "<DiskInfo version=\"1\"/>", "Missing element <Disks>");
    row("disk without id", "<DiskInfo version=\"1\"><Disks><Disk/></Disks></DiskInfo>",
        "Missing element <Id> in <DiskInfo/Disks/Disk>");
}

void TestDiskRecords::shouldGiveNullForBadXml()
{
    QFETCH(QString, xml);
    QFETCH(QString, logged);
    const LogCapture log;
    QVERIFY(!DiskInfo::createFromXml(xml));
    QVERIFY2(log.text().contains(logged), qPrintable(log.text()));
}

void TestDiskRecords::shouldFindDisksAndVolumes()
{
    const auto info = sampleDiskInfo();
    const DiskInfo::Disk second = info->disks().at(1);
    QCOMPARE(info->diskById(second.diskId()).deviceName(), QStringLiteral("/dev/sdb"));
    QVERIFY(info->diskById(QUuid::createUuid()).diskId().isNull());
    const DiskInfo::Volume volume = second.volumes().at(1);
    QCOMPARE(info->volume(second.diskId(), volume.identity()).deviceName(), volume.deviceName());
    QVERIFY(info->volume(info->disks().at(0).diskId(), volume.identity()).identity().isNull());
}

void TestDiskRecords::shouldSelectDrives()
{
    const auto info = sampleDiskInfo();
    QVERIFY(!info->isAllDrivesSelected());
    info->selectAllDrives();
    QVERIFY(info->isAllDrivesSelected());
    info->selectSystemRequired();
    QVERIFY(!info->isAllDrivesSelected());
    QVERIFY(info->disks().at(0).volumes().at(0).isEnabled());
    QVERIFY(!info->disks().at(0).volumes().at(1).isEnabled());
    QVERIFY(DiskInfo().isAllDrivesSelected() == false);
}

void TestDiskRecords::shouldCopyMarksWithSetOptions()
{
    const auto machine = sampleDiskInfo();
    const auto stored = DiskInfo::createFromXml(machine->toXml());
    stored->selectAllDrives();
    stored->disks()[1].volumes().removeLast();
    machine->setOptions(stored);
    QVERIFY(machine->disks().at(1).isEnabled());
    QVERIFY(machine->disks().at(1).volumes().at(0).isEnabled());
    // Not in the stored selection: keeps its own mark.
    QVERIFY(machine->disks().at(1).volumes().at(1).isEnabled());
    QVERIFY(machine->disks().at(0).volumes().at(0).isEnabled());
    machine->setOptions({});
}

void TestDiskRecords::shouldBuildRestoreChoiceFromDisks()
{
    const auto info = sampleDiskInfo();
    const auto choice = RestoreDiskConfiguration::createFromDiskInfo(info);
    QCOMPARE(choice->disks().size(), 2);
    const RestoreDiskConfiguration::Volume volume = choice->disks().at(0).volumes().at(1);
    QCOMPARE(volume.sourceIdentity(), info->disks().at(0).volumes().at(1).identity());
    QCOMPARE(volume.length(), info->disks().at(0).volumes().at(1).length());
    QVERIFY(volume.isSourceEnabled());
    QVERIFY(volume.destinationDiskId().isNull());
    QVERIFY(choice->disks().at(0).isVolumeEnabled());

    const auto stored = RestoreDiskConfiguration::createFromXml(choice->toXml());
    QVERIFY(stored && *stored == *choice);
    const QUuid target = QUuid::createUuid();
    stored->disks()[1].setDestinationDiskId(target);
    stored->disks()[1].volumes()[0].setSourceEnabled(false);
    stored->disks()[1].volumes()[1].setSourceEnabled(false);
    choice->setOptions(stored);
    QCOMPARE(choice->disks().at(1).destinationDiskId(), target);
    QVERIFY(!choice->disks().at(1).isVolumeEnabled());
}

void TestDiskRecords::shouldReadMetaDataWithAndWithoutDisks()
{
    DiskImageMetaData data;
    data.setComputerName(QStringLiteral("host-1"));
    data.setBackupDate(QDateTime(QDate(2024, 3, 1), QTime(2, 3), Qt::UTC));
    const auto bare = DiskImageMetaData::createFromXml(data.toXml());
    QVERIFY(bare);
    QVERIFY(!bare->diskInfo());
    QCOMPARE(bare->computerName(), QStringLiteral("host-1"));
    data.setDiskInfo(sampleDiskInfo());
    const auto full = DiskImageMetaData::createFromXml(data.toXml());
    QVERIFY(full && full->diskInfo());
    QVERIFY(*full->diskInfo() == *data.diskInfo());
    QCOMPARE(full->backupDate(), data.backupDate());
    QVERIFY(!DiskImageMetaData::createFromXml(QStringLiteral("<DiskImageMetaData/>")));
}

void TestDiskRecords::shouldTranslatePaths_data()
{
    QTest::addColumn<QString>("item");
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("local");
    QTest::addColumn<QString>("sql");
    const auto row = [](const char* name, const char* item, int type, const char* local, const char* sql) {
        QTest::newRow(name) << QString::fromLatin1(item) << type << QString::fromLatin1(local)
                            << QString::fromLatin1(sql);
    };
    row("volume", "/NVB_VOLUMES/home/anna", 0, "/home/anna", "NVB_ROOT/home/anna");
    row("volume root", "/NVB_VOLUMES", 0, "/", "NVB_ROOT");
    row("plain", "/etc/hosts", 0, "/etc/hosts", "NVB_ROOT/etc/hosts");
    row("share", "/NVB_SHARES/nas/data/x", 0, "//nas/data/x", "/NVB_SHARES/nas/data/x");
    row("share type", "nas/data", 1, "//nas/data", "/NVB_SHARES/nas/data");
    row("lookalike", "/NVB_VOLUMESX/a", 0, "/NVB_VOLUMESX/a", "NVB_ROOT/NVB_VOLUMESX/a");
}

void TestDiskRecords::shouldTranslatePaths()
{
    QFETCH(QString, item);
    QFETCH(int, type);
    QFETCH(QString, local);
    QFETCH(QString, sql);
    DriveShares* shares = DriveShares::Instance();
    QCOMPARE(shares, DriveShares::Instance());
    const QString path = shares->get_local_path(item, DriveShares::_Types(type));
    QCOMPARE(path, local);
    QCOMPARE(shares->getSqlPathFromLocal(path), sql);
}

NVB_TEST_GUILESS_MAIN(TestDiskRecords)
#include "tst_diskrecords.moc"
