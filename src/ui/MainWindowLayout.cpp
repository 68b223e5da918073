// SPDX-License-Identifier: MIT
#include "ui/MainWindowLayout.h"

#include "ui/FittingFont.h"
#include "ui/Twips.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QFontDatabase>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QStyle>
#include <QTableWidget>

namespace {

struct GridColumn
{
    QString header;
    int baseWidth;   // twips
    QString widest;  // the widest cell the column is to show whole
    int widestWidth; // twips
};

const QList<GridColumn> gridReference{
    {QStringLiteral("Client"), 500, QStringLiteral("----"), 500},
    {QStringLiteral("Name"), 950, QStringLiteral("Sergeant_Miller"), 1500},
    {QStringLiteral("Ping"), 500, QStringLiteral("999"), 500},
    {QStringLiteral("Score"), 550, QStringLiteral("-12"), 550},
    {QStringLiteral("IP"), 950, QStringLiteral("192.168.100.200:27960"), 2100},
    {QStringLiteral("Joined"), 1000, QStringLiteral("23:59:59"), 1000},
    {QStringLiteral("Status"), 550, QStringLiteral("Ok"), 550},
    {QStringLiteral("Warn"), 550, QStringLiteral("3/3"), 550},
};

// The classic frame around the client area, in pixels: 120 and 780 twips.
constexpr int frameWidth = 8;
constexpr int frameHeight = 52;

using Twips::line;
using Twips::place;

QAction *entry(QMenu *menu, QStringView name, QStringView caption, const QKeySequence &shortcut = {})
{
    QAction *a = menu->addAction(caption.toString());
    a->setObjectName(name.toString());
    a->setShortcut(shortcut);
    return a;
}

} // namespace

int MainWindowLayout::px(int twips)
{
    return Twips::px(twips);
}

MainWindowLayout::MainWindowLayout(QMainWindow &window)
    : m_window(window)
{
    auto *client = new QWidget(&window);
    client->setObjectName(QStringLiteral("client"));
    window.setCentralWidget(client);

    Line1 = line(client, u"Line1", 0, 0, 9090);
    buildFrame(client);
    buildStats(client);
    buildPaneAndGrid(client);
    buildBottom(client);
    buildMenus();
    setTabOrder();
    chooseFonts(client);

    window.resize(px(9120), px(7080) + menuBarHeight());
}

void MainWindowLayout::buildFrame(QWidget *client)
{
    Frame1 = place<QGroupBox>(client, u"Frame1", 0, 15, 5175, 1350);
    // Places inside the frame count from the frame.
    Label1 = place<QLabel>(Frame1, u"Label1", u"Server Address", 120, 120, 1455, 255);
    txtHost = place<QLineEdit>(Frame1, u"txtHost", 120, 375, 1455, 285);
    Label2 = place<QLabel>(Frame1, u"Label2", u"Port Number", 1800, 120, 1455, 255);
    txtPort = place<QLineEdit>(Frame1, u"txtPort", 1800, 375, 1455, 285);
    // Digits only, so that a slip of the finger cannot make the next send fail.
    txtPort->setValidator(new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9]{0,5}")), txtPort));
    Label3 = place<QLabel>(Frame1, u"Label3", u"Password", 3480, 120, 1215, 255);
    txtPwd = place<QLineEdit>(Frame1, u"txtPwd", 3480, 375, 1455, 285);
    txtPwd->setEchoMode(QLineEdit::Password);
    txtPwd->setStyleSheet(QStringLiteral("lineedit-password-character: 42")); // '*'
    Label4 = place<QLabel>(Frame1, u"Label4", u"Persona", 120, 705, 1335, 255);
    Label4->hide();
    cmbPersona = place<QComboBox>(Frame1, u"cmbPersona", 120, 930, 1455, 315);
    cmbPersona->setEditable(true);
    cmbPersona->addItems({QStringLiteral("Clinical"), QStringLiteral("Reserved"), QStringLiteral("Obnoxious")});
    cmbPersona->hide(); // carried, never shown
    Label5 = place<QLabel>(Frame1, u"Label5", u"Voice of.......", 1800, 705, 2535, 255);
    txtServerName = place<QLineEdit>(Frame1, u"txtServerName", 1800, 930, 3255, 285);
}

