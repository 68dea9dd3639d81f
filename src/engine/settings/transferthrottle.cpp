#include "transferthrottle.h"

#include <algorithm>
#include <thread>

namespace NVB::Engine {

namespace {

// A quarter of a second's worth may pass at once: enough to smooth the block
// size of the copies, little enough that the average holds over a few seconds.
constexpr double BurstSeconds = 0.25;
constexpr auto LongestNap = std::chrono::milliseconds(50);

} // namespace

TransferThrottle& TransferThrottle::local()
{
    static TransferThrottle throttle;
    return throttle;
}

void TransferThrottle::setRate(qint64 bytesPerSecond)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    refill(Clock::now());
    m_rate = std::max<qint64>(0, bytesPerSecond);
    if (m_rate == 0)
        m_available = 0;
}

qint64 TransferThrottle::rate() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_rate;
}

void TransferThrottle::refill(Clock::time_point now)
{
    const double seconds = std::chrono::duration<double>(now - m_last).count();
    m_last = now;
    if (m_rate <= 0)
        return;
    m_available = std::min(m_available + seconds * double(m_rate), BurstSeconds * double(m_rate));
}

bool TransferThrottle::take(qint64 bytes, const std::atomic_bool* stop)
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        if (m_rate <= 0)
            return true;
        refill(Clock::now());
        m_available -= double(bytes);
    }
    // The debt is paid by waiting; the rate is read again at every turn so a
    // changed or lifted limit takes effect in the middle of a wait.
    for (;;) {
        std::chrono::duration<double> wait {};
        {
            std::lock_guard<std::mutex> lock(m_mutex);
            refill(Clock::now());
            if (m_rate <= 0 || m_available >= 0)
                return true;
            wait = std::chrono::duration<double>(-m_available / double(m_rate));
        }
        if (stop && *stop)
            return false;
        std::this_thread::sleep_for(std::min<std::chrono::duration<double>>(wait, LongestNap));
    }
}

} // namespace NVB::Engine
