#include "models/filesystemcheckedmodel.h"

#include <algorithm>
#include <mutex>

#include <QCoreApplication>
#include <QtConcurrent>

#include "core/nvldebug.h"
#include "listing/filesystemlisting.h"
#include "listing/filesystemobjectitems.h"
#include "models/filenode.h"
#include "models/models.h"

namespace NVB::GUI {

namespace Items = NVB::Constants::SessionAccess::FileSystemObject::Items;
namespace FileColumn = Models::Tree::NvbFileModelBaseModelInfo::Column;

namespace {

// Qt's thread pool, futures and event queue hand data from thread to thread
// under locks of their own, which the thread sanitizer can't see in a Qt not
// built with it. These marks tell it where those hand-overs are, so that it
// reports only races of this code.
#if defined(__SANITIZE_THREAD__)
extern "C" void __tsan_acquire(void* address);
extern "C" void __tsan_release(void* address);
void handOverFrom(void* token)
{
    __tsan_release(token);
}
void handOverTo(void* token)
{
    __tsan_acquire(token);
}
#else
void handOverFrom(void*)
{ }
void handOverTo(void*)
{ }
#endif

const QChar Separator = QLatin1Char('/');

// Maps the beginning of a path by the longest key it lies under: equal to the
// key, or the key followed by a separator. A key that is only a textual
// beginning ("/data" for "/database") doesn't count.
QString mapPrefix(const QString& path, const QHash<QString, QString>& map)
{
    const QString* bestKey = nullptr;
    for (auto it = map.constBegin(); it != map.constEnd(); ++it) {
        const QString& key = it.key();
        if (path == key || path.startsWith(QStringLiteral("%1/").arg(key))) {
            if (!bestKey || key.size() > bestKey->size())
                bestKey = &key;
        }
    }
    if (!bestKey)
        return path;
    return map.value(*bestKey) + path.mid(bestKey->size());
}

} // namespace

FileSystemCheckedModel::FileSystemCheckedModel(QObject* parent)
    : BaseFilesModel(parent)
    , m_lister(new FileSystemListing())
{
    qRegisterMetaType<QList<QObject*>>("QList<QObject*>");
    // Emitted on a worker, received here: the connection queues the nodes.
    connect(this, &FileSystemCheckedModel::listed, this, &FileSystemCheckedModel::onResult);
    if (m_lister->list(QString(), 0, 0, true))
        addVolumes(m_lister->items());
    else
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << m_lister->errorString();
}

FileSystemCheckedModel::~FileSystemCheckedModel()
{
    // Listings still running hold this model; answers still queued hold nodes
    // that nobody else would delete.
    m_closing = true;
    waitForListings();
    QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
}

void FileSystemCheckedModel::waitForListings()
{
    for (QFuture<void>& listing : m_listings)
        listing.waitForFinished();
    handOverTo(&m_handOver);
    m_listings.clear();
}

QVariant FileSystemCheckedModel::data(const QModelIndex& index, int role) const
{
    if (role == Qt::DecorationRole && index.isValid() && index.column() == 0) {
        switch (index.siblingAtColumn(FileColumn::Type).data().toInt()) {
        case Items::Type::Volume:
            return iconProvider().icon(QFileIconProvider::Drive);
        case Items::Type::Share:
            return iconProvider().icon(QFileIconProvider::Network);
        case Items::Type::File:
            return iconProvider().icon(QFileIconProvider::File);
        default:
            break;
        }
    }
    return BaseFilesModel::data(index, role);
}

bool FileSystemCheckedModel::load(const QStringList& paths, int depth)
{
    m_listings.erase(std::remove_if(m_listings.begin(), m_listings.end(),
                         [](const QFuture<void>& listing) { return listing.isFinished(); }),
        m_listings.end());
    {
        std::lock_guard<std::mutex> locker(m_jobsLock);
        m_jobs.enqueue(Job {paths, depth});
    }
    m_listings.append(QtConcurrent::run(this, &FileSystemCheckedModel::runListing));
    return true;
}

void FileSystemCheckedModel::runListing()
{
    Job job;
    {
        std::lock_guard<std::mutex> locker(m_jobsLock);
        if (m_jobs.isEmpty())
            return;
        job = m_jobs.dequeue();
    }
    list(job.paths, job.depth);
    handOverFrom(&m_handOver);
}

void FileSystemCheckedModel::list(const QStringList& paths, int depth)
{
    std::lock_guard<std::mutex> locker(m_listerLock);
    QThread* home = thread();
    for (const QString& path : paths) {
        if (!m_lister->list(path, depth)) {
            NVL::NvlDebug(QStringLiteral("NVB")).warning() << m_lister->errorString();
            handOverFrom(&m_handOver);
            QMetaObject::invokeMethod(this, "onListingFailed", Qt::QueuedConnection, Q_ARG(QString, path));
            continue;
        }
        // Kept to the end of the step: freeing a big listing needn't hold up
        // the GUI thread's work on the nodes.
        const QJsonArray items = m_lister->takeItems();
        QList<QObject*> objects = toObjectList(items);
        // A QObject belongs to the thread that made it; the GUI thread may only
        // parent the nodes once they are moved there. After the emission this
        // thread doesn't touch them again.
        for (QObject* object : objects)
            object->moveToThread(home);
        handOverFrom(&m_handOver);
        emit listed(path, objects);
    }
}

QList<QObject*> FileSystemCheckedModel::toObjectList(const QJsonArray& array) const
{
    QList<QObject*> objects;
    objects.reserve(array.size());
    for (const QJsonValue& value : array)
        objects.append(objectFromJson(value.toObject()));
    return objects;
}

QObject* FileSystemCheckedModel::objectFromJson(const QJsonObject& object) const
{
    auto* node = new FileNode();
    const int type = object.value(QLatin1String(Items::Type::Key)).toInt();
    node->setProperty(IsChangeable, true);
    node->setProperty(IsExpandable, type != Items::Type::File);
    node->setProperty(IsHidden, object.value(QLatin1String(Items::IsHidden)).toBool());
    node->setProperty(IsSymlink, object.value(QLatin1String(Items::IsSymlink)).toBool());
    const QString realPath = object.value(QLatin1String(Items::RealPath)).toString();
    const QString path = object.value(QLatin1String(Items::Path)).toString();
    // Most nodes are shown under their real path: one text serves both.
    node->setProperty(Path, path == realPath ? realPath : path);
    node->setProperty(RealPath, realPath);
    node->setProperty(Type, type);
    node->setProperty(Name, object.value(QLatin1String(Items::Name)).toString());
    return node;
}

void FileSystemCheckedModel::addVolumes(const QJsonArray& array)
{
    for (int i = 0; i < array.size(); ++i) {
        const QJsonObject element = array.at(i).toObject();
        const QString path = element.value(QLatin1String(Items::Path)).toString();
        const QString realPath = element.value(QLatin1String(Items::RealPath)).toString();
        if (realPath != path) {
            m_realByShown.insert(path, realPath);
            m_shownByReal.insert(realPath, path);
        }
        QObject* node = objectFromJson(element);
        node->setParent(rootItem());
        node->setProperty(IsChangeable, true);
        node->setProperty(IsExpandable, true);
        node->setProperty(IsHidden, false);
        node->setProperty(IsSymlink, false);
        node->setProperty(Checked, StateUnchecked);
        node->setProperty(Row, i);
        node->setProperty(Load, LoadNone);
        registerNode(node);
    }
}

void FileSystemCheckedModel::onListingFailed(const QString& path)
{
    handOverTo(&m_handOver);
    // A later expansion tries again, as after a failed load of any tree.
    if (QObject* node = nodeByPath(path); node && node->property(Load).toInt() == Loading)
        node->setProperty(Load, LoadNone);
}

void FileSystemCheckedModel::onResult(const QString& rootPath, const QList<QObject*>& objects)
{
    handOverTo(&m_handOver);
    QObject* node = nodeByPath(rootPath);
    if (m_closing || !node) {
        if (!m_closing)
            BaseFilesModel::onResult(rootPath, objects);
        // Nobody but this model would ever see these nodes again.
        qDeleteAll(objects);
        return;
    }
    BaseFilesModel::onResult(rootPath, objects);
    if (m_include.isEmpty() && m_exclude.isEmpty())
        return;
    for (QObject* object : objects) {
        if (object && object->parent() == node)
            markArrived(object);
    }
}

void FileSystemCheckedModel::markArrived(QObject* node)
{
    // A saved mark is applied once; after that the user's marks rule, and a
    // collapsed folder gives its own state to its children again.
    const QString realPath = node->property(RealPath).toString();
    const bool include = m_include.remove(realPath);
    const bool exclude = m_exclude.remove(realPath);
    // Saved marks are the plan's own: no check of a subclass stands in their way.
    if (include)
        BaseFilesModel::setData(indexByPath(realPath), StateChecked, Qt::CheckStateRole);
    else if (exclude)
        BaseFilesModel::setData(indexByPath(realPath), StateUnchecked, Qt::CheckStateRole);
}

void FileSystemCheckedModel::initChecked(const QStringList& include, const QStringList& exclude)
{
    const QStringList includeReal = unReplacePath(include);
    const QStringList excludeReal = unReplacePath(exclude);
    m_include = QSet<QString>(includeReal.cbegin(), includeReal.cend());
    m_exclude = QSet<QString>(excludeReal.cbegin(), excludeReal.cend());

    QStringList toLoad;
    if (m_include.isEmpty()) {
        for (QObject* volume : rootItem()->children()) {
            if (volume->property(Load).toInt() == LoadNone) {
                volume->setProperty(Load, Loading);
                toLoad << volume->property(RealPath).toString();
            }
        }
        if (!toLoad.isEmpty())
            load(toLoad, 0);
        return;
    }

    QStringList volumes;
    for (QObject* volume : rootItem()->children())
        volumes << volume->property(RealPath).toString();
    auto onVolume = [&volumes](const QString& path) {
        return std::any_of(volumes.cbegin(), volumes.cend(), [&path](const QString& volume) {
            return path == volume || path.startsWith(volume.endsWith(Separator) ? volume : volume + Separator);
        });
    };

    QStringList all = includeReal + excludeReal;
    std::sort(all.begin(), all.end());
    QSet<QString> seen;
    QStringList ancestors;
    for (QString path : qAsConst(all)) {
        while (path.size() > 1 && path.endsWith(Separator))
            path.chop(1);
        const QStringList parts = path.split(Separator, Qt::SkipEmptyParts);
        QString ancestor(Separator);
        for (const QString& part : parts) {
            if (!seen.contains(ancestor)) {
                seen.insert(ancestor);
                ancestors << ancestor;
            }
            ancestor = ancestor == Separator ? ancestor + part : ancestor + Separator + part;
        }
    }

    // Marks of the nodes known already.
    for (const QString& path : includeReal) {
        if (nodeByPath(path) && m_include.remove(path)) {
            m_exclude.remove(path);
            BaseFilesModel::setData(indexByPath(path), StateChecked, Qt::CheckStateRole);
        }
    }
    for (const QString& path : excludeReal) {
        if (nodeByPath(path) && m_exclude.remove(path))
            BaseFilesModel::setData(indexByPath(path), StateUnchecked, Qt::CheckStateRole);
    }

    // The folders that lead to a saved path, parents before children: each
    // answer arrives before the listing of the folders inside it.
    for (const QString& ancestor : qAsConst(ancestors)) {
        QObject* node = nodeByPath(ancestor);
        if (node) {
            if (node->property(Load).toInt() != LoadNone)
                continue;
            node->setProperty(Load, Loading);
        } else if (!onVolume(ancestor)) {
            continue;
        }
        toLoad << ancestor;
    }
    if (!toLoad.isEmpty())
        load(toLoad, 0);
}

QStringList FileSystemCheckedModel::pathsOfState(int first, int second, bool underMarked, bool replace) const
{
    QStringList result;
    const QModelIndex start = index(0, 0);
    if (!start.isValid())
        return result;
    const Qt::MatchFlags flags = Qt::MatchExactly | Qt::MatchRecursive;
    QModelIndexList hits = match(start, Qt::CheckStateRole, first, -1, flags);
    hits.append(match(start, Qt::CheckStateRole, second, -1, flags));
    const char* pathProperty = columns().value(FileColumn::RealPath);
    for (const QModelIndex& hit : qAsConst(hits)) {
        const QModelIndex parentIndex = hit.parent();
        const int parentState = parentIndex.isValid() ? state(nodeFromIndex(parentIndex)) : state(rootItem());
        const bool parentMarked = parentState == StateChecked || parentState == StatePartiallyChecked;
        if (parentMarked != underMarked)
            continue;
        const QString path = nodeFromIndex(hit)->property(pathProperty).toString();
        result << (replace ? replacePath(path) : path);
    }
    return result;
}

QStringList FileSystemCheckedModel::includePath(bool replace) const
{
    // A checked folder stands for all that lies below it, so only marked nodes
    // whose parent isn't marked are named.
    return pathsOfState(StateChecked, StatePartiallyChecked, false, replace);
}

QStringList FileSystemCheckedModel::excludePath(bool replace) const
{
    // Unmarked nodes under a marked folder are what a plan leaves out.
    return pathsOfState(StateUnchecked, StateIncomplete, true, replace);
}

QString FileSystemCheckedModel::replacePath(QString path) const
{
    return mapPrefix(path, m_shownByReal);
}

QStringList FileSystemCheckedModel::unReplacePath(const QStringList& paths) const
{
    QStringList result;
    result.reserve(paths.size());
    for (const QString& path : paths)
        result << (path.startsWith(Separator) ? mapPrefix(path, m_realByShown) : path);
    return result;
}

} // namespace NVB::GUI
