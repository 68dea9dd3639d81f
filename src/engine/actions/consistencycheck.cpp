#include "consistencycheck.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <string_view>
#include <utility>

#include "blocks/incrementheader.h"
#include "core/bytename.h"
#include "core/nvldebug.h"
#include "records/plan/planresult.h"
#include "runs/folderhandle.h"
#include "runs/objectencoding.h"
#include "store/contentstaging.h"
#include "store/pointobjects.h"
#include "store/storedatabase.h"

namespace NVB::Engine {

using NVB::Info::Plan::PlanResult;

quint64 ConsistencyCheck::checkedKey(const QString& object, qint64 size)
{
    // 64 bits: two objects of 1,000,000 share a key once in about 10^7 runs,
    // and then one of them is only not looked up twice in one run.
    const QByteArray bytes = object.toUtf8();
    return quint64(std::hash<std::string_view> {}(std::string_view(bytes.constData(), size_t(bytes.size()))))
        ^ (quint64(size) * 0x9e3779b97f4a7c15ULL);
}

QStringList ConsistencyCheck::problems(
    const QString& storageRoot, const QList<StoredContent>& content, const std::vector<quint64>& checked)
{
    QStringList found;
    const QByteArray root = NVL::ByteName::encode(storageRoot);
    for (const StoredContent& item : content) {
        if (item.type != StoredContent::File || item.deleted || item.object.isEmpty())
            continue;
        // An increment is looked at for its full version as well, which the
        // run did not.
        if (!checked.empty() && !isIncrement(item.encoding)
            && std::binary_search(checked.cbegin(), checked.cend(),
                checkedKey(item.object, item.storedSize >= 0 ? item.storedSize : item.size)))
            continue;
        const QByteArray path = root + '/' + NVL::ByteName::encode(item.object);
        struct stat info
        {
        };
        if (::stat(path.constData(), &info) != 0 || !S_ISREG(info.st_mode)) {
            found << QStringLiteral("%1 (missing)").arg(item.object);
            continue;
        }
        const qint64 expected = item.storedSize >= 0 ? item.storedSize : item.size;
        if (qint64(info.st_size) != expected)
            found << QStringLiteral("%1 (%2 bytes, %3 recorded)")
                         .arg(item.object)
                         .arg(qint64(info.st_size))
                         .arg(expected);
        if (isIncrement(item.encoding)) {
            // An increment restores nothing without the full version it
            // applies to.
            QString error;
            const int fd = ::open(path.constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
            const auto header = fd >= 0 ? IncrementHeader::read(fd, &error) : std::nullopt;
            if (fd >= 0)
                ::close(fd);
            struct stat base
            {
            };
            if (!header || !FolderHandle::isPlainRelative(NVL::ByteName::encode(header->baseObject)))
                found << QStringLiteral("%1 (damaged increment)").arg(item.object);
            else if (::stat((root + '/' + NVL::ByteName::encode(header->baseObject)).constData(), &base) != 0
                || !S_ISREG(base.st_mode))
                found << QStringLiteral("%1 (missing, the full version of %2)").arg(header->baseObject, item.object);
        }
    }
    return found;
}

void ConsistencyCheck::warn(RunOutcome* outcome, const QStringList& found)
{
    if (found.isEmpty())
        return;
    QStringList named = found.mid(0, NamedObjects);
    if (found.size() > NamedObjects)
        named << QStringLiteral("and %1 more").arg(found.size() - NamedObjects);
    const QString note = QStringLiteral("Consistency check: %1 object(s) of the new restore point are not as "
                                        "recorded on the storage: %2")
                             .arg(found.size())
                             .arg(named.join(QStringLiteral(", ")));
    NVL::NvlDebug(QStringLiteral("NVB")).warning() << note;
    outcome->planResult = PlanResult::Warning;
    outcome->message = outcome->message.isEmpty() ? note : outcome->message + QLatin1Char('\n') + note;
}

ConsistencyCheck::Work ConsistencyCheck::around(
    const QString& storageRoot, const QString& storeFile, const QList<qint64>& earlierPoints, Work work)
{
    return [storageRoot, storeFile, earlierPoints, work = std::move(work)](const std::atomic_bool& stop) {
        RunOutcome outcome = work(stop);
        if (outcome.planResult != PlanResult::Success && outcome.planResult != PlanResult::Warning)
            return outcome;
        // The new point's objects: what the run kept in memory, and what it
        // staged in the store while it walked.
        QList<StoredContent> fresh = outcome.content;
        if (outcome.changes)
            fresh += outcome.changes->added;
        QStringList found = problems(storageRoot, fresh);
        if (outcome.changes && outcome.changes->stagedRun > 0) {
            StoreDatabase database;
            const bool read = database.open(storeFile)
                && ContentStaging::forEachBatch(database, outcome.changes->stagedRun,
                    [&](const QList<StoredContent>& batch) { found += problems(storageRoot, batch); });
            if (!read)
                NVL::NvlDebug(QStringLiteral("NVB")).warning()
                    << QStringLiteral("The new restore point could not be read for the consistency check: %1")
                           .arg(database.lastError());
        }
        if (!earlierPoints.isEmpty()) {
            for (const QString& problem : std::as_const(outcome.walkedProblems)) {
                if (!found.contains(problem))
                    found << problem;
            }
            // Every object once, however many of the points refer to it. The
            // latest point's copies were looked up by the walk: its open rows
            // are not read a second time.
            StoreDatabase database;
            const bool read = database.open(storeFile)
                && PointObjects::forEachBatch(
                    database, earlierPoints, outcome.walkedGeneration, [&](const QList<StoredContent>& batch) {
                        for (const QString& problem : problems(storageRoot, batch, outcome.checkedObjects)) {
                            if (!found.contains(problem))
                                found << problem;
                        }
                        return !stop;
                    });
            if (!read)
                NVL::NvlDebug(QStringLiteral("NVB")).warning()
                    << QStringLiteral("The earlier restore points could not be read for the consistency check: %1")
                           .arg(database.lastError());
        }
        warn(&outcome, found);
        std::vector<quint64>().swap(outcome.checkedObjects);
        outcome.walkedProblems.clear();
        return outcome;
    };
}

} // namespace NVB::Engine
