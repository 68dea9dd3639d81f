#pragma once

#include <chrono>
#include <memory>

#include <QHash>
#include <QMap>
#include <QMutex>
#include <QVariant>
#include <QVector>

#include <optional>

#include "cloud/listingobject.h"
#include "cloud/operationresult.h"
#include "listingrequest.h"

namespace NVL::Cloud {

// A file system has no sorted, resumable listing, so the first page of a
// listing reads the folder once, sorts it and keeps it here; the pages after
// it (same configuration, prefix and delimiter, a marker) are cut from that
// copy without touching the server again. So each later page costs about its
// own size, and memory holds one copy per listing under way, not one per page.
// Snapshots go when their listing ends or after Expiry idle.
class ListingSnapshots
{
public:
    using Entries = QVector<Api::ListingObject>;

    static constexpr std::chrono::seconds Expiry {300};
    static constexpr int MaxSnapshots = 16;

    static ListingSnapshots& instance();

    // What is listed: the destination and the request without its marker.
    static QString keyOf(const QMap<QString, QVariant>& config, const ListingRequest& request);

    // A later page from the kept copy, if there is one for this listing.
    std::optional<OperationResult> nextPage(const QString& key, const ListingRequest& request);
    // A page from freshly read entries; they are kept when more pages follow.
    OperationResult firstPage(const QString& key, Entries entries, const ListingRequest& request);

    // The kept copy, sorted by name, or null.
    std::shared_ptr<const Entries> find(const QString& key);
    void keep(const QString& key, std::shared_ptr<const Entries> sorted);
    void drop(const QString& key);
    int count() const;

private:
    struct Snapshot
    {
        std::shared_ptr<const Entries> entries;
        std::chrono::steady_clock::time_point used;
    };

    void expire();

    mutable QMutex m_mutex;
    QHash<QString, Snapshot> m_snapshots;
};

} // namespace NVL::Cloud
