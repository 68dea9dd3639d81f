#include <QTest>

#include "logcapture.h"
#include "records/plan/backupdiskimage.h"
#include "records/plan/backupfile.h"
#include "records/plan/factory.h"
#include "records/plan/restorediskimage.h"
#include "records/plan/restorefile.h"
#include "sampledisks.h"
#include "testmain.h"

using namespace NVB::Info::Plan;

namespace {

QDateTime utc(int year, int month, int day, int hour, int minute, int msec = 0)
{
    return QDateTime(QDate(year, month, day), QTime(hour, minute, 0, msec), Qt::UTC);
}

void fillBase(Base& plan)
{
    plan.setName(QStringLiteral("Dokumente & <Bilder> \"täglich\""));
    plan.setStorage(QUuid::createUuid());
    plan.setIsArchive(false);
    plan.setRunMissedPlan(false);
    plan.setSyncBeforeRun(!plan.syncBeforeRun());
    plan.setUseConsistencyCheck(!plan.useConsistencyCheck());
    Schedule& schedule = plan.schedule();
    schedule.setEnable(true);
    schedule.setType(Schedule::Once);
    // A local time: the record must keep the instant and hand it back in UTC.
    schedule.setSpecificDate(QDateTime(QDate(2031, 3, 4), QTime(5, 6, 7, 89), Qt::OffsetFromUTC, 7200));
    schedule.setFrequencyType(Schedule::DayOfMonth);
    schedule.setDailyRecurrence(true);
    schedule.setOccursAt(QTime(4, 5, 6, 7));
    schedule.setOccursEvery(15, QTime(6, 30), QTime(20, 45, 10));
    QBitArray days(7);
    days.setBit(1);
    days.setBit(6);
    schedule.setWeeklyFrequency(days);
    schedule.setMonthlyFrequency(Schedule::Penultimate, 7);
    schedule.setDayOfMonthFrequency(31);
    schedule.setMonthRepeat(3, QDate(2030, 2, 28));
    schedule.setStopAfter(7200);
    plan.notification().setType(Notification::Always);
    plan.notification().setSubject(QStringLiteral("%PLAN_NAME%: %RESULT%"));
    plan.notification().setGenerateDetailedReport(true);
}

void compareBase(const Base& read, const Base& written)
{
    QCOMPARE(read.id(), written.id());
    QCOMPARE(read.name(), written.name());
    QCOMPARE(read.type(), written.type());
    QCOMPARE(read.subtype(), written.subtype());
    QCOMPARE(read.storage(), written.storage());
    QCOMPARE(read.isArchive(), written.isArchive());
    QCOMPARE(read.runMuissedPlan(), written.runMuissedPlan());
    QCOMPARE(read.syncBeforeRun(), written.syncBeforeRun());
    QCOMPARE(read.useConsistencyCheck(), written.useConsistencyCheck());
    QCOMPARE(read.notification().type(), written.notification().type());
    QCOMPARE(read.notification().subject(), written.notification().subject());
    QCOMPARE(read.notification().generateDetailedReport(), written.notification().generateDetailedReport());
}

void compareSchedule(const Schedule& read, const Schedule& written)
{
    QCOMPARE(read.isEnable(), written.isEnable());
    QCOMPARE(read.type(), written.type());
    QCOMPARE(read.specificDate(), written.specificDate());
    if (read.specificDate().isValid())
        QCOMPARE(read.specificDate().timeSpec(), Qt::UTC);
    QCOMPARE(read.frequencyType(), written.frequencyType());
    QCOMPARE(read.dailyRecurrence(), written.dailyRecurrence());
    QCOMPARE(read.occursAt(), written.occursAt());
    QCOMPARE(read.occursEvery().from, written.occursEvery().from);
    QCOMPARE(read.occursEvery().to, written.occursEvery().to);
    QCOMPARE(read.occursEvery().minutes, written.occursEvery().minutes);
    QCOMPARE(read.weeklyFrequency(), written.weeklyFrequency());
    QCOMPARE(read.monthlyFrequency().weekNumber, written.monthlyFrequency().weekNumber);
    QCOMPARE(read.monthlyFrequency().day, written.monthlyFrequency().day);
    QCOMPARE(read.dayOfMonthFrequency(), written.dayOfMonthFrequency());
    QCOMPARE(read.monthRepeat().months, written.monthRepeat().months);
    QCOMPARE(read.monthRepeat().start, written.monthRepeat().start);
    QCOMPARE(read.stopAfter(), written.stopAfter());
}

void fillBackup(Backup& plan)
{
    fillBase(plan);
    plan.setUseCompression(false);
    plan.encryption().setEnabled(true);
    plan.encryption().setEncryptionType(Backup::Encyption::TripleDES168);
    plan.encryption().setPassword(QStringLiteral("s3cr<e>t&"));
    plan.encryption().setHint(QStringLiteral("Der Hund heißt 🐕").toUtf8().toBase64());
    plan.storageInfo().setUseS3Accelerated(true);
    plan.storageInfo().setUseSSE(true);
    plan.storageInfo().setStorageClassAmazonS3(Backup::StorageInfo::GlacierInstantRetrieval);
    plan.storageInfo().setStorageClassAzureBlob(Backup::StorageInfo::Archive);
    Backup::RetentionPolicy& retention = plan.retentionPolicy();
    retention.setType(Backup::RetentionPolicy::Custom);
    retention.setUseDeleteOlder(true);
    retention.setDeleteFileAge({17, Backup::RetentionPolicy::Year});
    retention.setUseBackupDate(false);
    retention.setUseKeepLastVersion(false);
    retention.setUseKeepVersion(true);
    retention.setKeepVersion(12);
    retention.setUseDeleteLocaly(true);
    retention.setDeleteLocalyAfter(90);
    plan.actions().pre().setEnabled(true);
    plan.actions().pre().setProgram(QStringLiteral("\"/usr/bin/pre\" --flag"));
    plan.actions().pre().setArguments(QStringLiteral("a b"));
    plan.actions().pre().setTerminateOnFailure(false);
    plan.actions().post().setEnabled(true);
    plan.actions().post().setProgram(QStringLiteral("\"/usr/bin/post\""));
    plan.actions().post().setRunOnBackupFailure(true);
    Schedule& full = plan.forceFullSchedule();
    full.setEnable(true);
    full.setFrequencyType(Schedule::Weekly);
    full.setSpecificDate(utc(2029, 12, 31, 23, 59, 999));
    full.setStopAfter(1);
    plan.setForceFullDiffSizeConditionEnable(true);
    plan.setForceFullDiffSizeCondition(65535);
    plan.setUseDifferentialUpload(true);
    plan.setDifferentialBlockSize(18446744073709551615ULL);
    plan.setDisableSnapshot(true);
    plan.setSavePlanInCloud(false);
}

void compareBackup(const Backup& read, const Backup& written)
{
    compareBase(read, written);
    compareSchedule(read.schedule(), written.schedule());
    compareSchedule(read.forceFullSchedule(), written.forceFullSchedule());
    QCOMPARE(read.useCompression(), written.useCompression());
    QCOMPARE(read.encryption().isEnabled(), written.encryption().isEnabled());
    QCOMPARE(read.encryption().encryptionType(), written.encryption().encryptionType());
    QCOMPARE(read.encryption().password(), written.encryption().password());
    QCOMPARE(read.encryption().hint(), written.encryption().hint());
    QCOMPARE(read.storageInfo().useS3Accelerated(), written.storageInfo().useS3Accelerated());
    QCOMPARE(read.storageInfo().useSSE(), written.storageInfo().useSSE());
    QCOMPARE(read.storageInfo().storageClassAmazonS3(), written.storageInfo().storageClassAmazonS3());
    QCOMPARE(read.storageInfo().storageClassAzureBlob(), written.storageInfo().storageClassAzureBlob());
    const Backup::RetentionPolicy& r = read.retentionPolicy();
    const Backup::RetentionPolicy& w = written.retentionPolicy();
    QCOMPARE(r.type(), w.type());
    QCOMPARE(r.useDeleteOlder(), w.useDeleteOlder());
    QCOMPARE(r.deleteFileAge(), w.deleteFileAge());
    QCOMPARE(r.useBackupDate(), w.useBackupDate());
    QCOMPARE(r.useKeepLastVersion(), w.useKeepLastVersion());
    QCOMPARE(r.useKeepVersion(), w.useKeepVersion());
    QCOMPARE(r.keepVersion(), w.keepVersion());
    QCOMPARE(r.useDeleteLocaly(), w.useDeleteLocaly());
    QCOMPARE(r.deleteLocalyAfter(), w.deleteLocalyAfter());
    QCOMPARE(read.actions().pre().isEnabled(), written.actions().pre().isEnabled());
    QCOMPARE(read.actions().pre().program(), written.actions().pre().program());
    QCOMPARE(read.actions().pre().arguments(), written.actions().pre().arguments());
    QCOMPARE(read.actions().pre().terminateOnFailure(), written.actions().pre().terminateOnFailure());
    QCOMPARE(read.actions().post().isEnabled(), written.actions().post().isEnabled());
    QCOMPARE(read.actions().post().program(), written.actions().post().program());
    QCOMPARE(read.actions().post().runOnBackupFailure(), written.actions().post().runOnBackupFailure());
    QCOMPARE(read.forceFullDiffSizeConditionEnable(), written.forceFullDiffSizeConditionEnable());
    QCOMPARE(read.forceFullDiffSizeCondition(), written.forceFullDiffSizeCondition());
    QCOMPARE(read.useDifferentialUpload(), written.useDifferentialUpload());
    QCOMPARE(read.differentialBlockSize(), written.differentialBlockSize());
    QCOMPARE(read.disableSnapshot(), written.disableSnapshot());
    QCOMPARE(read.savePlanInCloud(), written.savePlanInCloud());
}

void fillRestore(Restore& plan)
{
    fillBase(plan);
    plan.setRestoreType(Restore::PointInTime);
    plan.setRestorePoint(QStringLiteral("NVB_Archive\\{0A1B}\\20240101120000"));
    plan.setPointInTime(utc(2024, 1, 1, 12, 0, 1));
    plan.setUseEncryption(true);
    plan.setEncryptionPassword(QStringLiteral("pässwörd"));
    plan.setDeletePlan(Restore::DeleteAfterRun);
    plan.storageInfo().setUseS3Accelerated(true);
    plan.storageInfo().setType(Restore::StorageInfo::Expedited);
}

void compareRestore(const Restore& read, const Restore& written)
{
    compareBase(read, written);
    compareSchedule(read.schedule(), written.schedule());
    QCOMPARE(read.restoreType(), written.restoreType());
    QCOMPARE(read.restorePoint(), written.restorePoint());
    QCOMPARE(read.pointInTime(), written.pointInTime());
    QCOMPARE(read.useEncryption(), written.useEncryption());
    QCOMPARE(read.encryptionPassword(), written.encryptionPassword());
    QCOMPARE(read.deletePlan(), written.deletePlan());
    QCOMPARE(read.storageInfo().useS3Accelerated(), written.storageInfo().useS3Accelerated());
    QCOMPARE(read.storageInfo().type(), written.storageInfo().type());
}

template<typename T> QSharedPointer<T> roundTrip(const T& plan)
{
    const QSharedPointer<Base> read = Factory::create(plan.toXml());
    const QSharedPointer<T> typed = read.template dynamicCast<T>();
    if (read && !typed)
        qWarning("round trip gave another plan class");
    return typed;
}

} // namespace

