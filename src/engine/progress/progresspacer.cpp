#include "progresspacer.h"

#include <utility>

#include "transferscan.h"

namespace NVB::Engine {

void ProgressPacer::start(Handler handler)
{
    m_handler = std::move(handler);
    m_clock.start();
}

void ProgressPacer::report(RunProgress* progress, const TransferScan* scan, bool force)
{
    const qint64 now = m_clock.elapsed();
    if (!m_handler || (!force && m_lastReport >= 0 && now - m_lastReport < 100))
        return;
    if (scan)
        scan->fill(progress, false);
    m_lastReport = now;
    progress->elapsedMs = now;
    m_handler(*progress);
}

} // namespace NVB::Engine
