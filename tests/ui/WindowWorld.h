// SPDX-License-Identifier: MIT
#pragma once

#include "FakeClock.h"
#include "TestEnv.h"
#include "core/Engine.h"
#include "ui/MainWindow.h"

#include <QTest>

// The main window with its engine on a fake clock, in a private folder, shown.
struct WindowWorld
{
    explicit WindowWorld(double clockSpeed = 0)
        : clock(QDateTime(QDate(2026, 11, 22), QTime(12, 0, 0)), clockSpeed)
    {
        settings().FileLoc = env.workDir(); // error records stay in the private folder
        window.engine().lists().LoadAll();  // the six lists stand, empty, as after a start
        window.show();
        [[maybe_unused]] const bool exposed = QTest::qWaitForWindowExposed(&window);
    }

    template<typename T>
    T *child(const char *name)
    {
        T *found = window.findChild<T *>(QLatin1String(name));
        if (!found)
            qFatal("no control %s", name);
        return found;
    }
    Settings &settings() { return window.engine().settings; }

    TestEnv env;
    FakeClock clock;
    frmMain window{clock};
};