class TestPlanRecords : public QObject
{
    Q_OBJECT

private slots:
    void shouldRoundTripBackupFile();
    void shouldRoundTripBackupDiskImage();
    void shouldRoundTripRestoreFile();
    void shouldRoundTripRestoreDiskImage();
    void shouldKeepInvalidDatesInvalid();
    void shouldDecodeHintFromBase64();
    void shouldCopyScheduleThroughNonConstCopy();
    void shouldIgnoreUnknownElementsOfNewerVersions();
    void shouldRefuseBrokenDocuments_data();
    void shouldRefuseBrokenDocuments();
    void shouldRefuseOtherDocuments_data();
    void shouldRefuseOtherDocuments();
};

void TestPlanRecords::shouldRoundTripBackupFile()
{
    BackupFile plan;
    fillBackup(plan);
    plan.setItems({QStringLiteral("/home/anna"), QStringLiteral("/srv/data & more")});
    plan.setExcludeItems({QStringLiteral("/home/anna/.cache")});
    plan.setFilterType(BackupFile::AllButListed);
    plan.setFilter({QStringLiteral("*.tmp"), QStringLiteral("*.bak")});
    plan.setExcludeFolderList({QStringLiteral("node_modules")});
    plan.setBackupEmptyFolders(false);
    plan.setExcludeSystemAndHidden(true);
    plan.setSkipInUseFiles(true);
    plan.setReBackupModifiedSince(utc(2025, 6, 7, 8, 9, 10));

    const QSharedPointer<BackupFile> read = roundTrip(plan);
    QVERIFY(read);
    compareBackup(*read, plan);
    QCOMPARE(read->items(), plan.items());
    QCOMPARE(read->excludeItems(), plan.excludeItems());
    QCOMPARE(read->filterType(), plan.filterType());
    QCOMPARE(read->filter(), plan.filter());
    QCOMPARE(read->excludeFolderList(), plan.excludeFolderList());
    QCOMPARE(read->backupEmptyFolders(), plan.backupEmptyFolders());
    QCOMPARE(read->excludeSystemAndHidden(), plan.excludeSystemAndHidden());
    QCOMPARE(read->skipInUseFiles(), plan.skipInUseFiles());
    QCOMPARE(read->reBackupModifiedSince(), plan.reBackupModifiedSince());
    QCOMPARE(read->toXml(), plan.toXml());
}

