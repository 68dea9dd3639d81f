#include "filerestorejob.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <utility>

#include <QDir>
#include <QFileInfo>
#include <QRandomGenerator>

#include "blocks/incrementreader.h"
#include "core/bytename.h"
#include "encryption/objectopener.h"
#include "filecopier.h"
#include "folderhandle.h"
#include "records/plan/planresult.h"

namespace NVB::Engine {

using NVB::Info::Plan::PlanResult;

FileRestoreJob::FileRestoreJob(Parameters parameters)
    : m_parameters(std::move(parameters))
{
    for (QString& item : m_parameters.items)
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
    if (m_parameters.items.isEmpty())
        return true;
    return std::any_of(m_parameters.items.cbegin(), m_parameters.items.cend(), [&path](const QString& item) {
        return item == QLatin1String("/") || path == item
            || (path.startsWith(item) && path.at(item.size()) == QLatin1Char('/'));
    });
}

QString FileRestoreJob::wrongPassword() const
{
    // One enciphered object tells whether the password is right, before a
    // single folder is made; all of a point's copies share one password.
    for (const StoredContent& item : m_parameters.content) {
        if (item.type != StoredContent::File || item.deleted || !isChosen(item.path)
            || !isEnciphered(ObjectEncoding(item.encoding)) || isIncrement(item.encoding))
            continue;
        const QByteArray object = NVL::ByteName::encode(item.object);
        if (!FolderHandle::isPlainRelative(object))
            continue;
        const int fd = ::openat(m_storage.fd(), object.constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
        if (fd < 0)
            continue;
        const QString refused = ObjectOpener::wrongPassword(fd, m_parameters.password);
        ::close(fd);
        return refused;
    }
    return QString();
}

FileRestoreJob::Result FileRestoreJob::run(const std::atomic_bool& stop, const ProgressHandler& progress)
{
    m_clock.start();
    qint64 lastReport = -1;
    QString error;
    m_storage = FolderHandle::openAbsolute(NVL::ByteName::encode(m_parameters.storageRoot), &error);
    if (m_storage.isValid()) {
        const bool inPlace = m_parameters.destination.isEmpty();
        m_target = FolderHandle::openAbsolute(
            inPlace ? QByteArrayLiteral("/") : NVL::ByteName::encode(m_parameters.destination), &error, inPlace);
    }
    if (m_target.isValid())
        error = wrongPassword();
    if (!m_target.isValid() || !error.isEmpty()) {
        m_result.planResult = PlanResult::Failed;
        m_result.message = error;
        return std::move(m_result);
    }
    // The restore point says what will come back, so the total needs no walk.
    m_result.totals.totalCount = m_result.totals.totalSize = 0;
    for (const StoredContent& item : std::as_const(m_parameters.content)) {
        if (!item.deleted && item.type != StoredContent::Folder && isChosen(item.path)) {
            ++m_result.totals.totalCount;
            m_result.totals.totalSize += item.type == StoredContent::File ? item.size : 0;
        }
    }
    m_result.totals.transferStartMs = m_clock.elapsed();
    QList<const StoredContent*> folders;
    for (const StoredContent& item : std::as_const(m_parameters.content)) {
        if (stop)
            break;
        if (item.deleted || !isChosen(item.path))
            continue;
        if (item.type == StoredContent::Folder) {
            const QByteArray folder = NVL::ByteName::encode(item.path);
            if (FolderHandle::isPlainAbsolute(folder) && folder != "/") {
                m_target.openBelow(folder.mid(1), true, nullptr);
                folders.append(&item);
            }
            continue;
        }
        if (item.type == StoredContent::Link)
            restoreLink(item);
        else
            restoreFile(item, stop);
        const qint64 now = m_clock.elapsed();
        if (progress && (lastReport < 0 || now - lastReport >= 100)) {
            lastReport = now;
            m_result.totals.elapsedMs = now;
            progress(m_result.totals);
        }
    }
    // Folders get their modes and times last, deepest first: restoring
    // what lies in them changed their times, and a folder made read-only
    // early could not take its files.
    for (auto it = folders.crbegin(); it != folders.crend() && !stop; ++it) {
        const FolderHandle folder = m_target.openBelow(NVL::ByteName::encode((*it)->path).mid(1), false, nullptr);
        if (folder.isValid())
            applyOwnership(folder.fd(), nullptr, **it);
    }
    m_result.totals.scanning = false;
    m_result.totals.elapsedMs = m_clock.elapsed();
    if (progress)
        progress(m_result.totals);

    if (stop) {
        m_result.planResult = PlanResult::Interrupted;
        m_result.message = QStringLiteral("The run was stopped");
    } else if (m_result.totals.scannedCount == 0 && !m_parameters.items.isEmpty()) {
        m_result.planResult = PlanResult::Failed;
        m_result.message = QStringLiteral("None of the chosen items is in the restore point");
    } else if (m_result.totals.failedCount > 0) {
        m_result.planResult
            = m_result.totals.failedCount == m_result.totals.scannedCount ? PlanResult::Failed : PlanResult::Warning;
    } else {
        m_result.planResult = PlanResult::Success;
    }
    return std::move(m_result);
}

void FileRestoreJob::restoreFile(const StoredContent& file, const std::atomic_bool& stop)
{
    RunProgress& totals = m_result.totals;
    ++totals.scannedCount;
    totals.scannedSize += file.size;
    totals.currentFile = file.path;

    const auto failed = [&](const QString& message) {
        ++totals.failedCount;
        if (m_result.message.isEmpty())
            m_result.message = message;
        record(file, RunFileRecord::Failed, message);
    };
    // A stored path or object that climbs out of its folder is never
    // followed, whatever wrote it into the store.
    const QByteArray path = NVL::ByteName::encode(file.path);
    const QByteArray object = NVL::ByteName::encode(file.object);
    if (!FolderHandle::isPlainAbsolute(path) || path == "/") {
        failed(QStringLiteral("The stored path %1 is refused: it is not a plain absolute path").arg(file.path));
        return;
    }
    if (!FolderHandle::isPlainRelative(object)) {
        failed(file.object.isEmpty()
                ? QStringLiteral("No data for %1").arg(file.path)
                : QStringLiteral("The stored object %1 is refused: it leaves the storage folder").arg(file.object));
        return;
    }

    QString error;
    const int objectSlash = object.lastIndexOf('/');
    // Copies of one folder follow each other, and so do their objects: each
    // folder is opened once for its files, not walked to once per file.
    const FolderHandle* objectFolder
        = objectSlash > 0 ? m_objectFolder.open(m_storage, object.left(objectSlash), false, &error) : &m_storage;
    const int from = objectFolder
        ? ::openat(objectFolder->fd(), object.mid(objectSlash + 1).constData(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC)
        : -1;
    if (from < 0) {
        failed(error.isEmpty() ? QStringLiteral("The stored data of %1 is missing").arg(file.path) : error);
        return;
    }
    const int slash = path.lastIndexOf('/');
    const QByteArray name = path.mid(slash + 1);
    const QByteArray parent = path.mid(1, qMax(0, slash - 1));
    const FolderHandle* targetFolder
        = parent.isEmpty() ? &m_target : m_targetFolder.open(m_target, parent, true, &error);
    if (!targetFolder) {
        ::close(from);
        failed(error);
        return;
    }
    const FolderHandle& target = *targetFolder;

    struct stat existing
    {
    };
    if (::fstatat(target.fd(), name.constData(), &existing, AT_SYMLINK_NOFOLLOW) == 0) {
        if (m_parameters.skipExistingFiles) {
            ::close(from);
            record(file, RunFileRecord::Skipped, QStringLiteral("The file exists"));
            return;
        }
        const qint64 existingNs = qint64(existing.st_mtim.tv_sec) * 1000000000 + existing.st_mtim.tv_nsec;
        const qint64 storedNs = file.modifiedNs > 0 ? file.modifiedNs : file.modifiedUtc.toMSecsSinceEpoch() * 1000000;
        if (m_parameters.onlyNewFiles && existingNs >= storedNs) {
            ::close(from);
            record(file, RunFileRecord::Skipped, QStringLiteral("The file on disk is as new"));
            return;
        }
    }
    struct stat stored
    {
    };
    ::fstat(from, &stored);
    FileCopier::Options options;
    options.replace = true;
    options.mode = file.mode != 0 ? file.mode : stored.st_mode;
    options.setOwner = ::geteuid() == 0 && file.owner >= 0 && file.group >= 0;
    options.owner = uid_t(file.owner);
    options.group = gid_t(file.group);
    options.times[0] = stored.st_atim;
    options.times[1] = stored.st_mtim;
    options.expectedChecksum = file.checksum;
    options.readEncoding = ObjectEncoding(file.encoding);
    options.readPassword = m_parameters.password;
    std::unique_ptr<IncrementReader> increment;
    if (isIncrement(file.encoding)) {
        increment = std::make_unique<IncrementReader>(m_storage, from, options.readEncoding, m_parameters.password);
        QString problem;
        if (!increment->open(&problem)) {
            increment.reset();
            ::close(from);
            failed(QStringLiteral("Cannot restore %1: %2").arg(file.path, problem));
            return;
        }
        options.readEncoding = ObjectEncoding::Plain;
        options.source
            = [&increment](char* data, size_t size, QString* error) { return increment->read(data, size, error); };
    }
    const FileCopier::Result copied = FileCopier::copy(from, target, name, options, &stop, file.path);
    increment.reset();
    ::close(from);
    if (copied.status == FileCopier::Status::Stopped)
        return;
    if (copied.status != FileCopier::Status::Done) {
        failed(copied.error);
        return;
    }
    ++totals.copiedCount;
    totals.copiedSize += copied.size;
    record(file, RunFileRecord::Restored, QString());
}

void FileRestoreJob::applyOwnership(int folder, const char* name, const StoredContent& item)
{
    // `name` null: `folder` is the item itself.
    const int flags = name ? AT_SYMLINK_NOFOLLOW : AT_EMPTY_PATH;
    const char* what = name ? name : "";
    if (::geteuid() == 0 && item.owner >= 0 && item.group >= 0)
        ::fchownat(folder, what, uid_t(item.owner), gid_t(item.group), flags);
    if (item.mode != 0 && item.type != StoredContent::Link)
        ::fchmod(folder, item.mode & 07777);
    const qint64 ns = item.modifiedNs > 0 ? item.modifiedNs : item.modifiedUtc.toMSecsSinceEpoch() * 1000000;
    const struct timespec times[2] = {{0, UTIME_OMIT}, {time_t(ns / 1000000000), long(ns % 1000000000)}};
    if (name)
        ::utimensat(folder, name, times, AT_SYMLINK_NOFOLLOW);
    else
        ::futimens(folder, times);
}

void FileRestoreJob::restoreLink(const StoredContent& link)
{
    RunProgress& totals = m_result.totals;
    ++totals.scannedCount;
    totals.currentFile = link.path;
    const QByteArray path = NVL::ByteName::encode(link.path);
    QString error;
    if (!FolderHandle::isPlainAbsolute(path) || path == "/") {
        error = QStringLiteral("The stored path %1 is refused: it is not a plain absolute path").arg(link.path);
    } else {
        const int slash = path.lastIndexOf('/');
        const QByteArray name = path.mid(slash + 1);
        const QByteArray parent = path.mid(1, qMax(0, slash - 1));
        const FolderHandle folder = parent.isEmpty() ? m_target.duplicate() : m_target.openBelow(parent, true, &error);
        struct stat existing
        {
        };
        if (folder.isValid() && ::fstatat(folder.fd(), name.constData(), &existing, AT_SYMLINK_NOFOLLOW) == 0
            && m_parameters.skipExistingFiles) {
            record(link, RunFileRecord::Skipped, QStringLiteral("The file exists"));
            return;
        }
        if (folder.isValid()) {
            // Made under a fresh name and renamed over whatever is there, so
            // a link never lands half made and never follows the old entry.
            const QByteArray target = NVL::ByteName::encode(link.linkTarget);
            QByteArray temporary;
            for (int attempt = 0; attempt < 16 && temporary.isEmpty(); ++attempt) {
                const QByteArray candidate
                    = FileCopier::temporaryPrefix() + QByteArray::number(QRandomGenerator::global()->generate64(), 16);
                if (::symlinkat(target.constData(), folder.fd(), candidate.constData()) == 0)
                    temporary = candidate;
                else if (errno != EEXIST)
                    break;
            }
            if (!temporary.isEmpty()
                && ::renameat(folder.fd(), temporary.constData(), folder.fd(), name.constData()) == 0) {
                applyOwnership(folder.fd(), name.constData(), link);
                ++totals.copiedCount;
                record(link, RunFileRecord::Restored, QString());
                return;
            }
            if (!temporary.isEmpty())
                ::unlinkat(folder.fd(), temporary.constData(), 0);
            error = QStringLiteral("Cannot make the link %1: %2")
                        .arg(link.path, QString::fromLocal8Bit(std::strerror(errno)));
        }
    }
    ++totals.failedCount;
    if (m_result.message.isEmpty())
        m_result.message = error;
    record(link, RunFileRecord::Failed, error);
}

void FileRestoreJob::record(const StoredContent& file, int operation, const QString& message)
{
    RunFileRecord record;
    record.planId = m_parameters.planId;
    record.planName = m_parameters.planName;
    record.file = file.path;
    record.operation = operation;
    record.size = file.size;
    record.modifiedUtc = file.modifiedUtc;
    record.finishUtc = QDateTime::currentDateTimeUtc();
    record.message = message;
    m_result.files.append(record);
}

} // namespace NVB::Engine
