// SPDX-License-Identifier: MIT
#include "core/ProcessSignals.h"

#include <QSocketNotifier>

#ifdef Q_OS_UNIX
#include <csignal>
#include <sys/socket.h>
#include <unistd.h>

namespace {
int pipeEnds[2] = {-1, -1};

void onSignal(int number)
{
    const char byte = static_cast<char>(number);
    // Only an async-signal-safe write here; the event loop does the rest.
    [[maybe_unused]] const ssize_t written = ::write(pipeEnds[0], &byte, 1);
}
} // namespace
#endif

ProcessSignals::ProcessSignals(QObject *parent)
    : QObject(parent)
{
#ifdef Q_OS_UNIX
    if (::socketpair(AF_UNIX, SOCK_STREAM, 0, pipeEnds) != 0)
        return;
    m_notifier = new QSocketNotifier(pipeEnds[1], QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, [this] {
        char byte = 0;
        if (::read(pipeEnds[1], &byte, 1) != 1)
            return;
        if (byte == SIGHUP)
            Q_EMIT reloadRequested();
        else
            Q_EMIT stopRequested();
    });
    struct sigaction action = {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    sigaction(SIGTERM, &action, nullptr);
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGHUP, &action, nullptr);
#endif
}

ProcessSignals::~ProcessSignals()
{
#ifdef Q_OS_UNIX
    signal(SIGTERM, SIG_DFL);
    signal(SIGINT, SIG_DFL);
    signal(SIGHUP, SIG_DFL);
#endif
}
