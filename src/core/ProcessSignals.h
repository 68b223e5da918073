// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

class QSocketNotifier;

// Turns the signals of a service manager into Qt signals on the event loop: SIGTERM and
// SIGINT ask for the orderly stop instead of killing the process, SIGHUP for a reload.
// The handler only writes a byte; everything else runs from the event loop. One at a time.
class ProcessSignals : public QObject
{
    Q_OBJECT
public:
    explicit ProcessSignals(QObject *parent = nullptr);
    ~ProcessSignals() override;

Q_SIGNALS:
    void stopRequested();
    void reloadRequested();

private:
    QSocketNotifier *m_notifier = nullptr;
};
