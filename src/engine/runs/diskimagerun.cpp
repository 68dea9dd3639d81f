#include "diskimagerun.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>

#include "accountfolder.h"
#include "disks/diskscanner.h"
#include "encryption/objectkey.h"
#include "images/volumeimage.h"
#include "objectencoding.h"
#include "planoptions.h"
#include "records/plan/backupdiskimage.h"
#include "records/plan/planresult.h"
#include "records/plan/restorediskimage.h"
#include "runpreparation.h"
#include "store/enginestore.h"

namespace NVB::Engine {

using NVB::Info::DiskInfoVolume;
using NVB::Info::Plan::PlanResult;

namespace {

// One volume of a run and where its image lies.
struct ImageTarget
{
    QString device;
    QString image;
    qint64 length = 0;
    RunProgress::Volume shown;
};

// Hands the figures on at most ten times a second, and always the last.
class Throttle
{
public:
    explicit Throttle(const ProgressSink& sink)
        : m_sink(sink)
    {
        m_clock.start();
        m_last.start();
    }
    void report(RunProgress progress, bool force)
    {
        if (!m_sink || (!force && m_last.elapsed() < 100))
            return;
        m_last.restart();
        progress.elapsedMs = m_clock.elapsed();
        m_sink(progress);
    }
    qint64 elapsed() const { return m_clock.elapsed(); }

private:
    ProgressSink m_sink;
    QElapsedTimer m_clock;
    QElapsedTimer m_last;
};

int percent(qint64 done, qint64 total)
{
    return total > 0 ? int(qBound<qint64>(0, done * 100 / total, 100)) : 100;
}

// One history line of a volume.
RunFileRecord volumeLine(const StoredPlan& plan, const QString& device, int operation)
{
    RunFileRecord file;
    file.planId = plan.id;
    file.planName = plan.name;
    file.file = device;
    file.operation = operation;
    file.finishUtc = QDateTime::currentDateTimeUtc();
    return file;
}

// Images or restores each target in turn; `backup` tells which. A backup
// stops at its first failure, since a point missing a volume is no image of
// the machine; a restore goes on with the other volumes, each writing a
// target of its own, and names every volume that failed.
RunOutcome runTargets(const StoredPlan& plan, QList<ImageTarget> targets, const VolumeImage::Options& options,
    const std::shared_ptr<const ObjectKey>& key, const QString& password, bool backup, const QString& runFolder,
    const std::atomic_bool& stop, const ProgressSink& sink)
{
    RunOutcome outcome;
    if (!backup) {
        // Every image must open before any target is written: a wrong
        // password leaves all the volumes as they were.
        for (const ImageTarget& target : targets) {
            const QString error = VolumeImage::openError(target.image, password);
            if (!error.isEmpty())
                return RunPreparation::failedOutcome(error);
        }
    }
    Throttle throttle(sink);
    RunProgress progress;
    progress.totalCount = targets.size();
    progress.totalSize = 0;
    for (const ImageTarget& target : targets) {
        progress.totalSize += target.length;
        progress.volumes << target.shown;
    }
    qint64 before = 0;
    QStringList warnings;
    QStringList failures;
    for (int i = 0; i < targets.size(); ++i) {
        const ImageTarget& target = targets.at(i);
        progress.currentFile = target.device;
        const auto step = [&](qint64 done, qint64 total) {
            progress.copiedSize = before + done;
            progress.volumes[i].read = percent(done, total);
            progress.volumes[i].upload = progress.volumes[i].read;
            throttle.report(progress, false);
        };
        if (backup && !QFileInfo::exists(target.device)) {
            QDir(runFolder).removeRecursively();
            return RunPreparation::failedOutcome(
                QStringLiteral("The volume %1 is no longer on this machine").arg(target.device));
        }
        const VolumeImage::Result result = backup
            ? VolumeImage::backup(target.device, target.image, options, stop, step, key)
            : VolumeImage::restore(target.image, target.device, stop, step, password);
        if (!result.ok && (backup || stop)) {
            if (backup)
                QDir(runFolder).removeRecursively(); // a run without a point leaves nothing behind
            QList<RunFileRecord> done = outcome.files;
            outcome = RunPreparation::failedOutcome(
                failures.isEmpty() ? result.error : (failures << result.error).join(QStringLiteral("; ")));
            if (!backup)
                outcome.files = done;
            if (stop)
                outcome.planResult = PlanResult::Interrupted;
            outcome.totals = progress;
            return outcome;
        }
        before += target.length;
        if (!result.ok) {
            RunFileRecord failed = volumeLine(plan, target.device, RunFileRecord::Failed);
            failed.message = result.error;
            outcome.files << failed;
            failures << QStringLiteral("%1: %2").arg(target.device, result.error);
            continue;
        }
        warnings << result.warnings;
        progress.copiedCount += 1;
        progress.scannedCount = i + 1;
        progress.scannedSize += result.volumeSize;
        progress.volumes[i].read = progress.volumes[i].upload = 100;
        RunFileRecord file = volumeLine(plan, target.device, backup ? RunFileRecord::Copied : RunFileRecord::Restored);
        file.size = result.volumeSize;
        file.message = result.warnings.join(QStringLiteral("; "));
        outcome.files << file;
        if (backup) {
            StoredContent content;
            content.path = target.device;
            content.type = StoredContent::File;
            content.modifiedUtc = QDateTime::currentDateTimeUtc();
            content.size = result.volumeSize;
            content.object = target.image;
            content.storedSize = QFileInfo(QDir(runFolder).filePath(QFileInfo(target.image).fileName())).size();
            // The image file carries each block's own compression; the
            // cipher, when there is one, wraps the whole file.
            content.encoding = int(key ? ObjectEncoding::Enciphered : ObjectEncoding::Plain);
            outcome.content << content;
            outcome.bytesStored = qMax<qint64>(0, outcome.bytesStored) + content.storedSize;
        }
    }
    progress.scanning = false;
    progress.copiedSize = progress.totalSize;
    throttle.report(progress, true);
    outcome.totals = progress;
    outcome.totals.copiedSize = backup ? qMax<qint64>(0, outcome.bytesStored) : progress.totalSize;
    outcome.bytesStored = -1; // the image sizes are the uploaded size; no deduplication figures
    outcome.planResult = warnings.isEmpty() ? PlanResult::Success : PlanResult::Warning;
    outcome.message = warnings.join(QStringLiteral("; "));
    if (!failures.isEmpty()) {
        outcome.planResult = PlanResult::Failed;
        outcome.message = (failures << warnings).join(QStringLiteral("; "));
    }
    return outcome;
}

} // namespace

QString DiskImageRun::imageName(const QUuid& volumeId)
{
    return RunPreparation::noBraces(volumeId) + QStringLiteral(".nvbimg");
}

QList<DiskInfoVolume> DiskImageRun::chosenVolumes(const NVB::Info::Plan::BackupDiskImage& plan)
{
    QList<DiskInfoVolume> chosen;
    if (!plan.diskInfo())
        return chosen;
    for (const auto& disk : plan.diskInfo()->disks()) {
        for (const DiskInfoVolume& volume : disk.volumes()) {
            const bool taken = plan.backupVolumesType() == NVB::Info::Plan::BackupDiskImage::AllDrives ? true
                : plan.backupVolumesType() == NVB::Info::Plan::BackupDiskImage::SystemRequired
                ? volume.requiredBySystem()
                : volume.isEnabled();
            if (taken && !volume.deviceName().isEmpty())
                chosen << volume;
        }
    }
    return chosen;
}

QString DiskImageRun::prepareBackup(EngineStore* store, ActiveRun& active, const NVB::Info::Plan::BackupDiskImage& plan,
    const ProgressSink& report, RunWork* work)
{
    const QString option = PlanOptions::unperformed(plan);
    if (!option.isEmpty())
        return QStringLiteral("The plan asks for %1, which disk image runs do not perform yet; turn it off to run the "
                              "plan")
            .arg(option);
    const bool enciphered = plan.encryption().isEnabled();
    const QString password = enciphered ? plan.encryption().password() : QString();
    const int keyBytes = enciphered ? 16 + 8 * int(plan.encryption().encryptionType()) : 0;
    const QList<DiskInfoVolume> volumes = chosenVolumes(plan);
    if (volumes.isEmpty())
        return QStringLiteral("The plan chooses no volume to image");
    QString prefix;
    QString error;
    const QString folder = AccountFolder::prepare(store, active.plan.storageId, &prefix, &error);
    if (folder.isEmpty())
        return error;

    // Every run is a whole image of its own generation: restoring one never
    // needs another.
    active.makesPoint = true;
    active.newBunch = !store->bunch(active.plan.storageId, active.plan.id).has_value();
    active.newGeneration = true;
    active.bunch = StoredBunch {active.plan.storageId, active.plan.id, active.plan.name, 0, active.plan.xml};
    StoredRestorePoint& point = active.point;
    point.connectionId = active.plan.storageId;
    point.bunchId = active.plan.id;
    point.startUtc = active.run.startUtc;
    point.generationId = QUuid::createUuid();
    point.sequenceNumber = 1;
    point.backupType = 0;
    point.encrypted = enciphered;

    const QString relative
        = QStringLiteral("NVB_%1/%2/%3/%4")
              .arg(prefix, RunPreparation::noBraces(active.plan.id), RunPreparation::noBraces(point.generationId))
              .arg(point.sequenceNumber, 6, 10, QLatin1Char('0'));
    const QString root = QDir::cleanPath(folder);
    const QString runFolder = root + QLatin1Char('/') + relative;
    QList<ImageTarget> targets;
    for (const DiskInfoVolume& volume : volumes) {
        ImageTarget target;
        target.device = QStringLiteral("/dev/") + volume.deviceName();
        target.image = relative + QLatin1Char('/') + imageName(volume.identity());
        target.length = volume.length();
        const auto disk = plan.diskInfo()->diskById(volume.diskId());
        target.shown
            = RunProgress::Volume {volume.diskId(), disk.deviceName(), volume.identity(), volume.deviceName(), 0, 0};
        targets << target;
    }
    VolumeImage::Options options;
    options.blockSize = qint64(plan.differentialBlockSize());
    options.compress = plan.useCompression();
    options.ignoreBadSectors = plan.ignoreBadSectors();
    *work = [plan = active.plan, targets, options, password, keyBytes, root, runFolder, report](
                const std::atomic_bool& stop) {
        // The derivation is slow on purpose, so it runs here, on the worker,
        // once for all the run's volumes.
        std::shared_ptr<const ObjectKey> key;
        if (keyBytes > 0 && !(key = ObjectKey::create(password, keyBytes)))
            return RunPreparation::failedOutcome(QStringLiteral("Cannot make the encryption key of the plan"));
        if (!QDir().mkpath(runFolder))
            return RunPreparation::failedOutcome(QStringLiteral("Cannot make the folder %1").arg(runFolder));
        QList<ImageTarget> absolute = targets;
        for (ImageTarget& target : absolute)
            target.image = root + QLatin1Char('/') + target.image;
        RunOutcome outcome = runTargets(plan, absolute, options, key, QString(), true, runFolder, stop, report);
        for (StoredContent& content : outcome.content)
            content.object = content.object.mid(root.size() + 1);
        return outcome;
    };
    return {};
}

QString DiskImageRun::prepareRestore(EngineStore* store, ActiveRun& active,
    const NVB::Info::Plan::RestoreDiskImage& plan, const ProgressSink& report, RunWork* work)
{
    QString prefix;
    QString error;
    const QString folder = AccountFolder::prepare(store, active.plan.storageId, &prefix, &error);
    if (folder.isEmpty())
        return error;
    // "NVB_Archive\<bunch id>\<date>": the backup plan whose images to restore.
    const QStringList parts = plan.restorePoint().split(QLatin1Char('\\'));
    const QUuid bunchId = parts.size() >= 2 ? QUuid(QStringLiteral("{%1}").arg(parts.at(1))) : QUuid();
    if (bunchId.isNull())
        return QStringLiteral("The restore plan does not name the backup to restore from");
    const QDateTime pointInTime = plan.restoreType() == 1 ? plan.pointInTime().toUTC() : QDateTime();
    const auto point = store->restorePointAt(active.plan.storageId, bunchId, pointInTime);
    if (!point)
        return QStringLiteral("There is no restore point of that backup at the chosen time");
    const QList<StoredContent> images = store->content(point->rowId);
    const auto configuration = plan.restoreDiskConfiguration();
    if (!configuration)
        return QStringLiteral("The restore plan does not say which volume goes where");

    // Destinations as the machine has them now: a volume by its id, or a
    // disk without volumes (a blank one) by the disk's id.
    const auto machine = DiskScanner().scan();
    const auto deviceOf = [&machine](const QUuid& diskId, const QUuid& volumeId) -> QString {
        for (const auto& disk : machine->disks()) {
            for (const auto& volume : disk.volumes()) {
                if (!volumeId.isNull() && volume.identity() == volumeId)
                    return QStringLiteral("/dev/") + volume.deviceName();
            }
        }
        for (const auto& disk : machine->disks()) {
            if (disk.diskId() == diskId && (volumeId.isNull() || disk.volumes().isEmpty()))
                return QStringLiteral("/dev/") + disk.deviceName();
        }
        return {};
    };
    const QString root = QDir::cleanPath(folder);
    QList<ImageTarget> targets;
    for (const auto& disk : configuration->disks()) {
        for (const auto& volume : disk.volumes()) {
            if (!volume.isSourceEnabled())
                continue;
            const QString name = imageName(volume.sourceIdentity());
            const auto held = std::find_if(images.cbegin(), images.cend(),
                [&name](const StoredContent& content) { return content.object.endsWith(QLatin1Char('/') + name); });
            if (held == images.cend())
                return QStringLiteral("The restore point holds no image of the volume %1")
                    .arg(volume.sourceIdentity().toString());
            ImageTarget target;
            target.device = deviceOf(volume.destinationDiskId(), volume.destinationIdentity());
            if (target.device.isEmpty())
                return QStringLiteral("The destination of %1 is not on this machine").arg(held->path);
            target.image = root + QLatin1Char('/') + held->object;
            target.length = held->size;
            target.shown = RunProgress::Volume {volume.destinationDiskId(), QFileInfo(target.device).fileName(),
                volume.destinationIdentity(), QFileInfo(target.device).fileName(), 0, 0};
            targets << target;
        }
    }
    if (targets.isEmpty())
        return QStringLiteral("The restore plan chooses no volume to restore");
    const QString password = plan.encryptionPassword();
    *work = [plan = active.plan, targets, password, report](const std::atomic_bool& stop) {
        return runTargets(plan, targets, VolumeImage::Options {}, nullptr, password, false, QString(), stop, report);
    };
    return {};
}

} // namespace NVB::Engine
