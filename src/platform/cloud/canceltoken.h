#pragma once

#include <atomic>
#include <memory>

namespace NVL::Cloud {

// Shared between an operation and the worker doing its job, so the worker can
// stop early once nobody wants the answer. Copies share one flag.
class CancelToken
{
public:
    CancelToken();

    void cancel() const;
    bool isCancelled() const { return m_flag->load(); }
    // Copies of one token are the same token.
    bool operator==(const CancelToken& other) const { return m_flag == other.m_flag; }

private:
    std::shared_ptr<std::atomic_bool> m_flag;
};

} // namespace NVL::Cloud