void TestPlanRecords::shouldRoundTripBackupDiskImage()
{
    BackupDiskImage plan;
    fillBackup(plan);
    plan.setBackupVolumesType(BackupDiskImage::SelectedPartitions);
    plan.setDiskInfo(sampleDiskInfo());
    plan.setIgnoreBadSectors(true);
    plan.setPrefetchBlockCount(64);

    const QSharedPointer<BackupDiskImage> read = roundTrip(plan);
    QVERIFY(read);
    compareBackup(*read, plan);
    QCOMPARE(read->backupVolumesType(), plan.backupVolumesType());
    QVERIFY(read->diskInfo());
    QVERIFY(*read->diskInfo() == *plan.diskInfo());
    QCOMPARE(read->ignoreBadSectors(), true);
    QCOMPARE(read->prefetchBlockCount(), 64ULL);

    plan.setDiskInfo({});
    const QSharedPointer<BackupDiskImage> withoutDisks = roundTrip(plan);
    QVERIFY(withoutDisks);
    QVERIFY(!withoutDisks->diskInfo());
}

void TestPlanRecords::shouldRoundTripRestoreFile()
{
    RestoreFile plan;
    fillRestore(plan);
    plan.setDestination(QStringLiteral("/tmp/restore here"));
    plan.setRestoreItems({QStringLiteral("NVB_ROOT/etc"), QStringLiteral("NVB_ROOT/home")});
    plan.setOnlyNewFiles(true);
    plan.setSkipExistingFiles(true);
    plan.setRestoreDeletedFiles(true);
    plan.setRestoreToOriginalLocation(false);

    const QSharedPointer<RestoreFile> read = roundTrip(plan);
    QVERIFY(read);
    compareRestore(*read, plan);
    QCOMPARE(read->destination(), plan.destination());
    QCOMPARE(read->restoreItems(), plan.restoreItems());
    QCOMPARE(read->onlyNewFiles(), true);
    QCOMPARE(read->skipExistingFiles(), true);
    QCOMPARE(read->restoreDeletedFiles(), true);
    QCOMPARE(read->restoreToOriginalLocation(), false);
}

