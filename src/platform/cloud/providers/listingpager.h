#pragma once

#include <QPair>
#include <QVector>

#include "cloud/listingobject.h"
#include "cloud/operationresult.h"
#include "listingrequest.h"

namespace NVL::Cloud {

// The object-store view of a folder tree, shared by the providers that are
// file systems underneath (local folders, SFTP): keys relative to a root,
// filtered by prefix, sorted, paged by marker.
class ListingPager
{
public:
    static constexpr int DefaultMaxKeys = 1000;

    // The prefix relative to root: a caller may pass the root's own path in
    // front, as a user sees it; leading slashes go.
    static QString relativePrefix(const QString& root, const QString& prefix);
    // "a/b/NVB_" -> ("a/b", "NVB_"); "NVB_" -> ("", "NVB_").
    static QPair<QString, QString> splitPrefix(const QString& prefix);
    // Only "/" and "" are understood; anything else is refused by the caller.
    static bool isSupportedDelimiter(const QString& delimiter);
    // A relative prefix with a "." or ".." segment would reach outside the
    // account's root; the failure text, empty when the prefix is fine.
    static QString prefixError(const QString& relativePrefix);

    static OperationResult page(QVector<Api::ListingObject> entries, const ListingRequest& request);
    // The same from entries already sorted by name: a binary search finds
    // the start, so a page costs about its own size.
    static OperationResult pageSorted(const QVector<Api::ListingObject>& sorted, const ListingRequest& request);
    static void sortByName(QVector<Api::ListingObject>* entries);
};

} // namespace NVL::Cloud
