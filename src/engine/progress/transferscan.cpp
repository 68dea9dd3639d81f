#include "transferscan.h"

#include <algorithm>
#include <utility>

namespace NVB::Engine {

TransferScan::TransferScan(const FileSelection& selection, SourceWalk::Options options)
    : m_walk(selection, std::move(options))
{ }

TransferScan::~TransferScan()
{
    m_cancel = true;
    if (m_thread.joinable())
        m_thread.join();
}

void TransferScan::start(const std::atomic_bool& stop, std::optional<Totals> expected)
{
    m_stop = &stop;
    m_expected = expected;
    if (m_expected)
        return;
    m_thread = std::thread([this] {
        m_walk.walk(*this);
        if (!stopped())
            m_done.store(true, std::memory_order_release);
    });
}

std::optional<TransferScan::Totals> TransferScan::totals() const
{
    if (!m_done.load(std::memory_order_acquire))
        return std::nullopt;
    return m_totals;
}

void TransferScan::fill(RunProgress* progress, bool ended) const
{
    if (m_expected) {
        progress->totalCount = ended ? progress->scannedCount : std::max(m_expected->count, progress->scannedCount);
        progress->totalSize = ended ? progress->scannedSize : std::max(m_expected->size, progress->scannedSize);
        return;
    }
    if (progress->totalCount >= 0)
        return;
    if (const auto known = totals()) {
        progress->totalCount = known->count;
        progress->totalSize = known->size;
    } else if (ended) {
        progress->totalCount = progress->scannedCount;
        progress->totalSize = progress->scannedSize;
    }
}

bool TransferScan::stopped() const
{
    return m_cancel || (m_stop && *m_stop);
}

void TransferScan::file(const QString& path, const struct stat& info, bool followedLink)
{
    Q_UNUSED(path)
    Q_UNUSED(followedLink)
    ++m_totals.count;
    m_totals.size += info.st_size;
}

} // namespace NVB::Engine