void TestPlanRecords::shouldRoundTripRestoreDiskImage()
{
    RestoreDiskImage plan;
    fillRestore(plan);
    const auto disks = sampleDiskInfo();
    plan.setDestination(QStringLiteral("/var/images"));
    plan.setDiskInfo(disks);
    plan.diskImageFileFormat().setType(DiskImageFileFormat::Vmdk);
    plan.diskImageFileFormat().setDisplayName(QStringLiteral("VMware disk"));
    plan.setDiskImageRestoreType(RestoreDiskImage::VirtualMachine);
    auto choice = NVB::Info::RestoreDiskConfiguration::createFromDiskInfo(disks);
    choice->disks()[0].setDestinationDiskId(QUuid::createUuid());
    choice->disks()[0].volumes()[1].setDestinationIdentity(QUuid::createUuid());
    choice->disks()[0].volumes()[1].setDestinationEnable(true);
    plan.setRestoreDiskConfiguration(choice);
    auto layout = QSharedPointer<NVB::Info::DiskImageRestoreConfiguration>::create(
        NVB::Info::DiskImageRestoreConfiguration::VirtualMachine);
    auto disk = QSharedPointer<NVB::Info::DiskImageRestoreConfiguration::Disk>::create();
    disk->setId(QUuid::createUuid());
    disk->setSourceId(disks->disks().at(0).diskId());
    disk->setCapacity(1234567);
    disk->setPartitionTableType(NVB::Info::DiskInfo::Disk::Gpt);
    disk->setBootLoader(NVB::Info::DiskImageRestoreConfiguration::Disk::Uefi);
    auto volume = QSharedPointer<NVB::Info::DiskImageRestoreConfiguration::Volume>::create();
    volume->setSourceDiskId(disk->sourceId());
    volume->setSourceVolumeId(QUuid::createUuid());
    volume->setLength(99);
    volume->setStartOffset(2048);
    volume->setIsBoot(true);
    volume->setBiosType(7);
    volume->setBiosIsActive(true);
    volume->setGptType(QUuid::createUuid());
    volume->setFileSystem(QStringLiteral("ntfs"));
    disk->addVolume(volume);
    layout->addDisk(disk);
    plan.setDiskImageRestoreConfiguration(layout);

    const QSharedPointer<RestoreDiskImage> read = roundTrip(plan);
    QVERIFY(read);
    compareRestore(*read, plan);
    QCOMPARE(read->destination(), plan.destination());
    QVERIFY(read->diskInfo() && *read->diskInfo() == *disks);
    QCOMPARE(read->diskImageFileFormat().type(), DiskImageFileFormat::Vmdk);
    QCOMPARE(read->diskImageFileFormat().displayName(), QStringLiteral("VMware disk"));
    QCOMPARE(read->diskImageRestoreType(), RestoreDiskImage::VirtualMachine);
    QVERIFY(read->restoreDiskConfiguration() && *read->restoreDiskConfiguration() == *choice);
    QVERIFY(read->diskImageRestoreConfiguration() && *read->diskImageRestoreConfiguration() == *layout);
}

