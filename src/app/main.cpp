// SPDX-License-Identifier: MIT
#include "core/Clock.h"
#include "core/GuardedApplication.h"
#include "core/ProcessSignals.h"
#include "core/SettingsStore.h"
#include "engine/Engine.h"
#include "ui/MainWindow.h"
#include "ui/Prompts.h"
#include "ui/SplashScreen.h"

#include <QApplication>

namespace {

QString commandLineOf(const QStringList &arguments)
{
    return arguments.mid(1).join(u' ');
}

} // namespace

// Main: splash, first-run question, settings, a short wait, then the window.
int main(int argc, char **argv)
{
    GuardedApplication<QApplication> app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Quorvane"));
    QApplication::setApplicationVersion(QStringLiteral(QUORVANE_VERSION));
    // Ties the window to the installed desktop entry and its icon.
    QGuiApplication::setDesktopFileName(QStringLiteral("org.quorvane.quorvane"));
    // The splash closes before the window opens; that must not end the program.
    QApplication::setQuitOnLastWindowClosed(false);

    SystemClock clock;
    frmSplash splash;
    splash.show();

    Prompts prompts;
    frmMain window(prompts);
    Engine engine(clock, window);
    window.attach(engine);
    app.errors = &engine.errors();
    QObject::connect(&engine, &Engine::finished, &app, &QCoreApplication::quit);
    ProcessSignals processSignals;
    QObject::connect(&processSignals, &ProcessSignals::stopRequested, &window, &QWidget::close);
    QObject::connect(&processSignals, &ProcessSignals::reloadRequested, &engine, &Engine::requestReload);

    engine.FirstRunCheck();
    engine.LoadSettings(SettingsStore::ownApp);
    engine.Pause(1.5);
    splash.close();

    engine.Form_Load(commandLineOf(QCoreApplication::arguments()));
    if (engine.unloaded())
        return 0; // closed during an automatic start's first exchange
    window.show();
    return QApplication::exec();
}
