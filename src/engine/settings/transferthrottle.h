#pragma once

#include <atomic>
#include <chrono>
#include <mutex>

#include <QtGlobal>

namespace NVB::Engine {

// A token bucket shared by every transfer of one kind, so that a limit holds
// for the engine as a whole however many runs and threads copy at once. The
// rate may change while transfers wait: they go on at the new rate.
class TransferThrottle
{
public:
    // The copies, reads and writes of local and network-folder storage.
    static TransferThrottle& local();

    // Bytes per second; zero or less for no limit.
    void setRate(qint64 bytesPerSecond);
    qint64 rate() const;

    // Accounts for `bytes` just moved and waits until the rate allows them.
    // Returns early, false, when `stop` is set.
    bool take(qint64 bytes, const std::atomic_bool* stop = nullptr);

private:
    using Clock = std::chrono::steady_clock;

    void refill(Clock::time_point now);

    mutable std::mutex m_mutex;
    qint64 m_rate = 0;
    double m_available = 0;
    Clock::time_point m_last = Clock::now();
};

} // namespace NVB::Engine