void TestPlanRecords::shouldKeepInvalidDatesInvalid()
{
    BackupFile plan;
    plan.schedule().setSpecificDate(QDateTime());
    const QSharedPointer<BackupFile> read = roundTrip(plan);
    QVERIFY(read);
    QVERIFY(!read->reBackupModifiedSince().isValid());
    QVERIFY(!read->schedule().specificDate().isValid());
    QVERIFY(!read->schedule().monthRepeat().start.isValid());
}

void TestPlanRecords::shouldDecodeHintFromBase64()
{
    BackupFile plan;
    plan.encryption().setHint(QStringLiteral("Geburtstag der Katze").toUtf8().toBase64());
    const QSharedPointer<BackupFile> read = roundTrip(plan);
    QVERIFY(read);
    QCOMPARE(
        QString::fromUtf8(QByteArray::fromBase64(read->encryption().hint())), QStringLiteral("Geburtstag der Katze"));
}

void TestPlanRecords::shouldCopyScheduleThroughNonConstCopy()
{
    BackupFile plan;
    Schedule copy(plan.schedule());
    copy.setFrequencyType(Schedule::Weekly);
    copy.setOccursEvery(5, QTime(1, 0), QTime(2, 0));
    copy.setStopAfter(3600);
    QCOMPARE(plan.schedule().frequencyType(), Schedule::Daily);
    plan.schedule() = copy;
    QCOMPARE(plan.schedule().frequencyType(), Schedule::Weekly);
    QCOMPARE(plan.schedule().occursEvery().minutes, 5);
    QCOMPARE(plan.schedule().stopAfter(), 3600ULL);
    plan.forceFullSchedule() = plan.schedule();
    QCOMPARE(plan.forceFullSchedule().occursEvery().from, QTime(1, 0));
    QBitArray three(3, true);
    copy.setWeeklyFrequency(three);
    QCOMPARE(copy.weeklyFrequency().size(), 7);
    QCOMPARE(copy.weeklyFrequency().count(true), 3);
}

void TestPlanRecords::shouldIgnoreUnknownElementsOfNewerVersions()
{
    BackupFile plan;
    plan.setName(QStringLiteral("Future"));
    QDomDocument document;
    QVERIFY(document.setContent(plan.toXml()));
    QDomElement root = document.documentElement();
    root.setAttribute(QStringLiteral("version"), 7);
    root.appendChild(document.createElement(QStringLiteral("QuantumDeduplication")))
        .appendChild(document.createTextNode(QStringLiteral("on")));
    root.firstChildElement(QStringLiteral("Schedule")).appendChild(document.createElement(QStringLiteral("Moon")));
    const QSharedPointer<Base> read = Factory::create(document);
    QVERIFY(read);
    QCOMPARE(read->name(), QStringLiteral("Future"));
}

