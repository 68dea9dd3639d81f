#include "signalwatcher.h"

#include <csignal>
#include <sys/socket.h>
#include <unistd.h>

namespace NVB::Engine {

namespace {
int g_pipe[2] = {-1, -1};
}

SignalWatcher::SignalWatcher(QObject* parent)
    : QObject(parent)
{
    if (::socketpair(AF_UNIX, SOCK_STREAM, 0, g_pipe) != 0)
        return;
    m_notifier = new QSocketNotifier(g_pipe[1], QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, &SignalWatcher::onReadable);
    struct sigaction action{};
    action.sa_handler = &SignalWatcher::handler;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    for (int signal : {SIGTERM, SIGINT, SIGHUP})
        ::sigaction(signal, &action, nullptr);
}

SignalWatcher::~SignalWatcher()
{
    for (int signal : {SIGTERM, SIGINT, SIGHUP})
        ::signal(signal, SIG_DFL);
    for (int& fd : g_pipe) {
        if (fd >= 0)
            ::close(fd);
        fd = -1;
    }
}

void SignalWatcher::handler(int signal)
{
    // Only async-signal-safe work here: one byte down the pipe.
    const char byte = char(signal);
    [[maybe_unused]] const auto written = ::write(g_pipe[0], &byte, 1);
}

void SignalWatcher::onReadable()
{
    char byte = 0;
    if (::read(g_pipe[1], &byte, 1) == 1)
        emit terminationRequested(int(byte));
}

} // namespace NVB::Engine
