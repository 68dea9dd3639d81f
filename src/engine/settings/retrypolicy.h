#pragma once

#include <atomic>
#include <functional>

namespace NVB::Engine {

// How often a storage operation that failed for a passing reason (a network
// file system that timed out or lost its server) is tried, and how long the
// engine waits between tries: the default settings "RetryAttempts" and
// "RetryInterval" (milliseconds). A lasting failure (no space, no right, no
// such file) is answered at once.
class RetryPolicy
{
public:
    // The policy of the storage drivers.
    static RetryPolicy& storage();

    void set(int attempts, int intervalMs);
    int attempts() const { return m_attempts; }
    int intervalMs() const { return m_intervalMs; }

    // Calls `attempt` (which answers 0 on success, else the errno of its
    // failure) until it succeeds, fails for a lasting reason or has had its
    // tries; answers the last result. Waiting ends early when `stop` is set.
    int run(const std::function<int()>& attempt, const std::atomic_bool* stop = nullptr) const;

    static bool isPassing(int error);

private:
    std::atomic_int m_attempts {1};
    std::atomic_int m_intervalMs {0};
};

} // namespace NVB::Engine
