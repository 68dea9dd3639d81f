#include "sshdeadline.h"

#include <sys/socket.h>

namespace NVL::Cloud {

namespace {
// How soon a cancel is noticed; the token has no callback to wake us.
constexpr auto Tick = std::chrono::milliseconds(25);
} // namespace

SshDeadline::SshDeadline(const CancelToken& cancel)
    : m_cancel(cancel)
{
    m_thread = std::thread([this]() { loop(); });
}

SshDeadline::~SshDeadline()
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_stop = true;
        m_fd = -1;
    }
    m_wake.notify_all();
    m_thread.join();
}

void SshDeadline::watch(int fd)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_fd = fd;
}

void SshDeadline::arm(int seconds, const QString& step)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_armed = true;
    m_seconds = seconds;
    m_step = step;
    m_deadline = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
}

void SshDeadline::disarm()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_armed = false;
}

QString SshDeadline::step() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_reason.load() == None ? m_step : m_firedStep;
}

int SshDeadline::seconds() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_reason.load() == None ? m_seconds : m_firedSeconds;
}

void SshDeadline::fire(Reason reason)
{
    // Called with the mutex held. Shutting down (not closing) keeps the
    // descriptor owned by libssh, which closes it itself later.
    if (m_fd >= 0 && m_reason.load() == None) {
        m_firedStep = m_step;
        m_firedSeconds = m_seconds;
        m_reason.store(reason);
        ::shutdown(m_fd, SHUT_RDWR);
    }
}

void SshDeadline::loop()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    while (!m_stop) {
        m_wake.wait_for(lock, Tick);
        if (m_stop)
            break;
        if (m_cancel.isCancelled())
            fire(Cancelled);
        else if (m_armed && std::chrono::steady_clock::now() >= m_deadline)
            fire(Expired);
    }
}

} // namespace NVL::Cloud
