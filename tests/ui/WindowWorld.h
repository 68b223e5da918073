// SPDX-License-Identifier: MIT
#pragma once

#include "DialogDriver.h"
#include "FakeClock.h"
#include "ScriptedPrompts.h"
#include "TestEnv.h"
#include "engine/Engine.h"
#include "ui/MainWindow.h"

#include <QTest>

// The main window with its engine on a fake clock, in a private folder, shown; its boxes
// can be answered in advance.
struct WindowWorld
{
    explicit WindowWorld(double clockSpeed = 0)
        : clock(FakeClock::firstMoment(), clockSpeed)
    {
        window.attach(engine);
        settings().FileLoc = env.workDir(); // error records stay in the private folder
        engine.lists().LoadAll();           // the six lists stand, empty, as after a start
        window.show();
        [[maybe_unused]] const bool exposed = QTest::qWaitForWindowExposed(&window);
    }

    template<typename T>
    T *child(const char *name)
    {
        return control<T>(window, QLatin1String(name));
    }
    Settings &settings() { return engine.settings; }

    TestEnv env;
    FakeClock clock;
    ScriptedPrompts prompts;
    frmMain window{prompts};
    Engine engine{clock, window};
};
