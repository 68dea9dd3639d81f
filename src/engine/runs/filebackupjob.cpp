#include "filebackupjob.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <utility>

#include <QFile>

#include "filecopier.h"
#include "records/plan/planresult.h"

namespace NVB::Engine {

using NVB::Info::Plan::PlanResult;

namespace {

QDateTime fromSeconds(qint64 seconds)
{
    return QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC);
}

QString childPath(const QString& folder, const QString& name)
{
    return folder == QLatin1String("/") ? QLatin1Char('/') + name : folder + QLatin1Char('/') + name;
}

} // namespace

FileBackupJob::FileBackupJob(Spec spec, FileSelection selection)
    : m_spec(std::move(spec))
    , m_selection(std::move(selection))
{
}

FileBackupJob::Result FileBackupJob::run(const std::atomic_bool& stop, const ProgressHandler& progress)
{
    m_progress = progress;
    m_clock.start();
    const QStringList roots = m_selection.roots();
    for (const QString& root : roots) {
        if (stop)
            break;
        struct stat info{};
        if (::lstat(QFile::encodeName(root).constData(), &info) != 0) {
            fail(root, QStringLiteral("The source %1 does not exist").arg(root));
            continue;
        }
        if (m_selection.isExcludedPath(root))
            continue;
        if (S_ISDIR(info.st_mode)) {
            takeFolder(root, info.st_mtim.tv_sec);
            walk(root, stop);
        } else if (S_ISREG(info.st_mode)) {
            takeFile(root, info.st_size, info.st_mtim.tv_sec);
        }
    }

    m_result.totals.scanning = false;
    m_result.totals.currentFile.clear();
    report(true);
    if (stop) {
        m_result.planResult = PlanResult::Interrupted;
        m_result.message = QStringLiteral("The run was stopped");
    } else if (m_result.totals.failedCount > 0) {
        const bool nothingTaken = m_result.totals.scannedCount == m_result.totals.failedCount;
        m_result.planResult = nothingTaken ? PlanResult::Failed : PlanResult::Warning;
        if (m_result.message.isEmpty())
            m_result.message = QStringLiteral("%1 files could not be backed up").arg(m_result.totals.failedCount);
    } else {
        m_result.planResult = PlanResult::Success;
    }
    return std::move(m_result);
}

void FileBackupJob::walk(const QString& folder, const std::atomic_bool& stop)
{
    DIR* dir = ::opendir(QFile::encodeName(folder).constData());
    if (!dir) {
        fail(folder, QStringLiteral("Cannot read the folder %1").arg(folder));
        return;
    }
    QStringList folders;
    while (const dirent* entry = ::readdir(dir)) {
        if (stop)
            break;
        const QString name = QFile::decodeName(entry->d_name);
        if (name == QLatin1String(".") || name == QLatin1String(".."))
            continue;
        const QString path = childPath(folder, name);
        struct stat info{};
        if (::fstatat(::dirfd(dir), entry->d_name, &info, AT_SYMLINK_NOFOLLOW) != 0) {
            fail(path, QStringLiteral("Cannot read %1").arg(path));
            continue;
        }
        if (S_ISLNK(info.st_mode)) {
            // Folders behind links are never entered: that is how loops and
            // surprise trees stay out of a backup.
            struct stat target{};
            if (!m_spec.followFileSymlinks || ::stat(QFile::encodeName(path).constData(), &target) != 0
                || !S_ISREG(target.st_mode))
                continue;
            info = target;
        }
        if (m_selection.isExcludedPath(path))
            continue;
        if (S_ISDIR(info.st_mode)) {
            if (!m_selection.skipsFolder(name))
                folders.append(path);
        } else if (S_ISREG(info.st_mode) && m_selection.takesFile(name)) {
            takeFile(path, info.st_size, info.st_mtim.tv_sec);
        }
    }
    ::closedir(dir);

    for (const QString& path : std::as_const(folders)) {
        if (stop)
            return;
        const int before = m_result.content.size();
        struct stat info{};
        ::lstat(QFile::encodeName(path).constData(), &info);
        takeFolder(path, info.st_mtim.tv_sec);
        walk(path, stop);
        // A folder with nothing taken below it is kept only when asked to.
        if (!m_spec.backupEmptyFolders && m_result.content.size() == before + 1)
            m_result.content.removeAt(before);
    }
}

void FileBackupJob::takeFolder(const QString& path, qint64 mtimeSeconds)
{
    StoredContent folder;
    folder.path = path;
    folder.type = StoredContent::Folder;
    folder.modifiedUtc = fromSeconds(mtimeSeconds);
    m_result.content.append(folder);
}

void FileBackupJob::takeFile(const QString& path, qint64 size, qint64 mtimeSeconds)
{
    RunProgress& totals = m_result.totals;
    ++totals.scannedCount;
    totals.scannedSize += size;
    totals.currentFile = path;

    StoredContent file;
    file.path = path;
    file.type = StoredContent::File;
    file.size = size;
    file.modifiedUtc = fromSeconds(mtimeSeconds);

    const auto previous = m_spec.previous.constFind(path);
    const bool forced = m_spec.reBackupModifiedSince.isValid() && file.modifiedUtc >= m_spec.reBackupModifiedSince;
    if (!forced && previous != m_spec.previous.cend() && previous->type == StoredContent::File
        && previous->size == size && previous->modifiedUtc == file.modifiedUtc && !previous->object.isEmpty()
        && QFile::exists(m_spec.storageRoot + QLatin1Char('/') + previous->object)) {
        file.object = previous->object;
        m_result.content.append(file);
        report(false);
        return;
    }

    const qint64 started = m_clock.elapsed();
    file.object = m_spec.objectPrefix + path;
    QString error;
    if (!FileCopier::copy(path, m_spec.storageRoot + QLatin1Char('/') + file.object, &error)) {
        fail(path, error);
        return;
    }
    ++totals.copiedCount;
    totals.copiedSize += size;
    m_result.content.append(file);

    RunFileRecord record;
    record.planId = m_spec.planId;
    record.planName = m_spec.planName;
    record.file = path;
    record.operation = RunFileRecord::Copied;
    record.size = size;
    record.modifiedUtc = file.modifiedUtc;
    record.finishUtc = QDateTime::currentDateTimeUtc();
    record.durationMs = m_clock.elapsed() - started;
    m_result.files.append(record);
    report(false);
}

void FileBackupJob::fail(const QString& path, const QString& message)
{
    ++m_result.totals.failedCount;
    ++m_result.totals.scannedCount;
    if (m_result.message.isEmpty())
        m_result.message = message;
    RunFileRecord record;
    record.planId = m_spec.planId;
    record.planName = m_spec.planName;
    record.file = path;
    record.operation = RunFileRecord::Failed;
    record.finishUtc = QDateTime::currentDateTimeUtc();
    record.message = message;
    m_result.files.append(record);
}

void FileBackupJob::report(bool force)
{
    const qint64 now = m_clock.elapsed();
    if (!m_progress || (!force && m_lastReport >= 0 && now - m_lastReport < 100))
        return;
    m_lastReport = now;
    m_result.totals.elapsedMs = now;
    m_progress(m_result.totals);
}

} // namespace NVB::Engine
