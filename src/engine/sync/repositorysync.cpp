#include "repositorysync.h"

#include <algorithm>

#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QMap>
#include <QSaveFile>

#include "archivereader.h"
#include "legacyreader.h"
#include "records/plan/backup.h"
#include "records/plan/factory.h"
#include "runs/accountfolder.h"
#include "runs/runpreparation.h"
#include "store/accountstore.h"
#include "store/planstore.h"
#include "store/repositorystore.h"
#include "store/restorepointremoval.h"
#include "store/storedatabase.h"

namespace NVB::Engine {

namespace {

constexpr int FileSystemProvider = 1;
constexpr int DiskImageBunch = 1;

QUuid folderId(const QString& name)
{
    return QUuid(QStringLiteral("{%1}").arg(name));
}

} // namespace

RepositorySync::RepositorySync(
    const QString& storeFile, const QUuid& accountId, const std::atomic_bool& cancel, Status status)
    : m_storeFile(storeFile)
    , m_accountId(accountId)
    , m_cancel(cancel)
    , m_status(std::move(status))
{ }

RepositorySync::~RepositorySync() = default;

RepositorySync::Result RepositorySync::run()
{
    StoreDatabase db;
    if (!db.open(m_storeFile)) {
        m_result.error = db.lastError();
        return m_result;
    }
    const auto account = AccountStore(db).account(m_accountId);
    if (!account) {
        m_result.error = QStringLiteral("There is no storage account with the id %1").arg(m_accountId.toString());
        return m_result;
    }
    if (account->type != FileSystemProvider) {
        m_result.error = QStringLiteral("Storage account \"%1\": this engine reads only File System accounts; "
                                        "its repository cannot be synchronized")
                             .arg(account->displayName);
        return m_result;
    }
    QString folder = account->params.value(QStringLiteral("Path")).toString().trimmed();
    if (!folder.startsWith(QLatin1Char('/'))) {
        m_result.error = QStringLiteral("Storage account \"%1\" has no local folder").arg(account->displayName);
        return m_result;
    }
    if (!folder.endsWith(QLatin1Char('/')))
        folder += QLatin1Char('/');
    const QString home = folder + QStringLiteral("NVB_") + account->prefix;
    // An unmounted drive leaves an empty mount point: reading it as a
    // storage without backups would drop every record of the account.
    if (!QFileInfo(home).isDir()) {
        m_result.error = QStringLiteral("The folder %1 of storage account \"%2\" does not exist; is its drive "
                                        "mounted? Nothing was changed.")
                             .arg(home, account->displayName);
        return m_result;
    }
    if (!prepareFolder(db, *account, home))
        return m_result;

    QList<QUuid> plans;
    for (const QFileInfo& entry : QDir(home).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks)) {
        const QUuid id = folderId(entry.fileName());
        if (!id.isNull())
            plans.append(id);
    }
    for (const StoredBunch& bunch : RepositoryStore(db).bunches(m_accountId)) {
        if (!plans.contains(bunch.id))
            plans.append(bunch.id);
    }
    for (int i = 0; i < plans.size(); ++i) {
        if (m_cancel) {
            m_result.cancelled = true;
            break;
        }
        m_status(QStringLiteral("Reading plan %1 of %2 (%3)")
                     .arg(i + 1)
                     .arg(plans.size())
                     .arg(RunPreparation::noBraces(plans.at(i))));
        syncPlan(db, *account, folder, plans.at(i));
        if (!m_result.error.isEmpty())
            break;
    }
    return m_result;
}

