#include "filerestorejob.h"

#include <sys/stat.h>

#include <algorithm>
#include <utility>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "filecopier.h"
#include "records/plan/planresult.h"

namespace NVB::Engine {

using NVB::Info::Plan::PlanResult;

FileRestoreJob::FileRestoreJob(Spec spec)
    : m_spec(std::move(spec))
{
    for (QString& item : m_spec.items)
        item = QDir::cleanPath(item);
}

QString FileRestoreJob::targetPath(const QString& destination, const QString& sourcePath)
{
    if (destination.isEmpty())
        return sourcePath;
    return QDir::cleanPath(destination + QLatin1Char('/') + sourcePath);
}

bool FileRestoreJob::isChosen(const QString& path) const
{
    if (m_spec.items.isEmpty())
        return true;
    return std::any_of(m_spec.items.cbegin(), m_spec.items.cend(), [&path](const QString& item) {
        return item == QLatin1String("/") || path == item
               || (path.startsWith(item) && path.at(item.size()) == QLatin1Char('/'));
    });
}

FileRestoreJob::Result FileRestoreJob::run(const std::atomic_bool& stop, const ProgressHandler& progress)
{
    m_clock.start();
    qint64 lastReport = -1;
    for (const StoredContent& item : std::as_const(m_spec.content)) {
        if (stop)
            break;
        if (item.deleted || !isChosen(item.path))
            continue;
        if (item.type == StoredContent::Folder) {
            QDir().mkpath(targetPath(m_spec.destination, item.path));
            continue;
        }
        restoreFile(item);
        const qint64 now = m_clock.elapsed();
        if (progress && (lastReport < 0 || now - lastReport >= 100)) {
            lastReport = now;
            m_result.totals.elapsedMs = now;
            progress(m_result.totals);
        }
    }
    m_result.totals.scanning = false;
    m_result.totals.elapsedMs = m_clock.elapsed();
    if (progress)
        progress(m_result.totals);

    if (stop) {
        m_result.planResult = PlanResult::Interrupted;
        m_result.message = QStringLiteral("The run was stopped");
    } else if (m_result.totals.scannedCount == 0 && !m_spec.items.isEmpty()) {
        m_result.planResult = PlanResult::Failed;
        m_result.message = QStringLiteral("None of the chosen items is in the restore point");
    } else if (m_result.totals.failedCount > 0) {
        m_result.planResult = m_result.totals.failedCount == m_result.totals.scannedCount ? PlanResult::Failed
                                                                                         : PlanResult::Warning;
    } else {
        m_result.planResult = PlanResult::Success;
    }
    return std::move(m_result);
}

void FileRestoreJob::restoreFile(const StoredContent& file)
{
    RunProgress& totals = m_result.totals;
    ++totals.scannedCount;
    totals.scannedSize += file.size;
    totals.currentFile = file.path;

    const QString target = targetPath(m_spec.destination, file.path);
    const QFileInfo existing(target);
    if (existing.exists()) {
        if (m_spec.skipExistingFiles) {
            record(file, RunFileRecord::Skipped, QStringLiteral("The file exists"));
            return;
        }
        if (m_spec.onlyNewFiles && existing.lastModified().toUTC() >= file.modifiedUtc) {
            record(file, RunFileRecord::Skipped, QStringLiteral("The file on disk is as new"));
            return;
        }
    }
    QString error;
    if (file.object.isEmpty()
        || !FileCopier::copy(m_spec.storageRoot + QLatin1Char('/') + file.object, target, &error)) {
        ++totals.failedCount;
        if (m_result.message.isEmpty())
            m_result.message = error.isEmpty() ? QStringLiteral("No data for %1").arg(file.path) : error;
        record(file, RunFileRecord::Failed, error);
        return;
    }
    ++totals.copiedCount;
    totals.copiedSize += file.size;
    record(file, RunFileRecord::Restored, QString());
}

void FileRestoreJob::record(const StoredContent& file, int operation, const QString& message)
{
    RunFileRecord record;
    record.planId = m_spec.planId;
    record.planName = m_spec.planName;
    record.file = file.path;
    record.operation = operation;
    record.size = file.size;
    record.modifiedUtc = file.modifiedUtc;
    record.finishUtc = QDateTime::currentDateTimeUtc();
    record.message = message;
    m_result.files.append(record);
}

} // namespace NVB::Engine
