#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

#include <QString>

#include "cloud/canceltoken.h"

namespace NVL::Cloud {

// libssh in blocking mode waits for ever once a server stops answering after
// the login (channel open, SFTP start, stat, readdir). Rather than rewriting
// every call around non-blocking polls, a small watcher thread holds the
// session's socket and shuts it down when the step under way runs past its
// deadline or the operation is cancelled: the blocked call then fails at once
// and the worker thread is free again.
class SshDeadline
{
public:
    enum Reason { None = 0, Expired = 1, Cancelled = 2 };

    explicit SshDeadline(const CancelToken& cancel);
    ~SshDeadline();

    SshDeadline(const SshDeadline&) = delete;
    SshDeadline& operator=(const SshDeadline&) = delete;

    // The socket to shut down; -1 stops watching (before the socket closes,
    // so that a reused descriptor number is never touched).
    void watch(int fd);
    // Starts the deadline of the next blocking step.
    void arm(int seconds, const QString& step);
    void disarm();

    // Why the socket was shut down, if it was.
    Reason reason() const { return m_reason.load(); }
    // The step that was cut and its deadline, once the socket is shut down
    // (later steps fail at once on the dead socket and must not take its
    // place in the message); before that, the step under way.
    QString step() const;
    int seconds() const;

private:
    void loop();
    void fire(Reason reason);

    CancelToken m_cancel;
    mutable std::mutex m_mutex;
    std::condition_variable m_wake;
    std::thread m_thread;
    int m_fd = -1;
    bool m_armed = false;
    bool m_stop = false;
    std::chrono::steady_clock::time_point m_deadline;
    int m_seconds = 0;
    QString m_step;
    int m_firedSeconds = 0;
    QString m_firedStep;
    std::atomic<Reason> m_reason {None};
};

} // namespace NVL::Cloud
