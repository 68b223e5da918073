// SPDX-License-Identifier: MIT
#include "ui/GameCodesDialog.h"

#include "ui/Twips.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>

using Twips::place;

namespace {

struct Line
{
    const char *variable; // null for a heading
    const char *text;
    bool wideGap = false; // two tabs between variable and meaning
};

const Line lines[] = {
    {nullptr, "---- Server ----"},
    {"%serverip%", "The server's IP address"},
    {"%serverport%", "The server's port address"},
    {"%pinglimit%", "The ping limit for kicking"},
    {"%pingtime%", "Time before ping kick (Scan time x ping checks)"},
    {"%numbanip%", "Number of IPs banned from the server"},
    {"%numbanname%", "Number of names banned from the server"},
    {"%avgping%", "The average player ping on the last scan"},
    {"%players%", "The # players on the last scan"},
    {"%startdate%", "Date Quorvane started"},
    {"%starttime%", "Time Quorvane started"},
    {"%totalplayers%", "Total # players since Quorvane started"},
    {"%uptime%", "Total time Quorvane has been running"},
    {"%checks%", "Total # server scans since Quorvane started"},
    {nullptr, "---- Game ----"},
    {"%pingkicks%", "Total # players kicked for ping"},
    {"%bankicks%", "Total # players kicked for banned IP or name"},
    {"%banadds%", "Total # players banned since Quorvane started"},
    {"%map%", "The map currently being played", true},
    {"%tkkicks%", "Total # players kicked for TKing (always 0)"},
    {"%totalmaps%", "Total # maps run since Quorvane started"},
    {nullptr, "---- Player ----"},
    {"%name%", "Player name (kick messages only)", true},
    {"%ip%", "Player IP (kick messages only)", true},
    {"%ping%", "Player ping last scan (kick messages only)", true},
};

// Tab stops at which every meaning starts in one column: the short variables with two
// tabs end before the second stop, all others after it and before the third.
qreal tabStop(const QFontMetrics &fm)
{
    qreal twoTabWidest = 0;
    qreal oneTabShortest = 1e9;
    for (const Line &line : lines) {
        if (!line.variable)
            continue;
        const qreal width = fm.horizontalAdvance(QLatin1String(line.variable));
        if (line.wideGap)
            twoTabWidest = qMax(twoTabWidest, width);
        else
            oneTabShortest = qMin(oneTabShortest, width);
    }
    return (twoTabWidest + oneTabShortest) / 2;
}

} // namespace

QString frmGameCodes::reference()
{
    QString text;
    for (const Line &line : lines) {
        if (line.variable)
            text += u'\t' + QLatin1String(line.variable) + (line.wideGap ? QStringLiteral("\t\t") : QStringLiteral("\t"));
        else
            text += QStringLiteral("\t\t\t");
        text += QLatin1String(line.text) + QStringLiteral("\r\n");
    }
    return text;
}

frmGameCodes::frmGameCodes(ErrorLog &errors, Prompts &prompts, QWidget *parent)
    : FormDialog(errors, prompts, parent, QStringLiteral("frmGameCodes"), QStringLiteral("Game Codes"), 7200, 6720)
{
    setWindowIcon(QIcon()); // a reference window has no icon of its own
    auto *Label1 = place<QLabel>(this, u"Label1",
                                 u"You can insert information from the game into your announcements by including any "
                                 u"of the following special codes in your messages. Be sure to include the leading "
                                 u"and trailing percent signs!",
                                 120, 120, 6960, 780);
    Label1->setWordWrap(true);
    Twips::line(this, u"Line1", 120, 1005, 7080);
    auto *Text1 = place<QPlainTextEdit>(this, u"Text1", 120, 1110, 6960, 3690);
    Text1->setReadOnly(true);
    Text1->setLineWrapMode(QPlainTextEdit::NoWrap);
    Text1->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    Text1->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    QString shown = reference();
    shown.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    Text1->setPlainText(shown);

    auto *Label2 = place<QLabel>(this, u"Label2", u"Example", 120, 4920, 1500, 300);
    QFont underlined = Label2->font();
    underlined.setUnderline(true);
    Label2->setFont(underlined);
    QFont bold = font();
    bold.setBold(true);
    auto *Label3 = place<QLabel>(this, u"Label3", u"%totalplayers% players have played on the server today.", 360,
                                 5235, 6720, 300);
    Label3->setFont(bold);
    place<QLabel>(this, u"Label4", u"would display as", 120, 5550, 2400, 300);
    auto *Label5 = place<QLabel>(this, u"Label5", u"87 players have played on the server today.", 360, 5865, 6720,
                                 300);
    Label5->setFont(bold);
    auto *cmdExit = place<QPushButton>(this, u"cmdExit", u"Exit", 5760, 6240, 1320, 375);
    finishForm();
    // Measured in the face the form has chosen, which the reference shows in.
    Text1->setTabStopDistance(tabStop(Text1->fontMetrics()));
    connect(cmdExit, &QPushButton::clicked, this, &QDialog::accept);
}