void MainWindowLayout::buildStats(QWidget *client)
{
    Label6 = place<QLabel>(client, u"Label6", u"Server Stats", 5235, 45, 2550, 225);
    Label6->setAlignment(Qt::AlignCenter);
    QPalette blue = Label6->palette();
    blue.setColor(QPalette::WindowText, Qt::blue);
    Label6->setPalette(blue);

    lblPlayers = place<QLabel>(client, u"lblPlayers", u"Players (C/T):", 5235, 315, 2700, 255);
    lblMap = place<QLabel>(client, u"lblMap", u"Map (C/T):", 5235, 580, 2700, 255);
    lblPing = place<QLabel>(client, u"lblPing", u"Ping (H/L):", 5235, 845, 2700, 255);
    lblPing2 = place<QLabel>(client, u"lblPing2", u"Ping (Avg/999):", 5235, 1110, 2700, 255);

    cmdStart = place<QPushButton>(client, u"cmdStart", u"Start", 7980, 60, 1095, 255);
    cmdStatus = place<QPushButton>(client, u"cmdStatus", u"Status", 7980, 397, 1095, 255);
    cmdServerInfo = place<QPushButton>(client, u"cmdServerInfo", u"Server Info", 7980, 734, 1095, 255);
    cmdOther = place<QPushButton>(client, u"cmdOther", u"Other", 7980, 1095, 1095, 255);
    cmdJunk = place<QPushButton>(client, u"cmdJunk", u"getStatus", 2895, 2085, 1080, 240);
    cmdJunk->setEnabled(false);
    cmdJunk->hide();
}

void MainWindowLayout::buildPaneAndGrid(QWidget *client)
{
    txtOutput = place<QPlainTextEdit>(client, u"txtOutput", 0, 1395, 9075, 1980);
    txtOutput->setLineWrapMode(QPlainTextEdit::NoWrap);
    txtOutput->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    txtOutput->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    txtOutput->setUndoRedoEnabled(false); // the pane grows by every reply
    txtOutput->setTabChangesFocus(true);     // Tab goes on to the next control, as in every box
    QPalette pal = txtOutput->palette();
    pal.setColor(QPalette::Base, Qt::black);
    pal.setColor(QPalette::Text, Qt::yellow);
    txtOutput->setPalette(pal);
    QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    // Named first, since not every monospace font a system offers declares its fixed pitch.
    fixed.setFamilies({QStringLiteral("Courier New"), QStringLiteral("DejaVu Sans Mono"),
                       QStringLiteral("Liberation Mono"), QStringLiteral("Noto Mono"), fixed.family()});
    fixed.setStyleHint(QFont::TypeWriter);
    fixed.setPointSizeF(9.75);
    txtOutput->setFont(fixed);

    gridPlayers = place<QTableWidget>(client, u"gridPlayers", 15, 3405, 9060, 2835);
    gridPlayers->setColumnCount(8);
    gridPlayers->setHorizontalHeaderLabels(QStringList(8, QString()));
    gridPlayers->setEditTriggers(QAbstractItemView::NoEditTriggers);
    gridPlayers->setSelectionBehavior(QAbstractItemView::SelectRows);
    gridPlayers->setSelectionMode(QAbstractItemView::SingleSelection);
    gridPlayers->setTabKeyNavigation(false); // Tab leaves the grid rather than walking its cells
    gridPlayers->verticalHeader()->hide();
    gridPlayers->verticalHeader()->setMinimumSectionSize(px(240));
    gridPlayers->verticalHeader()->setDefaultSectionSize(px(240));
    gridPlayers->horizontalHeader()->setHighlightSections(false);
}

