#include "retrypolicy.h"

#include <cerrno>
#include <chrono>
#include <thread>

#include <QtGlobal>

namespace NVB::Engine {

RetryPolicy& RetryPolicy::storage()
{
    static RetryPolicy policy;
    return policy;
}

void RetryPolicy::set(int attempts, int intervalMs)
{
    m_attempts = qMax(1, attempts);
    m_intervalMs = qMax(0, intervalMs);
}

bool RetryPolicy::isPassing(int error)
{
    switch (error) {
    case EAGAIN:
    case EINTR:
    case ETIMEDOUT:
    case ESTALE:
    case ENOTCONN:
    case ECONNRESET:
    case ECONNABORTED:
    case EHOSTDOWN:
    case EHOSTUNREACH:
    case ENETDOWN:
    case ENETUNREACH:
    case ENETRESET:
    case ENOLINK:
    case EREMOTEIO:
        return true;
    default:
        return false;
    }
}

int RetryPolicy::run(const std::function<int()>& attempt, const std::atomic_bool* stop) const
{
    const int tries = m_attempts;
    int result = 0;
    for (int done = 1;; ++done) {
        result = attempt();
        if (result == 0 || !isPassing(result) || done >= tries)
            return result;
        const auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(int(m_intervalMs));
        while (std::chrono::steady_clock::now() < until) {
            if (stop && *stop)
                return result;
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        }
    }
}

} // namespace NVB::Engine
