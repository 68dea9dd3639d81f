#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QStandardItemModel>

#include "../plans/planfixture.h"
#include "app/delegates/sizedelegate.h"
#include "disks/destinationdiskfiltermodel.h"
#include "disks/diskinfobackupmodel.h"
#include "disks/restorediskconfigmodel.h"
#include "disks/restorediskconfigurationmodel.h"
#include "models/models.h"
#include "testmain.h"

using namespace NVB::GUI;
using NvbTest::EngineTestPeer;
namespace Column = NVB::GUI::Models::Tree::NvbDiskInfoModelInfo::Column;

namespace {

NVB::Info::DiskInfo::Disk disk(const QString& device, const QString& model, qint64 capacity, int volumes)
{
    NVB::Info::DiskInfo::Disk result;
    result.setDiskId(QUuid::createUuid());
    result.setDeviceName(device);
    result.setModel(model);
    result.setCapacity(capacity);
    for (int i = 0; i < volumes; ++i) {
        NVB::Info::DiskInfo::Volume volume;
        volume.setIdentity(QUuid::createUuid());
        volume.setDiskId(result.diskId());
        volume.setLabel(QStringLiteral("part%1").arg(i));
        volume.setLength(capacity / volumes);
        volume.setUsedSpace(1024);
        volume.setFileSystemType(QStringLiteral("ext4"));
        if (i == 0)
            volume.setMountPoints({QStringLiteral("/")});
        result.volumes().append(volume);
    }
    return result;
}

QSharedPointer<NVB::Info::DiskInfo> machine()
{
    auto info = QSharedPointer<NVB::Info::DiskInfo>::create();
    info->disks() << disk(QStringLiteral("sda"), QStringLiteral("ATA X"), 1000, 2)
                  << disk(QString(), QStringLiteral("NVMe Y"), 500, 1) << disk(QString(), QString(), 2000, 0);
    return info;
}

} // namespace

class TestDiskModels : public QObject
{
    Q_OBJECT

private slots:
    void shouldLoadMachineDisksFromEngine()
    {
        EngineTestPeer peer;
        QVERIFY(PlanTest::startChannel(&peer));
        const auto info = machine();
        peer.onCommand(QStringLiteral("GetDiskInfo"), EngineTestPeer::Answer::reply({{"DiskInfo", info->toXml()}}));
        DiskInfoBackupModel model;
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        QSignalSpy done(&model, &DiskInfoModel::complite);
        model.init();
        QVERIFY(done.wait());
        QCOMPARE(model.rowCount(), 3);
        QCOMPARE(model.index(0, 0).data().toString(), QStringLiteral("sda (ATA X)"));
        QCOMPARE(model.index(1, 0).data().toString(), QStringLiteral("NVMe Y"));
        QCOMPARE(model.index(2, 0).data().toString(), QStringLiteral("Disk #3"));
        const QModelIndex sda = model.index(0, 0);
        QCOMPARE(model.rowCount(sda), 2);
        QCOMPARE(model.index(0, 0, sda).data().toString(), QStringLiteral("/")); // mount point first
        QCOMPARE(model.index(1, 0, sda).data().toString(), QStringLiteral("part1")); // else the label
        QCOMPARE(model.index(0, Column::Used, sda).data().toString(), SizeDelegate::toText(1024, QLocale()));
        QCOMPARE(model.parent(model.index(1, Column::FS, sda)), sda);
        QVERIFY(model.flags(model.index(0, 0, sda)) & Qt::ItemIsUserCheckable);

        // Checks go to the record; rows that do not exist refuse them.
        QVERIFY(model.setData(model.index(1, 0, sda), true, DiskInfoModel::EnabledRole));
        QVERIFY(model.diskInfo()->disks().at(0).volumes().at(1).isEnabled());
        QCOMPARE(model.index(1, 0, sda).data(DiskInfoModel::EnabledRole).toInt(), 2);
        QVERIFY(!model.setData(model.index(0, 1), 2, DiskInfoModel::EnabledRole));
        model.selectAllDrives();
        QVERIFY(model.isAllDrivesSelected());
        // An index kept from before a reload that took its row away.
        const QModelIndex stale = model.index(1, 0, sda);
        auto fewer = machine();
        fewer->disks()[0].volumes().removeLast();
        model.initFromDiskInfo(fewer);
        QVERIFY(!model.setData(stale, 2, DiskInfoModel::EnabledRole));
        QCOMPARE(stale.data(), QVariant());

        // An engine failure is told, and the rows held stay.
        peer.onCommand(QStringLiteral("GetDiskInfo"), EngineTestPeer::Answer::reply({{"DiskInfo", "<broken"}}));
        QSignalSpy failed(&model, &DiskInfoModel::error);
        model.init();
        QVERIFY(failed.wait());
        QCOMPARE(failed.first().first().toString(), QStringLiteral("Error on init DiskInfo data"));
        QCOMPARE(model.rowCount(), 3);
    }