bool RepositorySync::prepareFolder(StoreDatabase& db, const StoredAccount& account, const QString& home)
{
    // The folder is this account's from now on. A marker naming another
    // account of this engine means two accounts share one folder, which runs
    // refuse; a marker of an account this store never held is an earlier
    // installation's, and is taken over.
    QFile marker(home + QLatin1Char('/') + AccountFolder::markerFileName());
    const QByteArray expected = m_accountId.toString().toUtf8();
    if (marker.open(QIODevice::ReadOnly)) {
        const QByteArray held = marker.readAll().trimmed();
        marker.close();
        if (held == expected)
            return true;
        const QUuid other(QString::fromUtf8(held));
        if (const auto owner = other.isNull() ? std::nullopt : AccountStore(db).account(other)) {
            m_result.error = QStringLiteral("The folder %1 belongs to the storage account \"%2\"; synchronize that "
                                            "account instead")
                                 .arg(home, owner->displayName);
            return false;
        }
        m_result.notes.append(QStringLiteral("The folder %1 was made by another installation; it now belongs to "
                                             "the storage account \"%2\"")
                                  .arg(home, account.displayName));
    }
    QSaveFile save(marker.fileName());
    if (!save.open(QIODevice::WriteOnly) || save.write(expected + '\n') < 0 || !save.commit()) {
        m_result.error
            = QStringLiteral("Cannot mark the folder %1 as the storage account's: %2").arg(home, save.errorString());
        return false;
    }
    return true;
}

