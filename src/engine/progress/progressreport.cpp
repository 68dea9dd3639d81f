#include "progressreport.h"

#include <QHash>
#include <QJsonArray>

#include "core/timeduraton.h"
#include "core/transform.h"
#include "progressfigures.h"
#include "service/notification/format.h"
#include "service/progress/progressitem.h"
#include "service/progress/progressmanagerdata.h"

namespace NVB::Engine {

namespace Format = NVB::Common::Communication::Notification::Format;
using NVB::System::Progress::ProgressItem;
using NVL::Utitlity::TimeDuraton;
using SHARED::functions::help::transform::from_byte_to_norm;

namespace {

QString timeLeftText(qint64 seconds)
{
    return seconds < 0 ? QStringLiteral("estimating") : TimeDuraton::toString(int(qMin<qint64>(seconds, INT_MAX)));
}

} // namespace

ProgressReport::ProgressReport(const QUuid& planId, int subtype, const RunProgress& progress)
    : m_planId(planId)
    , m_subtype(subtype)
    , m_progress(progress)
{ }

QJsonObject ProgressReport::reportProgress() const
{
    namespace Keys = Format::Worker::ReportProgress;
    const ProgressFigures figures = ProgressFigures::of(m_progress);
    if (!m_progress.volumes.isEmpty())
        return diskImageProgress(figures.bytesPerSecond);
    const bool restore = m_subtype == 2;
    QString status;
    if (!m_progress.scanning)
        status = QStringLiteral("Finishing");
    else if (m_progress.totalCount < 0)
        status = QStringLiteral("Counting files");
    else
        status = restore ? QStringLiteral("Restoring files") : QStringLiteral("Copying files");
    const QString total = m_progress.totalCount < 0 ? QStringLiteral("?") : QString::number(m_progress.totalCount);
    const QString totalSize
        = m_progress.totalSize < 0 ? QStringLiteral("?") : from_byte_to_norm(double(m_progress.totalSize));
    return {
        {QLatin1String(Keys::PlanID), m_planId.toString()},
        {QLatin1String(Keys::Status), QStringLiteral("Status:")},
        {QLatin1String(Keys::StatusValue), status},
        {QLatin1String(Keys::CurrentFile), QStringLiteral("Current file:")},
        {QLatin1String(Keys::CurrentFileValue), m_progress.currentFile},
        {QLatin1String(Keys::FilesCopied),
            restore ? QStringLiteral("Files restored:") : QStringLiteral("Files copied:")},
        {QLatin1String(Keys::FilesCopiedValue), QStringLiteral("%1 of %2").arg(figures.doneCount).arg(total)},
        {QLatin1String(Keys::Elapsed), TimeDuraton::toString(int(m_progress.elapsedMs / 1000))},
        {QLatin1String(Keys::Size),
            QStringLiteral("%1 of %2").arg(from_byte_to_norm(double(figures.doneSize)), totalSize)},
        {QLatin1String(Keys::Speed), from_byte_to_norm(double(figures.bytesPerSecond)) + QStringLiteral("/s")},
        {QLatin1String(Keys::TimeLeft), QStringLiteral("Time left:")},
        {QLatin1String(Keys::TimeLeftValue), timeLeftText(figures.secondsLeft)},
        {QLatin1String(Keys::ProgressBar), figures.percent},
    };
}

QJsonObject ProgressReport::diskImageProgress(qint64 bytesPerSecond) const
{
    namespace Keys = Format::Worker::ReportProgress::DiskImage;
    // Volumes grouped under their disks, in the order the run takes them; a
    // disk's figures are those of its volumes together.
    QJsonArray disks;
    QList<QUuid> order;
    QHash<QUuid, QList<RunProgress::Volume>> byDisk;
    for (const RunProgress::Volume& volume : m_progress.volumes) {
        if (!byDisk.contains(volume.diskId))
            order << volume.diskId;
        byDisk[volume.diskId] << volume;
    }
    for (const QUuid& diskId : order) {
        const QList<RunProgress::Volume> volumes = byDisk.value(diskId);
        QJsonArray shown;
        int read = 0;
        int upload = 0;
        for (const RunProgress::Volume& volume : volumes) {
            read += volume.read;
            upload += volume.upload;
            shown.append(QJsonObject {{QLatin1String(Keys::Disk::Volume::Id), volume.volumeId.toString()},
                {QLatin1String(Keys::Disk::Volume::Name), volume.volumeName},
                {QLatin1String(Keys::Disk::Volume::ProgressRead), volume.read},
                {QLatin1String(Keys::Disk::Volume::ProgressUpload), volume.upload}});
        }
        disks.append(QJsonObject {{QLatin1String(Keys::Disk::Id), diskId.toString()},
            {QLatin1String(Keys::Disk::Name), volumes.first().diskName},
            {QLatin1String(Keys::Disk::ProgressRead), read / volumes.size()},
            {QLatin1String(Keys::Disk::ProgressUpload), upload / volumes.size()},
            {QLatin1String(Keys::Disk::Volumes), shown}});
    }
    const bool restore = m_subtype == 2;
    const QString status = !m_progress.scanning ? QStringLiteral("Finishing")
        : restore                              ? QStringLiteral("Restoring %1").arg(m_progress.currentFile)
                                               : QStringLiteral("Imaging %1").arg(m_progress.currentFile);
    return {
        {QLatin1String(Format::Worker::ReportProgress::PlanID), m_planId.toString()},
        {QLatin1String(Keys::Status::Key), status},
        {QLatin1String(Keys::Size), double(m_progress.copiedSize)},
        {QLatin1String(Keys::Speed), double(bytesPerSecond)},
        {QLatin1String(Keys::Elapsed), double(m_progress.elapsedMs / 1000)},
        {QLatin1String(Keys::Disks), disks},
    };
}

QJsonObject ProgressReport::reportProgress2() const
{
    namespace Keys = Format::Worker::ReportProgress2;
    const ProgressFigures figures = ProgressFigures::of(m_progress);
    const qint64 seconds = m_progress.elapsedMs / 1000;
    QJsonArray inProgress;
    if (!m_progress.currentFile.isEmpty())
        inProgress.append(m_progress.currentFile);
    return {
        {QLatin1String(Keys::PlanID), m_planId.toString()},
        {QLatin1String(Keys::WorkerMode), m_subtype == 2 ? QStringLiteral("Restore") : QStringLiteral("Backup")},
        {QLatin1String(Keys::Progress), figures.percent},
        {QLatin1String(Keys::ElapsedTime), TimeDuraton::toString(int(seconds))},
        {QLatin1String(Keys::ElapsedTimeDuration), double(seconds)},
        {QLatin1String(Keys::Speed), double(figures.bytesPerSecond)},
        {QLatin1String(Keys::DataSize), double(qMax<qint64>(0, m_progress.totalSize))},
        {QLatin1String(Keys::BytesSent), double(m_progress.copiedSize)},
        {QLatin1String(Keys::TotalFileCount), double(qMax<qint64>(0, m_progress.totalCount))},
        {QLatin1String(Keys::ScannedFileCount), double(m_progress.scannedCount)},
        {QLatin1String(Keys::ScannedFileSize), double(m_progress.scannedSize)},
        {QLatin1String(Keys::UploadedFileCount), double(m_progress.copiedCount)},
        {QLatin1String(Keys::UploadedFileSize), double(m_progress.copiedSize)},
        {QLatin1String(Keys::FailedFileCount), double(m_progress.failedCount)},
        {QLatin1String(Keys::FilesInProgress), inProgress},
        {QLatin1String(Keys::TimeLeft), figures.msLeft < 0 ? -1.0 : figures.msLeft / 1000.0},
    };
}

NVB::Common::Communication::V2::Notification::PlanProgress ProgressReport::planProgress() const
{
    const ProgressFigures figures = ProgressFigures::of(m_progress);
    auto data = QSharedPointer<NVB::System::Progress::ProgressManagerData>::create();
    data->setWorkerMode(m_subtype == 2 ? QStringLiteral("Restore") : QStringLiteral("Backup"));
    data->setProgress(figures.percent);
    data->setElapsedMs(m_progress.elapsedMs);
    data->setSpeed(figures.bytesPerSecond);
    data->setDataSize(qMax<qint64>(0, m_progress.totalSize));
    data->setBytesSent(m_progress.copiedSize);
    data->setTotalFileCount(qMax<qint64>(0, m_progress.totalCount));
    data->setUploadedFileCount(m_progress.copiedCount);
    data->setFailedFileCount(m_progress.failedCount);
    NVB::Common::Communication::V2::Notification::PlanProgress typed;
    typed.setPlanId(m_planId);
    typed.setSubType(m_subtype);
    typed.setProgressData(data);
    const QString total = m_progress.totalCount < 0 ? QStringLiteral("?") : QString::number(m_progress.totalCount);
    typed.setProgressItemList({QSharedPointer<ProgressItem>::create(QStringLiteral("Files"),
                                   QStringLiteral("%1 of %2").arg(figures.doneCount).arg(total), figures.percent),
        QSharedPointer<ProgressItem>::create(QStringLiteral("Size"), from_byte_to_norm(double(figures.doneSize))),
        QSharedPointer<ProgressItem>::create(
            QStringLiteral("Speed"), from_byte_to_norm(double(figures.bytesPerSecond)) + QStringLiteral("/s")),
        QSharedPointer<ProgressItem>::create(QStringLiteral("Time left"), timeLeftText(figures.secondsLeft))});
    return typed;
}

} // namespace NVB::Engine
