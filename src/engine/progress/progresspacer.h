#pragma once

#include <functional>

#include <QElapsedTimer>

#include "runs/runprogress.h"

namespace NVB::Engine {

class TransferScan;

// A backup's clock and the pace of its reports: the watcher hears at most
// ten times a second however many small files go by, and always when the
// run asks (its start, its end).
class ProgressPacer
{
public:
    using Handler = std::function<void(const RunProgress&)>;

    // Starts the run's clock.
    void start(Handler handler);
    qint64 elapsed() const { return m_clock.elapsed(); }
    // Hands `progress` over, with the totals `scan` knows so far.
    void report(RunProgress* progress, const TransferScan* scan, bool force);

private:
    Handler m_handler;
    QElapsedTimer m_clock;
    qint64 m_lastReport = -1;
};

} // namespace NVB::Engine