void RepositorySync::syncPlan(
    StoreDatabase& db, const StoredAccount& account, const QString& folder, const QUuid& planId)
{
    RepositoryStore repository(db);
    const auto known = repository.bunch(m_accountId, planId);
    const auto plan = PlanStore(db).plan(planId);
    const QString planFolder
        = folder + QStringLiteral("NVB_%1/%2").arg(account.prefix, RunPreparation::noBraces(planId));
    QString password;
    if (plan) {
        const auto record = NVB::Info::Plan::Factory::create(plan->xml);
        if (const auto* backup = dynamic_cast<const NVB::Info::Plan::Backup*>(record.data());
            backup && backup->encryption().isEnabled())
            password = backup->encryption().password();
    }

    // What the storage holds: each generation with its points, and the
    // reader of its format.
    std::vector<std::unique_ptr<PlanReader>> readers;
    if (QFileInfo(planFolder + QStringLiteral("/archive")).isDir())
        readers.push_back(std::make_unique<ArchiveReader>(folder, account.prefix, planId, password));
    if (LegacyReader::holdsGeneration(planFolder))
        readers.push_back(std::make_unique<LegacyReader>(folder, account.prefix, planId));
    struct Found
    {
        PlanReader* reader = nullptr;
        QList<int> points;
    };
    QHash<QUuid, Found> onStorage;
    QList<QUuid> order;
    for (const auto& reader : readers) {
        QString error;
        const QList<QUuid> generations = reader->generations(&error);
        for (const QUuid& generation : generations) {
            QList<int> points = reader->points(generation, &error);
            if (!error.isEmpty())
                break;
            std::sort(points.begin(), points.end());
            if (points.isEmpty())
                continue;
            onStorage.insert(generation, Found {reader.get(), points});
            order.append(generation);
        }
        if (!error.isEmpty()) {
            // A plan that cannot be listed keeps its records untouched: a
            // passing read error must not look like deleted data.
            m_result.notes.append(
                QStringLiteral("Plan %1 was left as it was: %2").arg(RunPreparation::noBraces(planId), error));
            return;
        }
    }

    // Points whose data is gone leave the store, in one transaction.
    const QList<StoredRestorePoint> recorded = repository.restorePoints(m_accountId, planId);
    QHash<QUuid, int> lastRecorded;
    QHash<QUuid, QList<int>> recordedPoints;
    QList<qint64> gone;
    QSet<QUuid> touched;
    for (const StoredRestorePoint& point : recorded) {
        const auto found = onStorage.constFind(point.generationId);
        if (found == onStorage.cend() || !found->points.contains(point.sequenceNumber)) {
            gone.append(point.rowId);
            touched.insert(point.generationId);
            continue;
        }
        recordedPoints[point.generationId].append(point.sequenceNumber);
        lastRecorded[point.generationId] = qMax(lastRecorded.value(point.generationId), point.sequenceNumber);
    }
    RestorePointRemoval removal(db);
    if (!gone.isEmpty()) {
        if (!removal.removeFromRestorePoints({}, gone)) {
            m_result.error = db.lastError();
            return;
        }
        m_result.removed += gone.size();
        for (const QUuid& generation : std::as_const(touched)) {
            if (!recordedPoints.contains(generation) && !removal.removeGeneration(generation)) {
                m_result.error = db.lastError();
                return;
            }
        }
        if (recordedPoints.isEmpty() && onStorage.isEmpty() && known && !removal.removeBunch(m_accountId, planId)) {
            m_result.error = db.lastError();
            return;
        }
    }
    if (known && known->type == DiskImageBunch) {
        // Disk image points are volume images, not files; they are checked
        // for existence only.
        return;
    }

    // Points the store lacks, each generation in one transaction, oldest
    // generation first so that the order of recording stays the order of
    // the runs.
    StoredBunch bunch = known.value_or(StoredBunch {m_accountId, planId, QString(), 0, QString()});
    if (plan) {
        bunch.displayName = plan->name;
        bunch.planXml = plan->xml;
    }
    QHash<QUuid, QDateTime> firstStart;
    for (const QUuid& generation : std::as_const(order)) {
        const Found& found = onStorage[generation];
        FoundPoint first;
        QString error;
        if (!lastRecorded.contains(generation) && found.reader->read(generation, found.points.first(), &first, &error))
            firstStart.insert(generation, first.startUtc);
    }
    std::stable_sort(order.begin(), order.end(),
        [&firstStart](const QUuid& a, const QUuid& b) { return firstStart.value(a) < firstStart.value(b); });
    for (const QUuid& generation : std::as_const(order)) {
        const Found& found = onStorage[generation];
        const int after = lastRecorded.value(generation, 0);
        QList<int> missing;
        for (int sequence : found.points) {
            if (sequence > after)
                missing.append(sequence);
            else if (!recordedPoints.value(generation).contains(sequence))
                m_result.notes.append(QStringLiteral("Restore point %1 of generation %2 was not recorded: the store "
                                                     "already holds later points of that generation")
                                          .arg(sequence)
                                          .arg(RunPreparation::noBraces(generation)));
        }
        if (missing.isEmpty())
            continue;
        bool withoutContent = false;
        QString failure;
        for (int sequence : std::as_const(missing)) {
            if (m_cancel) {
                m_result.cancelled = true;
                return;
            }
            // Read before the transaction, so the store is held only while
            // the point is written, never while the storage is read.
            FoundPoint point;
            if (!found.reader->read(generation, sequence, &point, &failure))
                break;
            if (bunch.displayName.isEmpty())
                bunch.displayName = found.reader->planName();
            if (bunch.displayName.isEmpty())
                bunch.displayName = QStringLiteral("Plan %1").arg(RunPreparation::noBraces(planId));
            StoredRestorePoint row;
            row.connectionId = m_accountId;
            row.bunchId = planId;
            row.generationId = generation;
            row.sequenceNumber = sequence;
            row.startUtc = point.startUtc;
            row.backupType = sequence == found.points.first() ? 0 : 2;
            row.encrypted = point.encrypted;
            row.sizeOnStorage = point.sizeOnStorage;
            withoutContent = withoutContent || !point.contentKnown;
            // Points go in one by one, in order: whatever stops the work
            // leaves whole points, and the next synchronisation goes on after
            // the last.
            if (!db.transaction([&] { return repository.insertRestorePoint(bunch, row, point.content) != 0; }, true)) {
                failure = db.lastError();
                break;
            }
            ++m_result.added;
            m_status(QStringLiteral("Plan \"%1\": restore point %2 of generation %3 recorded")
                         .arg(bunch.displayName)
                         .arg(sequence)
                         .arg(RunPreparation::noBraces(generation)));
        }
        if (!failure.isEmpty())
            m_result.notes.append(
                QStringLiteral("Generation %1 of plan %2 was recorded only in part: %3")
                    .arg(RunPreparation::noBraces(generation), RunPreparation::noBraces(planId), failure));
        if (withoutContent && found.reader->isArchive())
            m_result.notes.append(
                QStringLiteral("Generation %1 of plan \"%2\" is enciphered under a password this engine does not "
                               "know: its points were recorded without their files, which a restore given the "
                               "password reads from the storage")
                    .arg(RunPreparation::noBraces(generation), bunch.displayName));
        else if (withoutContent)
            m_result.notes.append(
                QStringLiteral("Generation %1 of plan \"%2\" holds enciphered copies: the legacy format names them "
                               "by a keyed hash of their path, so they could not be listed")
                    .arg(RunPreparation::noBraces(generation), bunch.displayName));
    }
}

} // namespace NVB::Engine
