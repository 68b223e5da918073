// SPDX-License-Identifier: MIT
// quorvaned: the engine without a window, for a server with no display. It starts watching
// at once, as the window does with -a, and ends by SIGTERM or SIGINT in order.
#include "core/Clock.h"
#include "core/GuardedApplication.h"
#include "core/ProcessSignals.h"
#include "core/SettingsStore.h"
#include "engine/Engine.h"
#include "service/Journal.h"
#include "service/JournalLine.h"
#include "service/ServiceView.h"
#include "service/SystemdNotifier.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <cstdio>
#include <utility>

namespace {

// Exit statuses besides 0 (the orderly stop) and 1 (a fatal error, as the window's).
constexpr int exitUsage = 64;  // EX_USAGE: a command line it does not know
constexpr int exitConfig = 78; // EX_CONFIG: a configuration that cannot work; not worth a retry

const char usage[] =
    "Usage: quorvaned [-a]\n"
    "Keeps order on a game server through its remote console, without a window.\n"
    "It starts watching at once; -a and /a, which start the window's engine, are taken and ignored.\n"
    "Settings: $XDG_CONFIG_HOME/quorvane/quorvane12.ini; lists and logs in its FileLoc.\n"
    "SIGTERM or SIGINT: the orderly stop. SIGHUP: read the lists and settings again.\n"
    "\n"
    "  --help     this text\n"
    "  --version  the version\n";

void printTo(std::FILE *stream, const QByteArray &text)
{
    std::fwrite(text.constData(), 1, static_cast<size_t>(text.size()), stream);
    std::fflush(stream);
}

// Without its settings the service has no server to watch: say which file and what it needs.
bool settingsFileReadable()
{
    const QString path = IniSettingsBackend::filePath(SettingsStore::ownApp);
    const QFileInfo file(path);
    if (file.isFile() && file.isReadable())
        return true;
    const QString why = file.exists() ? QStringLiteral("cannot read the settings file ")
                                      : QStringLiteral("no settings file at ");
    const QStringList lines{
        QStringLiteral("quorvaned: ") + why + path,
        QStringLiteral("quorvaned: it needs at least Host, Port, Pwd and LocalPort in its [Settings] section, for example:"),
        QStringLiteral("  [Settings]"),
        QStringLiteral("  Host=203.0.113.10"),
        QStringLiteral("  Port=12203"),
        QStringLiteral("  Pwd=secret"),
        QStringLiteral("  LocalPort=1247"),
    };
    for (const QString &line : lines)
        JournalLine::write(stderr, JournalLine::Error, line);
    return false;
}

} // namespace

int main(int argc, char **argv)
{
    GuardedApplication<QCoreApplication> app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("Quorvane"));
    QCoreApplication::setApplicationVersion(QStringLiteral(QUORVANE_VERSION));

    for (const QString &argument : QCoreApplication::arguments().mid(1)) {
        if (argument == u"--help" || argument == u"-h") {
            printTo(stdout, usage);
            return 0;
        }
        if (argument == u"--version") {
            printTo(stdout, "quorvaned " QUORVANE_VERSION "\n");
            return 0;
        }
        if (argument.compare(u"-a", Qt::CaseInsensitive) != 0 && argument.compare(u"/a", Qt::CaseInsensitive) != 0) {
            printTo(stderr, "quorvaned: unknown argument \"" + argument.toLocal8Bit() + "\"\n" + usage);
            return exitUsage;
        }
    }
    if (!settingsFileReadable())
        return exitConfig;

    SystemClock clock;
    ServiceView view;
    Engine engine(clock, view);
    view.attach(engine.settings);
    app.errors = &engine.errors();
    SystemdNotifier notifier;
    Journal journal(engine, view, notifier);
    QObject::connect(&engine, &Engine::finished, &app, &QCoreApplication::quit);
    ProcessSignals processSignals;
    bool stopping = false;
    QObject::connect(&processSignals, &ProcessSignals::stopRequested, &engine, [&engine, &journal, &stopping] {
        if (std::exchange(stopping, true))
            return; // a second signal while the first stop runs
        journal.stopping();
        engine.errors().guarded(QStringLiteral("Form_Unload"), [&engine] { engine.Form_Unload(); });
    });
    QObject::connect(&processSignals, &ProcessSignals::reloadRequested, &engine, [&engine, &journal] {
        journal.reloadRequested();
        engine.requestReload();
    });

    engine.LoadSettings(SettingsStore::ownApp);
    // The log's command line record then reads as the window's automatic start.
    engine.Form_Load(QStringLiteral("-a"));
    if (!engine.unloaded()) {
        journal.started();
        QCoreApplication::exec();
    }
    journal.stopped();
    return 0;
}
