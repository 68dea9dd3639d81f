#include "packreaderqueue.h"

#include <utility>

#include "repository/packreader.h"

namespace NVB::Engine {

namespace {

// One request spans at most this much of a pack, and skips at most a gap
// this long between two wanted chunks: reading a little more beats another
// round trip, reading much more does not.
constexpr qint64 SpanLimit = 8 * 1024 * 1024;
constexpr qint64 GapLimit = 256 * 1024;

} // namespace

PackReaderQueue::PackReaderQueue(const PackReader* reader, QVector<Item> items, qint64 budget)
    : m_reader(reader)
    , m_items(std::move(items))
    , m_budget(budget)
    , m_thread([this] { produce(); })
{ }

PackReaderQueue::~PackReaderQueue()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_cancel = true;
    }
    m_changed.notify_all();
    m_thread.join();
}

ChunkData PackReaderQueue::next()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    if (m_taken >= m_items.size())
        return {QStringLiteral("no chunk is left to read"), {}};
    m_changed.wait(lock, [this] { return !m_ready.empty(); });
    ChunkData chunk = std::move(m_ready.front());
    m_ready.pop_front();
    m_readyBytes -= chunk.data.size();
    ++m_taken;
    lock.unlock();
    m_changed.notify_all();
    return chunk;
}

void PackReaderQueue::push(ChunkData chunk)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    // One chunk is always let through, however large, or a chunk above the
    // budget would wait for ever.
    m_changed.wait(lock, [this] { return m_cancel || m_ready.empty() || m_readyBytes < m_budget; });
    m_readyBytes += chunk.data.size();
    m_ready.push_back(std::move(chunk));
    lock.unlock();
    m_changed.notify_all();
}

void PackReaderQueue::produce()
{
    for (int first = 0; first < m_items.size();) {
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            if (m_cancel)
                return;
        }
        const Item& head = m_items.at(first);
        if (head.pack.isEmpty()) {
            push({QStringLiteral("the chunk is in no pack"), {}});
            ++first;
            continue;
        }
        // The run of following items that lie close behind each other in
        // the same pack: small files restored in pack order make long runs.
        QVector<PackEntry> entries {head.entry};
        qint64 end = head.entry.offset + head.entry.length;
        int last = first + 1;
        for (; last < m_items.size(); ++last) {
            const Item& item = m_items.at(last);
            if (item.pack != head.pack || item.entry.offset < end || item.entry.offset - end > GapLimit
                || item.entry.offset + item.entry.length - head.entry.offset > SpanLimit)
                break;
            entries.append(item.entry);
            end = item.entry.offset + item.entry.length;
        }
        for (ChunkData& chunk : m_reader->readChunks(head.pack, entries))
            push(std::move(chunk));
        first = last;
    }
}

} // namespace NVB::Engine