    void shouldOfferOnlyFittingFreeDestinations()
    {
        DiskInfoModel source;
        source.initFromDiskInfo(machine());
        DestinationDiskFilterModel filter(1000);
        filter.setSourceModel(&source);
        QAbstractItemModelTester tester(&filter, QAbstractItemModelTester::FailureReportingMode::QtTest);
        const auto enabled = [&](int row) { return bool(filter.flags(filter.index(row, 0)) & Qt::ItemIsEnabled); };
        QVERIFY(enabled(0)); // exactly the size required
        QVERIFY(!enabled(1)); // too small
        QVERIFY(enabled(2));
        const QUuid big = source.diskInfo()->disks().at(2).diskId();
        filter.addPtherSelectedDisk(big);
        QVERIFY(!enabled(2));
        QVERIFY(!(filter.flags(filter.index(2, 0)) & Qt::ItemIsSelectable));
        filter.removeOtherSelectedDisk(big);
        QVERIFY(enabled(2));
    }

    void shouldMapVolumesToDestinations()
    {
        const auto configuration = NVB::Info::RestoreDiskConfiguration::createFromDiskInfo(machine());
        RestoreDiskConfigurationModel model;
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        model.init(configuration);
        QCOMPARE(model.rowCount(), 3); // every volume of every disk
        const auto source = RestoreDiskConfigurationModel::fromValue(model.index(2, 0).data());
        QCOMPARE(source.first, configuration->disks().at(1).sourceDiskId());
        QCOMPARE(model.index(0, 1).data(), QVariant());
        const QUuid disk = QUuid::createUuid(), volume = QUuid::createUuid();
        QVERIFY(model.setData(model.index(0, 1), RestoreDiskConfigurationModel::Value(disk, volume)));
        QCOMPARE(RestoreDiskConfigurationModel::fromValue(model.index(0, 1).data()), qMakePair(disk, volume));
        QVERIFY(model.restoreConfiguration()->disks().at(0).volumes().at(0).isDestinationEnabled());
        // A value that names no volume clears the choice.
        QVERIFY(model.setData(model.index(0, 1), QStringLiteral("a|b|c")));
        QCOMPARE(model.index(0, 1).data(), QVariant());
        QVERIFY(!model.setData(model.index(0, 0), RestoreDiskConfigurationModel::Value(disk, volume)));
        QCOMPARE(RestoreDiskConfigurationModel::fromValue(QStringLiteral("only-one")), qMakePair(QUuid(), QUuid()));
    }

    void shouldShowLayoutDiskByDisk()
    {
        using Layout = NVB::Info::DiskImageRestoreConfiguration;
        auto layout = QSharedPointer<Layout>::create(Layout::PhysicalDisk);
        for (int disks = 0; disks < 2; ++disks) {
            auto disk = QSharedPointer<Layout::Disk>::create();
            disk->setCapacity(qint64(disks + 1) << 30);
            disk->setBootLoader(disks == 0 ? Layout::Disk::Uefi : Layout::Disk::None);
            for (int volumes = 0; volumes < disks + 1; ++volumes) {
                auto volume = QSharedPointer<Layout::Volume>::create();
                volume->setLength(qint64(volumes + 1) << 20);
                volume->setFileSystem(QStringLiteral("ext4"));
                volume->setIsBoot(volumes == 0);
                disk->addVolume(volume);
            }
            layout->addDisk(disk);
        }
        RestoreDiskConfigModel model(layout);
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        QCOMPARE(model.diskConfiguration(), layout);
        QCOMPARE(model.rowCount(), 2);
        const QModelIndex second = model.index(1, 0);
        QCOMPARE(model.rowCount(second), 2);
        const QModelIndex volume = model.index(1, RestoreDiskConfigModel::FileSystem, second);
        QCOMPARE(model.parent(volume), second);
        QCOMPARE(volume.data().toString(), QStringLiteral("ext4"));
        QCOMPARE(model.index(0, RestoreDiskConfigModel::Boot).data().toString(), QStringLiteral("UEFI"));
        QCOMPARE(RestoreDiskConfigModel(nullptr).rowCount(), 0);
    }
};

NVB_TEST_MAIN(TestDiskModels)
#include "tst_diskmodels.moc"
