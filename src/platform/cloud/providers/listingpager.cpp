#include "listingpager.h"

#include <algorithm>

#include <QDir>
#include <QJsonArray>

namespace NVL::Cloud {

QString ListingPager::relativePrefix(const QString& root, const QString& prefix)
{
    QString cleanRoot = root;
    while (cleanRoot.size() > 1 && cleanRoot.endsWith(QLatin1Char('/')))
        cleanRoot.chop(1);
    QString result = prefix;
    if (!cleanRoot.isEmpty() && cleanRoot != QLatin1String("/")) {
        if (result == cleanRoot)
            result.clear();
        else if (result.startsWith(cleanRoot + QLatin1Char('/')))
            result = result.mid(cleanRoot.size() + 1);
    }
    while (result.startsWith(QLatin1Char('/')))
        result.remove(0, 1);
    return result;
}

QPair<QString, QString> ListingPager::splitPrefix(const QString& prefix)
{
    const int slash = prefix.lastIndexOf(QLatin1Char('/'));
    if (slash < 0)
        return qMakePair(QString(), prefix);
    return qMakePair(prefix.left(slash), prefix.mid(slash + 1));
}

bool ListingPager::isSupportedDelimiter(const QString& delimiter)
{
    return delimiter.isEmpty() || delimiter == QLatin1String("/");
}

QString ListingPager::prefixError(const QString& relativePrefix)
{
    const QStringList segments = relativePrefix.split(QLatin1Char('/'));
    for (const QString& segment : segments) {
        if (segment == QLatin1String(".") || segment == QLatin1String(".."))
            return QStringLiteral("The prefix \"%1\" has a \"%2\" segment, which is not allowed")
                .arg(relativePrefix, segment);
    }
    return QString();
}

void ListingPager::sortByName(QVector<Api::ListingObject>* entries)
{
    std::sort(entries->begin(), entries->end(),
        [](const Api::ListingObject& a, const Api::ListingObject& b) { return a.name() < b.name(); });
}

OperationResult ListingPager::page(QVector<Api::ListingObject> entries, const ListingRequest& request)
{
    sortByName(&entries);
    return pageSorted(entries, request);
}

OperationResult ListingPager::pageSorted(const QVector<Api::ListingObject>& sorted, const ListingRequest& request)
{
    const int maxKeys = request.maxKeys == 0 ? DefaultMaxKeys : request.maxKeys;
    // Names after the marker that start with the prefix form one run of
    // the sorted list: it starts at the larger of the two bounds.
    auto start = std::lower_bound(sorted.cbegin(), sorted.cend(), request.prefix,
        [](const Api::ListingObject& entry, const QString& name) { return entry.name() < name; });
    if (!request.marker.isEmpty()) {
        const auto afterMarker = std::upper_bound(sorted.cbegin(), sorted.cend(), request.marker,
            [](const QString& name, const Api::ListingObject& entry) { return name < entry.name(); });
        start = std::max(start, afterMarker);
    }
    OperationResult result;
    int taken = 0;
    for (auto it = start; it != sorted.cend() && it->name().startsWith(request.prefix); ++it) {
        if (taken == maxKeys) {
            result.marker = result.data.last().toObject().value(Api::ListingObject::NameKey).toString();
            break;
        }
        result.data.append(it->json());
        ++taken;
    }
    return result;
}

} // namespace NVL::Cloud
