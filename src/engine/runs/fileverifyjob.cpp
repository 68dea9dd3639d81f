#include "fileverifyjob.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <utility>

#include "blocks/incrementreader.h"
#include "core/bytename.h"
#include "filecopier.h"
#include "folderhandle.h"
#include "records/plan/planresult.h"

namespace NVB::Engine {

using NVB::Info::Plan::PlanResult;

FileVerifyJob::FileVerifyJob(Parameters parameters)
    : m_parameters(std::move(parameters))
{ }

FileVerifyJob::Verdict FileVerifyJob::check(
    const FolderHandle& storage, const StoredContent& file, const std::atomic_bool& stop, QString* problem)
{
    const QByteArray object = NVL::ByteName::encode(file.object);
    if (!FolderHandle::isPlainRelative(object)) {
        *problem = QStringLiteral("The stored object of %1 is not a path below the storage").arg(file.path);
        return Verdict::Broken;
    }
    // The object's folders are plain folders the engine made; a link among
    // them is not followed.
    const int slash = object.lastIndexOf('/');
    QString error;
    const FolderHandle folder = slash > 0 ? storage.openBelow(object.left(slash), false, &error) : storage.duplicate();
    const int fd = folder.isValid()
        ? ::openat(folder.fd(), object.mid(slash + 1).constData(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC)
        : -1;
    if (fd < 0) {
        *problem = QStringLiteral("The stored data of %1 is missing").arg(file.path);
        return Verdict::Broken;
    }
    struct stat info
    {
    };
    const qint64 expectedSize = file.storedSize >= 0 ? file.storedSize : file.size;
    if (::fstat(fd, &info) != 0 || info.st_size != expectedSize) {
        ::close(fd);
        *problem = QStringLiteral("The stored data of %1 has %2 bytes instead of %3")
                       .arg(file.path)
                       .arg(qint64(info.st_size))
                       .arg(expectedSize);
        return Verdict::Broken;
    }
    QByteArray sum;
    if (isIncrement(file.encoding)) {
        // An increment is whole only with its full version: the file they
        // make together is what the checksum was taken of.
        IncrementReader increment(storage, fd, ObjectEncoding(file.encoding), m_parameters.password);
        QString error;
        if (increment.open(&error))
            sum = FileCopier::checksum(
                [&increment](char* data, size_t size, QString* problem) { return increment.read(data, size, problem); },
                &stop, &error);
        if (sum.isEmpty() && !stop) {
            ::close(fd);
            *problem = QStringLiteral("The stored data of %1 cannot be read: %2").arg(file.path, error);
            return Verdict::Broken;
        }
    } else {
        sum = FileCopier::checksum(fd, ObjectEncoding(file.encoding), &stop, m_parameters.password);
    }
    ::close(fd);
    if (stop)
        return Verdict::Whole;
    if (file.checksum.isEmpty()) {
        *problem = QStringLiteral("%1 was stored without a checksum; only its size could be checked").arg(file.path);
        return Verdict::SizeOnly;
    }
    if (sum != file.checksum) {
        *problem = QStringLiteral("The stored data of %1 does not match its checksum").arg(file.path);
        return Verdict::Broken;
    }
    return Verdict::Whole;
}

FileVerifyJob::Result FileVerifyJob::run(const std::atomic_bool& stop, const ProgressHandler& progress)
{
    QElapsedTimer clock;
    clock.start();
    qint64 lastReport = -1;
    QString error;
    const FolderHandle storage = FolderHandle::openAbsolute(NVL::ByteName::encode(m_parameters.storageRoot), &error);
    if (!storage.isValid()) {
        m_result.planResult = PlanResult::Failed;
        m_result.message = error;
        return std::move(m_result);
    }
    int unchecked = 0;
    for (const StoredContent& file : std::as_const(m_parameters.content)) {
        if (stop)
            break;
        if (file.type != StoredContent::File || file.deleted)
            continue;
        RunProgress& totals = m_result.totals;
        ++totals.scannedCount;
        totals.scannedSize += file.size;
        totals.currentFile = file.path;
        QString problem;
        const Verdict verdict = check(storage, file, stop, &problem);
        RunFileRecord record;
        record.planId = m_parameters.planId;
        record.planName = m_parameters.planName;
        record.file = file.path;
        record.size = file.size;
        record.modifiedUtc = file.modifiedUtc;
        record.finishUtc = QDateTime::currentDateTimeUtc();
        if (verdict == Verdict::Whole) {
            ++totals.copiedCount;
            totals.copiedSize += file.size;
        } else if (verdict == Verdict::SizeOnly) {
            ++unchecked;
            record.operation = RunFileRecord::Skipped;
            record.message = problem;
            m_result.files.append(record);
        } else {
            ++totals.failedCount;
            record.operation = RunFileRecord::Failed;
            record.message = problem;
            m_result.files.append(record);
        }
        const qint64 now = clock.elapsed();
        if (progress && (lastReport < 0 || now - lastReport >= 100)) {
            lastReport = now;
            totals.elapsedMs = now;
            progress(totals);
        }
    }
    m_result.totals.scanning = false;
    m_result.totals.elapsedMs = clock.elapsed();
    if (progress)
        progress(m_result.totals);
    if (stop) {
        m_result.planResult = PlanResult::Interrupted;
        m_result.message = QStringLiteral("The run was stopped");
    } else if (m_result.totals.failedCount > 0) {
        m_result.planResult = PlanResult::Failed;
        m_result.message = QStringLiteral("%1 of %2 stored files do not match what was backed up")
                               .arg(m_result.totals.failedCount)
                               .arg(m_result.totals.scannedCount);
    } else if (unchecked > 0) {
        m_result.planResult = PlanResult::Warning;
        m_result.message
            = QStringLiteral("%1 files were stored without a checksum; only their size was checked").arg(unchecked);
    } else {
        m_result.planResult = PlanResult::Success;
        m_result.message = QStringLiteral("All %1 stored files match").arg(m_result.totals.scannedCount);
    }
    return std::move(m_result);
}

} // namespace NVB::Engine