void TestPlanRecords::shouldRefuseBrokenDocuments_data()
{
    QTest::addColumn<QString>("element");
    QTest::addColumn<QString>("newText");
    QTest::addColumn<QString>("logged");
    // An empty element name removes the root's version; "-" removes the element.
    QTest::newRow("missing id") << "Id"
                                << "-"
                                << "Missing element <Id> in <BackupFilePlan>";
    QTest::newRow("null id") << "Id"
                             << ""
                             << "must hold an id";
    QTest::newRow("bad id") << "Id"
                            << "{nonsense}"
                            << "<BackupFilePlan/Id> is not an id";
    QTest::newRow("bool") << "IsArchive"
                          << "yes"
                          << "<BackupFilePlan/IsArchive> is not a boolean";
    QTest::newRow("filter type") << "FilterType"
                                 << "3"
                                 << "<BackupFilePlan/FilterType> holds no known value";
    QTest::newRow("s3 class 2") << "StorageInfo/StorageClassAmazonS3"
                                << "2"
                                << "StorageClassAmazonS3> holds no known value";
    QTest::newRow("encryption") << "Encryption/Type"
                                << "6"
                                << "<BackupFilePlan/Encryption/Type>";
    QTest::newRow("hint") << "Encryption/Hint"
                          << "not base64!"
                          << "Hint> is not Base64";
    QTest::newRow("weekdays") << "Schedule/WeeklyFrequency"
                              << "101"
                              << "must hold 7 bits";
    QTest::newRow("day of month") << "Schedule/DayOfMonthFrequency"
                                  << "32"
                                  << "DayOfMonthFrequency>";
    QTest::newRow("date") << "ReBackupModifiedSince"
                          << "yesterday"
                          << "is not a UTC date and time";
    QTest::newRow("percent") << "ForceFullDiffSizeCondition"
                             << "65536"
                             << "ForceFullDiffSizeCondition>";
    QTest::newRow("block size") << "DifferentialBlockSize"
                                << "-1"
                                << "DifferentialBlockSize>";
    QTest::newRow("missing schedule") << "ForceFullSchedule"
                                      << "-"
                                      << "Missing element <ForceFullSchedule>";
    QTest::newRow("no version") << ""
                                << ""
                                << "no valid version attribute";
}

void TestPlanRecords::shouldRefuseBrokenDocuments()
{
    QFETCH(QString, element);
    QFETCH(QString, newText);
    QFETCH(QString, logged);
    BackupFile plan;
    QDomDocument document;
    QVERIFY(document.setContent(plan.toXml()));
    QDomElement root = document.documentElement();
    if (element.isEmpty()) {
        root.removeAttribute(QStringLiteral("version"));
    } else {
        QDomElement target = root;
        for (const QString& step : element.split(QLatin1Char('/')))
            target = target.firstChildElement(step);
        QVERIFY(!target.isNull());
        if (newText == QLatin1String("-")) {
            target.parentNode().removeChild(target);
        } else {
            while (target.hasChildNodes())
                target.removeChild(target.firstChild());
            if (!newText.isEmpty())
                target.appendChild(document.createTextNode(newText));
        }
    }
    const LogCapture log;
    QVERIFY(!Factory::create(document));
    QVERIFY2(log.text().contains(logged), qPrintable(log.text()));
}

void TestPlanRecords::shouldRefuseOtherDocuments_data()
{
    QTest::addColumn<QString>("xml");
    QTest::addColumn<QString>("logged");
    QTest::newRow("empty") << ""
                           << "Empty XML document";
    QTest::newRow("malformed") << "<BackupFilePlan version=\"1\"><Id>"
                               << "XML error at line 1";
    QTest::newRow("unknown root") << "<SyncPlan version=\"1\"/>"
                                  << "Unknown plan document element <SyncPlan>";
    QTest::newRow("disk document") << "<DiskInfo version=\"1\"><Disks/></DiskInfo>"
                                   << "<DiskInfo>";
    QTest::newRow("version zero") << "<RestoreFilePlan version=\"0\"/>"
                                  << "no valid version attribute";
}

void TestPlanRecords::shouldRefuseOtherDocuments()
{
    QFETCH(QString, xml);
    QFETCH(QString, logged);
    const LogCapture log;
    QVERIFY(!Factory::create(xml));
    QVERIFY2(log.text().contains(logged), qPrintable(log.text()));
}

NVB_TEST_GUILESS_MAIN(TestPlanRecords)
#include "tst_planrecords.moc"
