#include <functional>

#include <QTest>

#include "logcapture.h"
#include "records/plan/backupdiskimage.h"
#include "records/plan/backupfile.h"
#include "records/plan/factory.h"
#include "records/plan/planresult.h"
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
    schedule.setEnable(!schedule.isEnable());
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
    plan.actions().post().setArguments(QStringLiteral("--after"));
    Schedule& full = plan.forceFullSchedule();
    full = plan.schedule();
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

// Every element is required on reading, so a field the writer forgets fails
// the read, and one the reader forgets comes back as its default, which the
// fill functions never use: comparing the written documents checks each field.
// Only the optional disk elements need checks of their own.
template<typename T> QSharedPointer<T> roundTrip(const T& plan)
{
    const QSharedPointer<Base> read = Factory::create(plan.toXml());
    const QSharedPointer<T> typed = read.template dynamicCast<T>();
    if (read && !typed)
        qWarning("round trip gave another plan class");
    return typed;
}

// The paths of the fields the plan still holds at their default value; a field
// left there would pass the document comparison even if nobody read it.
template<typename T> QStringList fieldsAtDefault(const T& plan)
{
    QDomDocument filled;
    QDomDocument fresh;
    filled.setContent(plan.toXml());
    fresh.setContent(T().toXml());
    QStringList same;
    std::function<void(const QDomElement&, const QDomElement&, const QString&)> walk
        = [&](const QDomElement& a, const QDomElement& b, const QString& path) {
              if (a.firstChildElement().isNull()) {
                  if (!b.isNull() && a.text() == b.text())
                      same.append(path);
                  return;
              }
              for (QDomElement child = a.firstChildElement(); !child.isNull(); child = child.nextSiblingElement())
                  walk(child, b.firstChildElement(child.tagName()), path + QLatin1Char('/') + child.tagName());
          };
    walk(filled.documentElement(), fresh.documentElement(), filled.documentElement().tagName());
    return same;
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
    void shouldPadWeekdaysToSeven();
    void shouldKeepUnknownResultValue();
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

    const QStringList unfilled = fieldsAtDefault(plan);
    QVERIFY2(unfilled.isEmpty(), qPrintable(unfilled.join(QLatin1Char(' '))));
    const QSharedPointer<BackupFile> read = roundTrip(plan);
    QVERIFY(read);
    QCOMPARE(read->toXml(), plan.toXml());
    QCOMPARE(read->items(), plan.items());
    // Given in local time, kept as the same instant in UTC.
    QCOMPARE(read->schedule().specificDate(), plan.schedule().specificDate());
    QCOMPARE(read->schedule().specificDate().timeSpec(), Qt::UTC);
}

void TestPlanRecords::shouldRoundTripBackupDiskImage()
{
    BackupDiskImage plan;
    fillBackup(plan);
    plan.setBackupVolumesType(BackupDiskImage::SelectedPartitions);
    plan.setDiskInfo(sampleDiskInfo());
    plan.setIgnoreBadSectors(true);
    plan.setPrefetchBlockCount(64);

    const QStringList unfilled = fieldsAtDefault(plan);
    QVERIFY2(unfilled.isEmpty(), qPrintable(unfilled.join(QLatin1Char(' '))));
    const QSharedPointer<BackupDiskImage> read = roundTrip(plan);
    QVERIFY(read);
    QCOMPARE(read->toXml(), plan.toXml());
    QVERIFY(read->diskInfo());
    QVERIFY(*read->diskInfo() == *plan.diskInfo());

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

    const QStringList unfilled = fieldsAtDefault(plan);
    QVERIFY2(unfilled.isEmpty(), qPrintable(unfilled.join(QLatin1Char(' '))));
    const QSharedPointer<RestoreFile> read = roundTrip(plan);
    QVERIFY(read);
    QCOMPARE(read->toXml(), plan.toXml());
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

    const QStringList unfilled = fieldsAtDefault(plan);
    QVERIFY2(unfilled.isEmpty(), qPrintable(unfilled.join(QLatin1Char(' '))));
    const QSharedPointer<RestoreDiskImage> read = roundTrip(plan);
    QVERIFY(read);
    QCOMPARE(read->toXml(), plan.toXml());
    QVERIFY(read->diskInfo() && *read->diskInfo() == *disks);
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

void TestPlanRecords::shouldPadWeekdaysToSeven()
{
    Schedule schedule;
    schedule.setWeeklyFrequency(QBitArray(3, true));
    QCOMPARE(schedule.weeklyFrequency().size(), 7);
    QCOMPARE(schedule.weeklyFrequency().count(true), 3);
}

void TestPlanRecords::shouldKeepUnknownResultValue()
{
    const PlanResult result(4711);
    QCOMPARE(result.value(), 4711);
    QVERIFY(!result.isKnown());
    QCOMPARE(result.displayName(), QStringLiteral("Unknown"));
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
    const auto row = [](const char* name, const char* element, const char* newText, const char* logged) {
        QTest::newRow(name) << QString::fromLatin1(element) << QString::fromLatin1(newText)
                            << QString::fromLatin1(logged);
    };
    // An empty element name removes the root's version; "-" removes the element.
    row("missing id", "Id", "-", "Missing element <Id> in <BackupFilePlan>");
    row("null id", "Id", "", "must hold an id");
    row("bad id", "Id", "{nonsense}", "<BackupFilePlan/Id> is not an id");
    row("bool", "IsArchive", "yes", "<BackupFilePlan/IsArchive> is not a boolean");
    row("filter type", "FilterType", "3", "<BackupFilePlan/FilterType> holds no known value");
    row("s3 class 2", "StorageInfo/StorageClassAmazonS3", "2", "StorageClassAmazonS3> holds no known value");
    row("encryption", "Encryption/Type", "6", "<BackupFilePlan/Encryption/Type>");
    row("hint", "Encryption/Hint", "not base64!", "Hint> is not Base64");
    row("weekdays", "Schedule/WeeklyFrequency", "101", "must hold 7 bits");
    row("day of month", "Schedule/DayOfMonthFrequency", "32", "DayOfMonthFrequency>");
    row("date", "ReBackupModifiedSince", "yesterday", "is not a UTC date and time");
    row("percent", "ForceFullDiffSizeCondition", "65536", "ForceFullDiffSizeCondition>");
    row("block size", "DifferentialBlockSize", "-1", "DifferentialBlockSize>");
    row("missing schedule", "ForceFullSchedule", "-", "Missing element <ForceFullSchedule>");
    row("no version", "", "", "no valid version attribute");
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
    const auto row = [](const char* name, const char* xml, const char* logged) {
        QTest::newRow(name) << QString::fromLatin1(xml) << QString::fromLatin1(logged);
    };
    row("empty", "", "Empty XML document");
    row("malformed", "<BackupFilePlan version=\"1\"><Id>", "XML error at line 1");
    row("unknown root", "<SyncPlan version=\"1\"/>", "Unknown plan document element <SyncPlan>");
    row("disk document", "<DiskInfo version=\"1\"><Disks/></DiskInfo>", "<DiskInfo>");
    row("version zero", "<RestoreFilePlan version=\"0\"/>", "no valid version attribute");
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
