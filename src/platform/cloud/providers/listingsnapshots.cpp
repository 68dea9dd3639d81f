#include "listingsnapshots.h"

#include <QMutexLocker>

#include "cloud/cloudconfig.h"
#include "listingpager.h"

namespace NVL::Cloud {

ListingSnapshots& ListingSnapshots::instance()
{
    static ListingSnapshots snapshots;
    return snapshots;
}

QString ListingSnapshots::keyOf(const QMap<QString, QVariant>& config, const ListingRequest& request)
{
    namespace Net = Config::Network;
    // Not the configuration's id: callers often make a new one per request,
    // and a fresh first page replaces whatever another listing kept.
    const QStringList parts {config.value(Config::Type).toString(), config.value(Net::Address).toString(),
        config.value(Net::Port).toString(), config.value(Net::Sftp::User).toString(),
        config.value(Net::Sftp::Path).toString(), config.value(Config::FileSystem::Path).toString(), request.prefix,
        request.delimiter};
    return parts.join(QChar(0x1F));
}

std::optional<OperationResult> ListingSnapshots::nextPage(const QString& key, const ListingRequest& request)
{
    if (request.marker.isEmpty())
        return std::nullopt;
    const std::shared_ptr<const Entries> kept = find(key);
    if (!kept)
        return std::nullopt;
    OperationResult page = ListingPager::pageSorted(*kept, request);
    if (page.marker.isEmpty())
        drop(key);
    return page;
}

OperationResult ListingSnapshots::firstPage(const QString& key, Entries entries, const ListingRequest& request)
{
    ListingPager::sortByName(&entries);
    auto sorted = std::make_shared<const Entries>(std::move(entries));
    OperationResult page = ListingPager::pageSorted(*sorted, request);
    if (page.marker.isEmpty())
        drop(key);
    else
        keep(key, std::move(sorted));
    return page;
}

void ListingSnapshots::expire()
{
    const auto now = std::chrono::steady_clock::now();
    for (auto it = m_snapshots.begin(); it != m_snapshots.end();) {
        if (now - it->used > Expiry)
            it = m_snapshots.erase(it);
        else
            ++it;
    }
}

std::shared_ptr<const ListingSnapshots::Entries> ListingSnapshots::find(const QString& key)
{
    QMutexLocker locker(&m_mutex);
    expire();
    auto it = m_snapshots.find(key);
    if (it == m_snapshots.end())
        return nullptr;
    it->used = std::chrono::steady_clock::now();
    return it->entries;
}

void ListingSnapshots::keep(const QString& key, std::shared_ptr<const Entries> sorted)
{
    QMutexLocker locker(&m_mutex);
    expire();
    if (!m_snapshots.contains(key) && m_snapshots.size() >= MaxSnapshots) {
        auto oldest = m_snapshots.begin();
        for (auto it = m_snapshots.begin(); it != m_snapshots.end(); ++it) {
            if (it->used < oldest->used)
                oldest = it;
        }
        m_snapshots.erase(oldest);
    }
    m_snapshots.insert(key, {std::move(sorted), std::chrono::steady_clock::now()});
}

void ListingSnapshots::drop(const QString& key)
{
    QMutexLocker locker(&m_mutex);
    m_snapshots.remove(key);
}

int ListingSnapshots::count() const
{
    QMutexLocker locker(&m_mutex);
    return m_snapshots.size();
}

} // namespace NVL::Cloud
