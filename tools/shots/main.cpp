// SPDX-License-Identifier: MIT
// Draws every dialog into PNG files: quorvane-shots <folder>.
// Run it under a real display (or xvfb-run) so the fonts are those of a desktop.
#include "core/Clock.h"
#include "engine/Engine.h"
#include "ui/AboutDialog.h"
#include "ui/AnnounceDialog.h"
#include "ui/EditFileDialog.h"
#include "ui/GameCodesDialog.h"
#include "ui/MainWindow.h"
#include "ui/Prompts.h"
#include "ui/SettingsDialog.h"
#include "ui/ToleranceDialog.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace {

void shoot(QWidget &w, const QString &file)
{
    w.show();
    QApplication::processEvents();
    w.grab().save(file);
    w.hide();
}

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    const QString out = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral(".");
    QDir().mkpath(out);
    QTemporaryDir home;
    qputenv("XDG_CONFIG_HOME", home.path().toLocal8Bit());
    QDir(home.path()).mkpath(QStringLiteral("work"));
    const QString work = home.path() + QStringLiteral("/work/");
    QFile list(work + QStringLiteral("banned.txt"));
    if (list.open(QIODevice::WriteOnly))
        list.write("Cheater\r\n[FOO]Spammer\r\nxXx_sniper_xXx\r\n");
    list.close();
    QFile messages(work + QStringLiteral("servmsg.txt"));
    if (messages.open(QIODevice::WriteOnly))
        messages.write("Welcome to %map%! %players% players on, ping limit %pinglimit%.\r\n"
                       "No team killing. Up %uptime%.\r\n");
    messages.close();

    SystemClock clock;
    Prompts prompts;
    frmMain window(prompts);
    Engine engine(clock, window);
    window.attach(engine);
    engine.settings.FileLoc = work;
    engine.settings.WarnTxt = QStringLiteral("I am watching you %name%.");

    frmTolerance tolerance(engine.settings, engine.lists(), engine.timKickcheck(), engine.errors(), prompts, &window);
    shoot(tolerance, out + QStringLiteral("/tolerances.png"));
    engine.settings.intAnnouce = 1;
    engine.settings.lngAnnounce = 5;
    frmAnnounce announce(engine.settings, engine.lists(), engine.announcer(), engine, engine.errors(), prompts, &window);
    shoot(announce, out + QStringLiteral("/announcement.png"));
    frmSettings settings(engine.settings, engine.log(), engine.errors(), prompts, &window);
    shoot(settings, out + QStringLiteral("/settings.png"));
    frmAbout about(engine.errors(), prompts, &window);
    shoot(about, out + QStringLiteral("/about.png"));
    frmGameCodes codes(engine.errors(), prompts, &window);
    shoot(codes, out + QStringLiteral("/game-codes.png"));
    frmEditFile editor(engine.settings, engine.lists(), engine.errors(), prompts, &window);
    editor.Edit_File(QStringLiteral("banned.txt"), QStringLiteral("Editing Banned Names"));
    shoot(editor, out + QStringLiteral("/list-editor.png"));
    return 0;
}