void MainWindowLayout::buildBottom(QWidget *client)
{
    cmdKick = place<QPushButton>(client, u"cmdKick", u"Kick", 60, 6315, 1290, 255);
    cmdKickBan = place<QPushButton>(client, u"cmdKickBan", u"Kick and Ban", 1425, 6315, 1290, 255);
    txtSay = place<QLineEdit>(client, u"txtSay", 2790, 6315, 5055, 315);
    cmdSay = place<QPushButton>(client, u"cmdSay", u"Say", 7980, 6315, 1095, 255);
    Line2 = line(client, u"Line2", 30, 6705, 9045);

    pbarCheck = place<QProgressBar>(client, u"pbarCheck", 75, 6795, 3675, 225);
    pbarCheck->setRange(0, 100);
    pbarCheck->setValue(0);
    pbarCheck->setTextVisible(false);
    lblResponseTime = place<QLabel>(client, u"lblResponseTime", u"0 ms", 3855, 6795, 750, 210);
    lblResponseTime->setAlignment(Qt::AlignCenter);
    chkTray = place<QCheckBox>(client, u"chkTray", u"Minimize to Tray", 4740, 6795, 1530, 210);
    chkSettings = place<QCheckBox>(client, u"chkSettings", u"Save Settings", 6450, 6795, 1455, 255);
    cmdQuit = place<QPushButton>(client, u"cmdQuit", u"Quit", 7980, 6795, 1095, 255);
}

void MainWindowLayout::chooseFonts(QWidget *client)
{
    const QList<QFont> fonts = FittingFont::candidates(client->font());

    QList<QWidget *> captioned;
    const QList<QWidget *> controls = client->findChildren<QWidget *>();
    for (QWidget *control : controls) {
        if (!control->isHidden() && !FittingFont::caption(control).isEmpty())
            captioned.append(control);
    }
    client->setFont(FittingFont::choose(fonts, [&](const QFont &font) {
        return FittingFont::captionsFit(captioned, font);
    }));

    QFont underlined = Label6->font();
    underlined.setUnderline(true);
    Label6->setFont(underlined);

    // The grid: its header words in their base widths, and a row as wide as the columns'
    // rule allows: a name of 15 characters and an address of 21 at 100 twips a character.
    const QStyle *style = gridPlayers->style();
    const int cellMargin = 2 * (style->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, gridPlayers) + 1);
    const int headerMargin = 2 * style->pixelMetric(QStyle::PM_HeaderMargin, nullptr, gridPlayers);
    gridPlayers->setFont(FittingFont::choose(fonts, [&](const QFont &font) {
        const QFontMetrics m(font);
        for (qsizetype c = 0; c < gridReference.size(); ++c) {
            const GridColumn &column = gridReference.at(c);
            if (m.horizontalAdvance(column.header) + headerMargin > px(column.baseWidth)
                || m.horizontalAdvance(column.widest) + cellMargin > px(column.widestWidth))
                return false;
        }
        return true;
    }));
}

