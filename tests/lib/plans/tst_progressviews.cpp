#include <QLabel>
#include <QProgressBar>
#include <QSignalSpy>

#include "planfixture.h"
#include "plans/progress/diskwidget.h"
#include "plans/progress/planfileprogress.h"
#include "plans/progress/progressbarwidget.h"
#include "plans/progress/progressitem.h"
#include "records/plan/planobject.h"
#include "service/notification/format.h"
#include "service/progress/progressitem.h"
#include "service/v2/notification/planprogress.h"
#include "testmain.h"

using namespace NVB::GUI;
namespace Keys = NVB::Common::Communication::Notification::Format::Worker::ReportProgress;
namespace V2 = NVB::Common::Communication::V2;

class TestProgressViews : public QObject
{
    Q_OBJECT

private slots:
    void shouldShowBusyBarOnlyWhileShareIsUnknown()
    {
        PlanFileProgress view;
        view.onUpdated({{Keys::ProgressBar, -1}});
        QCOMPARE(view.progressBar()->maximum(), 0);
        view.onUpdated({{Keys::ProgressBar, 40}, {Keys::StatusValue, QStringLiteral("Copying files")}});
        QCOMPARE(view.progressBar()->maximum(), 100);
        QCOMPARE(view.progressBar()->value(), 40);
        QCOMPARE(view.label(Keys::StatusValue)->text(), QStringLiteral("Copying files"));
        // A message without a key blanks what that key showed.
        view.onUpdated({{Keys::ProgressBar, 41}});
        QCOMPARE(view.label(Keys::StatusValue)->text(), QString());
    }

    void shouldElideLongPathInTheMiddle()
    {
        PlanFileProgress view;
        view.resize(300, 200);
        view.show();
        const QString path
            = QStringLiteral("/home/user/") + QString(400, QLatin1Char('x')) + QStringLiteral("/last.txt");
        view.onUpdated({{Keys::CurrentFileValue, path}});
        const QString shown = view.label(Keys::CurrentFileValue)->text();
        QVERIFY(shown.size() < path.size());
        QVERIFY(shown.startsWith(QStringLiteral("/home")));
        QVERIFY(shown.endsWith(QStringLiteral("last.txt")));
        QVERIFY(shown.contains(QChar(0x2026)));
    }

    void shouldShowDisksAndVolumesByTheirIds()
    {
        namespace Disk = Keys::DiskImage::Disk;
        PlanDiskImageProgress view;
        const auto message = [](int read, int sent) {
            const QVariantMap volume {{Disk::Volume::Id, "p1"}, {Disk::Volume::Name, "sda1 (/)"},
                {Disk::Volume::ProgressRead, read}, {Disk::Volume::ProgressUpload, sent}};
            const QVariantMap disk {{Disk::Id, "sda"}, {Disk::Name, "sda (ATA disk)"}, {Disk::ProgressRead, read / 2},
                {Disk::ProgressUpload, sent / 2}, {Disk::Volumes, QVariantList {volume}}};
            return QMap<QString, QVariant> {{Keys::DiskImage::Size, 2048}, {Keys::DiskImage::Speed, 1024},
                {Keys::DiskImage::Disks, QVariantList {disk}}};
        };
        view.onUpdated(message(40, 20));
        view.onUpdated(message(80, 60));
        auto* disks = view.diskWidget();
        QCOMPARE(disks->rowCount(), 2); // the second message updated the rows it made
        QCOMPARE(disks->name(QStringLiteral("sda")), QStringLiteral("sda (ATA disk)"));
        QCOMPARE(disks->bar(QStringLiteral("sda/p1"))->valueFirst(), 80);
        QCOMPARE(disks->bar(QStringLiteral("sda/p1"))->valueSecond(), 60);
        QCOMPARE(disks->bar(QStringLiteral("sda"))->valueFirst(), 40);
        QVERIFY(view.speedLabel()->text().startsWith(QStringLiteral("( ")));
        QVERIFY(view.speedLabel()->text().endsWith(QStringLiteral(" / s )")));
        view.setDefault();
        QCOMPARE(disks->rowCount(), 0);
    }

    void shouldFollowOnlyItsOwnPlan()
    {
        NvbTest::EngineTestPeer peer;
        QVERIFY(PlanTest::startChannel(&peer));
        auto plan = QSharedPointer<NVB::Info::Plan::PlanObject>::create();
        plan->setId(QUuid::createUuid());
        Progress::ProgressItem item(plan);
        QSignalSpy updated(&item, &Progress::ProgressItem::updated);
        const auto send = [&peer](const QUuid& id, const QString& value) {
            V2::Notification::PlanProgress progress;
            progress.setPlanId(id);
            progress.setSubType(1);
            progress.setProgressItemList(
                {QSharedPointer<NVB::System::Progress::ProgressItem>::create(QStringLiteral("Files"), value, 50),
                    QSharedPointer<NVB::System::Progress::ProgressItem>::create(QStringLiteral("Speed"), "1 MB/s")});
            peer.notifyV2(progress);
        };
        send(QUuid::createUuid(), QStringLiteral("1 of 2"));
        send(plan->id(), QStringLiteral("2 of 2"));
        QVERIFY(updated.wait());
        QCOMPARE(updated.size(), 1);
        QCOMPARE(item.text(), QStringLiteral("Files: 2 of 2 (50%)\nSpeed: 1 MB/s\n"));
        QCOMPARE(item.subType(), 1);
    }
};

NVB_TEST_MAIN(TestProgressViews)
#include "tst_progressviews.moc"
