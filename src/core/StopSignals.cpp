// SPDX-License-Identifier: MIT
#include "core/StopSignals.h"

#include <QSocketNotifier>

#ifdef Q_OS_UNIX
#include <csignal>
#include <sys/socket.h>
#include <unistd.h>

namespace {
int pipeEnds[2] = {-1, -1};

void onSignal(int)
{
    const char byte = 1;
    // Only an async-signal-safe write here; the event loop does the rest.
    [[maybe_unused]] const ssize_t written = ::write(pipeEnds[0], &byte, 1);
}
} // namespace
#endif

StopSignals::StopSignals(QObject *parent)
    : QObject(parent)
{
#ifdef Q_OS_UNIX
    if (::socketpair(AF_UNIX, SOCK_STREAM, 0, pipeEnds) != 0)
        return;
    m_notifier = new QSocketNotifier(pipeEnds[1], QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, [this] {
        char byte;
        [[maybe_unused]] const ssize_t got = ::read(pipeEnds[1], &byte, 1);
        Q_EMIT stopRequested();
    });
    struct sigaction action = {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    sigaction(SIGTERM, &action, nullptr);
    sigaction(SIGINT, &action, nullptr);
#endif
}

StopSignals::~StopSignals()
{
#ifdef Q_OS_UNIX
    signal(SIGTERM, SIG_DFL);
    signal(SIGINT, SIG_DFL);
#endif
}