void MainWindowLayout::buildMenus()
{
    QMenuBar *bar = m_window.menuBar();
    mnuFile = bar->addMenu(QStringLiteral("&File"));
    mnuFile->setObjectName(QStringLiteral("mnuFile"));
    mnuExit = entry(mnuFile, u"mnuExit", u"Exit", Qt::CTRL | Qt::Key_E);

    mnuOptions = bar->addMenu(QStringLiteral("&Options"));
    mnuOptions->setObjectName(QStringLiteral("mnuOptions"));
    mnuAnnounce = entry(mnuOptions, u"mnuAnnounce", u"Announcement", Qt::CTRL | Qt::Key_A);
    mnuTolerance = entry(mnuOptions, u"mnuTolerance", u"Tolerances", Qt::CTRL | Qt::Key_T);
    mnuSettings = entry(mnuOptions, u"mnuSettings", u"Settings", Qt::CTRL | Qt::Key_G);

    mnuCommands = bar->addMenu(QStringLiteral("Commands"));
    mnuCommands->setObjectName(QStringLiteral("mnuCommands"));
    mnuStatus = entry(mnuCommands, u"mnuStatus", u"Status", Qt::CTRL | Qt::Key_S);
    mnuServerInfo = entry(mnuCommands, u"mnuServerInfo", u"Server Info", Qt::CTRL | Qt::Key_I);
    mnuOther = entry(mnuCommands, u"mnuOther", u"Other....", Qt::CTRL | Qt::Key_O);
    mnuKick = entry(mnuCommands, u"mnuKick", u"Kick", Qt::CTRL | Qt::Key_K);
    mnuKickBan = entry(mnuCommands, u"mnuKickBan", u"Kick && Ban", Qt::CTRL | Qt::Key_B); // shows "Kick & Ban"

    mnuHelp = bar->addMenu(QStringLiteral("Help"));
    mnuHelp->setObjectName(QStringLiteral("mnuHelp"));
    mnuAbout = entry(mnuHelp, u"mnuAbout", u"About");
}

void MainWindowLayout::setTabOrder()
{
    const QList<QWidget *> order{txtHost,  txtPort,   txtPwd,        cmdStatus, cmdServerInfo, cmdOther,
                                 cmdQuit,  txtOutput, txtServerName, cmdStart,  chkSettings,   gridPlayers,
                                 cmdKick,  cmdKickBan, chkTray,      txtSay,    cmdSay};
    for (qsizetype i = 1; i < order.size(); ++i)
        QWidget::setTabOrder(order.at(i - 1), order.at(i));
}

int MainWindowLayout::menuBarHeight() const
{
    const QMenuBar *bar = m_window.menuBar();
    return bar->isNativeMenuBar() ? 0 : bar->sizeHint().height();
}

QSize MainWindowLayout::outerSize() const
{
    return {twips(m_window.width() + frameWidth), twips(m_window.height() - menuBarHeight() + frameHeight)};
}

void MainWindowLayout::setOuterWidth(int widthTwips)
{
    m_window.resize(px(widthTwips) - frameWidth, m_window.height());
}

void MainWindowLayout::setOuterHeight(int heightTwips)
{
    m_window.resize(m_window.width(), px(heightTwips) - frameHeight + menuBarHeight());
}

void MainWindowLayout::noteMeasures()
{
    const QSize outer = outerSize();
    m_baseWidth = outer.width();
    m_baseHeight = outer.height();
    m_outputWidth = twips(txtOutput->width());
    m_gridWidth = twips(gridPlayers->width());
    m_gridHeight = twips(gridPlayers->height());
    m_kickTop = twips(cmdKick->y());
    m_quitTop = twips(cmdQuit->y());
    m_line2Y = twips(Line2->y());
}

void MainWindowLayout::follow(int dW, int dH)
{
    txtOutput->resize(qMax(0, px(m_outputWidth + dW)), txtOutput->height());
    gridPlayers->resize(qMax(0, px(m_gridWidth + dW)), gridPlayers->height());
    if (dH < 0)
        return; // below the base height the bottom rows stay and may fall out of sight
    gridPlayers->resize(gridPlayers->width(), px(m_gridHeight + dH));
    const QList<QWidget *> kickRow{cmdKick, cmdKickBan, txtSay, cmdSay};
    for (QWidget *w : kickRow)
        w->move(w->x(), px(m_kickTop + dH));
    Line2->move(Line2->x(), px(m_line2Y + dH));
    const QList<QWidget *> bottomRow{pbarCheck, lblResponseTime, cmdQuit, chkTray, chkSettings};
    for (QWidget *w : bottomRow)
        w->move(w->x(), px(m_quitTop + dH));
}
