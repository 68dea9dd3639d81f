#include "filesystemclient.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QJsonArray>
#include <QTemporaryFile>

#include "cloud/cloudconfig.h"
#include "listingpager.h"
#include "listingsnapshots.h"

namespace NVL::Cloud {

namespace {

Api::ListingObject entryOf(const QFileInfo& info, const QString& key)
{
    return Api::ListingObject(key, info.isDir(), info.isDir() ? 0 : info.size(), info.lastModified());
}

bool isWritableFolder(const QString& path)
{
    QTemporaryFile probe(path + QStringLiteral("/.nvb-write-check-XXXXXX"));
    return probe.open();
}

} // namespace

OperationResult FileSystemClient::root(const QMap<QString, QVariant>& config, QString* path)
{
    const QString text = config.value(Config::FileSystem::Path).toString().trimmed();
    if (text.isEmpty())
        return OperationResult::failure(OperationError::InvalidConfig, QStringLiteral("Local path is empty"));
    if (!QDir::isAbsolutePath(text))
        return OperationResult::failure(
            OperationError::InvalidConfig, QStringLiteral("Local path \"%1\" is not absolute").arg(text));
    *path = QDir::cleanPath(text);
    return {};
}

OperationResult FileSystemClient::existingRoot(const QMap<QString, QVariant>& config, QString* path)
{
    OperationResult result = root(config, path);
    if (result.isError())
        return result;
    const QFileInfo info(*path);
    if (!info.exists())
        return OperationResult::failure(
            OperationError::NotFound, QStringLiteral("Folder \"%1\" does not exist").arg(*path));
    if (!info.isDir())
        return OperationResult::failure(
            OperationError::InvalidConfig, QStringLiteral("\"%1\" is not a folder").arg(*path));
    if (!info.isReadable() || !info.isExecutable())
        return OperationResult::failure(
            OperationError::AccessDenied, QStringLiteral("Folder \"%1\" cannot be read").arg(*path));
    return {};
}

OperationResult FileSystemClient::checkConfig(const QMap<QString, QVariant>& config, const CancelToken&)
{
    QString path;
    OperationResult result = root(config, &path);
    if (result.isError())
        return result;

    const QFileInfo info(path);
    if (info.exists()) {
        if (!info.isDir())
            return OperationResult::failure(
                OperationError::InvalidConfig, QStringLiteral("\"%1\" is not a folder").arg(path));
        if (!isWritableFolder(path))
            return OperationResult::failure(
                OperationError::AccessDenied, QStringLiteral("Folder \"%1\" is not writable").arg(path));
    } else {
        // Not there yet is fine as long as it can be made: the nearest
        // existing parent must be a folder we may write into.
        QString parent = path;
        while (!QFileInfo::exists(parent))
            parent = QFileInfo(parent).path();
        if (!QFileInfo(parent).isDir() || !isWritableFolder(parent))
            return OperationResult::failure(OperationError::AccessDenied,
                QStringLiteral("Folder \"%1\" does not exist and cannot be created in \"%2\"").arg(path, parent));
    }
    result.config = config;
    result.config.insert(Config::FileSystem::Path, path);
    return result;
}

OperationResult FileSystemClient::listContainers(const QMap<QString, QVariant>& config, const CancelToken& cancel)
{
    QString path;
    OperationResult result = existingRoot(config, &path);
    if (result.isError())
        return result;
    const QFileInfoList folders
        = QDir(path).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::Hidden, QDir::Name);
    for (const QFileInfo& folder : folders) {
        if (cancel.isCancelled())
            return OperationResult::failure(OperationError::Cancelled, QStringLiteral("Operation cancelled"));
        result.data.append(QJsonObject {{QStringLiteral("Name"), folder.fileName()}});
    }
    return result;
}

OperationResult FileSystemClient::createContainer(
    const QMap<QString, QVariant>& config, const QJsonObject& params, const CancelToken&)
{
    QString path;
    OperationResult result = existingRoot(config, &path);
    if (result.isError())
        return result;
    const QString name = params.value(QStringLiteral("Name")).toString().trimmed();
    const QString nameError = containerNameError(name);
    if (!nameError.isEmpty())
        return OperationResult::failure(OperationError::InvalidName, nameError);
    const QString folder = path + QLatin1Char('/') + name;
    if (QFileInfo::exists(folder))
        return OperationResult::failure(
            OperationError::AlreadyExists, QStringLiteral("Folder \"%1\" already exists").arg(folder));
    if (!QDir().mkdir(folder))
        return OperationResult::failure(
            OperationError::AccessDenied, QStringLiteral("Can't create folder \"%1\"").arg(folder));
    return result;
}

OperationResult FileSystemClient::listing(
    const QMap<QString, QVariant>& config, const ListingRequest& request, const CancelToken& cancel)
{
    if (!ListingPager::isSupportedDelimiter(request.delimiter))
        return OperationResult::failure(
            OperationError::InvalidConfig, QStringLiteral("Unsupported delimiter \"%1\"").arg(request.delimiter));
    QString path;
    OperationResult result = existingRoot(config, &path);
    if (result.isError())
        return result;

    ListingRequest relative = request;
    relative.prefix = ListingPager::relativePrefix(path, request.prefix);
    const QString prefixError = ListingPager::prefixError(relative.prefix);
    if (!prefixError.isEmpty())
        return OperationResult::failure(OperationError::InvalidName, prefixError);
    ListingRequest unmarked = relative;
    unmarked.marker.clear();
    const QString snapshot = ListingSnapshots::keyOf(config, unmarked);
    if (std::optional<OperationResult> page = ListingSnapshots::instance().nextPage(snapshot, relative))
        return *page;
    const QString folder = ListingPager::splitPrefix(relative.prefix).first;
    const QString base = folder.isEmpty() ? path : path + QLatin1Char('/') + folder;
    const QString keyBase = folder.isEmpty() ? QString() : folder + QLatin1Char('/');

    QVector<Api::ListingObject> entries;
    if (QFileInfo(base).isDir()) {
        const QDir::Filters filters = QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System;
        const bool recursive = request.delimiter.isEmpty();
        QDirIterator it(base, filters, recursive ? QDirIterator::Subdirectories : QDirIterator::NoIteratorFlags);
        while (it.hasNext()) {
            if (cancel.isCancelled())
                return OperationResult::failure(OperationError::Cancelled, QStringLiteral("Operation cancelled"));
            it.next();
            const QString key = keyBase + it.filePath().mid(base.size() + 1);
            entries.append(entryOf(it.fileInfo(), key));
        }
    }
    return ListingSnapshots::instance().firstPage(snapshot, std::move(entries), relative);
}

} // namespace NVL::Cloud
