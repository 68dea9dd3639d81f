#include "runpreparation.h"

#include <QDir>

#include "records/plan/planresult.h"
#include "repository/repository.h"
#include "storage/filesystemdriver.h"
#include "store/repositorystore.h"
#include "store/storedatabase.h"

namespace NVB::Engine {

QString RunPreparation::archiveRoot(const QString& prefix, const QUuid& planId)
{
    return QStringLiteral("NVB_%1/%2/archive").arg(prefix, noBraces(planId));
}

bool RunPreparation::isArchivePoint(const QString& folder, const QString& prefix, const StoredRestorePoint& point)
{
    const Repository repository(nullptr, archiveRoot(prefix, point.bunchId));
    return FileSystemDriver(QDir::cleanPath(folder))
        .stat(repository.treeKey(point.generationId, point.sequenceNumber))
        .exists;
}

RunOutcome RunPreparation::failedOutcome(const QString& message)
{
    RunOutcome outcome;
    outcome.planResult = NVB::Info::Plan::PlanResult::Failed;
    outcome.message = message;
    return outcome;
}

QList<StoredContent> RunPreparation::loadContent(const QString& storeFile, qint64 row, QString* error)
{
    StoreDatabase database;
    if (!database.open(storeFile)) {
        *error = database.lastError();
        return {};
    }
    QList<StoredContent> content = RepositoryStore(database).content(row);
    database.close();
    return content;
}

} // namespace NVB::Engine
