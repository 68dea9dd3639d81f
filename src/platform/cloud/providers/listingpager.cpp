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

OperationResult ListingPager::page(QVector<Api::ListingObject> entries, const ListingRequest& request)
{
    std::sort(entries.begin(), entries.end(),
        [](const Api::ListingObject& a, const Api::ListingObject& b) { return a.name() < b.name(); });

    const int maxKeys = request.maxKeys == 0 ? DefaultMaxKeys : request.maxKeys;
    OperationResult result;
    int taken = 0;
    for (const Api::ListingObject& entry : qAsConst(entries)) {
        if (!entry.name().startsWith(request.prefix))
            continue;
        if (!request.marker.isEmpty() && entry.name() <= request.marker)
            continue;
        if (taken == maxKeys) {
            result.marker = result.data.last().toObject().value(Api::ListingObject::NameKey).toString();
            break;
        }
        result.data.append(entry.json());
        ++taken;
    }
    return result;
}

} // namespace NVL::Cloud
