#include "app/icons/iconmanager.h"

#include <QCoreApplication>
#include <QHash>
#include <QPair>
#include <QPixmap>
#include <QRegularExpression>

#include "cloud/cloudtype.h"

namespace NVB::GUI {

namespace {

QString imagePath(const QString& fileName)
{
    return QStringLiteral(":/images/") + fileName;
}

// Made once per path and size: tables ask for the same few icons on every
// painted row.
QHash<QPair<QString, int>, QIcon>& cache()
{
    static QHash<QPair<QString, int>, QIcon> icons;
    return icons;
}

// Pixmaps must not outlive the application object.
void clearCache()
{
    cache().clear();
}

// Each provider's own image is named after its type's literal, lower case,
// letters and digits only ("Wasabi (UB)" is "wasabiub.svg").
QString storageImagePath(int cloudType)
{
    if (!NVL::Cloud::isKnownType(cloudType))
        return {};
    QString name = NVL::Cloud::TypeName.value(NVL::Cloud::Type(cloudType)).toLower();
    name.remove(QRegularExpression(QStringLiteral("[^a-z0-9]")));
    return imagePath(QStringLiteral("storages/%1.svg").arg(name));
}

} // namespace

QIcon IconManager::icon(Type type, int size)
{
    const QString path = ResourceSvg(type);
    if (path.isEmpty())
        return {};
    return sized(path, size);
}

QString IconManager::ResourceSvg(Type type)
{
    switch (type) {
    case Add:
        return imagePath(QStringLiteral("add.svg"));
    case Edit:
        return imagePath(QStringLiteral("edit.svg"));
    case Settings:
        return imagePath(QStringLiteral("settings.svg"));
    case BackupPlan:
        return imagePath(QStringLiteral("backup.svg"));
    case BackupPlanFailed:
        return imagePath(QStringLiteral("plan-backup-failed.svg"));
    case BackupPlanRunning:
        return imagePath(QStringLiteral("plan-backup-running.svg"));
    case BackupPlanWarning:
        return imagePath(QStringLiteral("plan-backup-warning.svg"));
    case BackupPlanSuccess:
        return imagePath(QStringLiteral("plan-backup-success.svg"));
    case RestorePlan:
        return imagePath(QStringLiteral("restore.svg"));
    case RestorePlanFailed:
        return imagePath(QStringLiteral("plan-restore-failed.svg"));
    case RestorePlanRunning:
        return imagePath(QStringLiteral("plan-restore-running.svg"));
    case RestorePlanWarning:
        return imagePath(QStringLiteral("plan-restore-warning.svg"));
    case RestorePlanSuccess:
        return imagePath(QStringLiteral("plan-restore-success.svg"));
    case Warning:
        return imagePath(QStringLiteral("warning.svg"));
    case Error:
        return imagePath(QStringLiteral("error.svg"));
    case Question:
        return imagePath(QStringLiteral("question.svg"));
    case EncryptionLock:
        return imagePath(QStringLiteral("encryption-lock.svg"));
    case Storage:
        return imagePath(QStringLiteral("storage.svg"));
    case Empty:
        break;
    }
    return {};
}

QIcon IconManager::resource(const QString& fileName, int size)
{
    return sized(imagePath(fileName), size);
}

QIcon IconManager::storage(int cloudType, int size)
{
    const QString path = storageImagePath(cloudType);
    if (path.isEmpty())
        return icon(Storage, size);
    return sized(path, size);
}

QIcon IconManager::sized(const QString& path, int size)
{
    const QPair<QString, int> key(path, size);
    auto found = cache().constFind(key);
    if (found != cache().constEnd())
        return *found;
    static const bool cleared = [] {
        qAddPostRoutine(clearCache);
        return true;
    }();
    Q_UNUSED(cleared)
    QIcon result(path);
    if (size > 0 && !result.isNull())
        result = QIcon(result.pixmap(size, size));
    cache().insert(key, result);
    return result;
}

} // namespace NVB::GUI
