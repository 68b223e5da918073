// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

class QSocketNotifier;

// Turns SIGTERM and SIGINT into a Qt signal on the event loop, so that a service
// manager's stop closes the window in order instead of killing the process.
class StopSignals : public QObject
{
    Q_OBJECT
public:
    explicit StopSignals(QObject *parent = nullptr);
    ~StopSignals() override;

Q_SIGNALS:
    void stopRequested();

private:
    QSocketNotifier *m_notifier = nullptr;
};
