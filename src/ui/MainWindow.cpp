// SPDX-License-Identifier: MIT
#include "ui/MainWindow.h"

#include "core/RuntimeError.h"
#include "core/Text.h"
#include "enforcement/OperatorActions.h"
#include "engine/Engine.h"
#include "link/RconLink.h"
#include "ui/AboutDialog.h"
#include "ui/AnnounceDialog.h"
#include "ui/MainWindowLayout.h"
#include "ui/OtherCommandDialog.h"
#include "ui/PaneMirror.h"
#include "ui/Prompts.h"
#include "ui/SettingsDialog.h"
#include "ui/ToleranceDialog.h"
#include "ui/TrayIcon.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QHash>
#include <QLabel>
#include <QLineEdit>
#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTableWidget>
#include <QTimer>

#include <algorithm>

namespace {

Qt::WindowState qtState(int code)
{
    switch (code) {
    case frmMain::stateMinimized:
        return Qt::WindowMinimized;
    case frmMain::stateMaximized:
        return Qt::WindowMaximized;
    default:
        return Qt::WindowNoState;
    }
}

} // namespace

frmMain::frmMain(Prompts &prompts, QWidget *parent)
    : QMainWindow(parent)
    , m_prompts(prompts)
    , m_ui(std::make_unique<MainWindowLayout>(*this))
    , m_tray(new TrayIcon(this))
{
    setObjectName(QStringLiteral("frmMain"));
    setWindowTitle(QStringLiteral("Harl Dunmere's Quorvane"));
    setWindowIcon(m_tray->icon());
    m_ui->noteMeasures();
    letMenuShortcutsWin();
}

void frmMain::attach(Engine &engine)
{
    m_engine = &engine;
    m_pane = new PaneMirror(*m_ui->txtOutput, engine.pane(), this);
    connectControls();
    connectActions();
    connectFields();
}

frmMain::~frmMain()
{
    // The mirror writes into the engine's pane; it goes before any event could reach it.
    delete m_pane;
}

void frmMain::run(const QString &routine, const std::function<void()> &handler)
{
    m_engine->errors().guarded(routine, handler);
}

void frmMain::connectControls()
{
    MainWindowLayout &ui = *m_ui;
    connect(ui.cmdStart, &QPushButton::clicked, this,
            [this] { run(QStringLiteral("cmdStart_Click"), [this] { m_engine->cmdStart_Click(); }); });
    const auto status = [this] { run(QStringLiteral("mnuStatus_Click"), [this] { m_engine->mnuStatus_Click(); }); };
    connect(ui.cmdStatus, &QPushButton::clicked, this, status);
    connect(ui.mnuStatus, &QAction::triggered, this, status);
    const auto serverInfo = [this] { run(QStringLiteral("cmdServerInfo_Click"), [this] { cmdServerInfo_Click(); }); };
    connect(ui.cmdServerInfo, &QPushButton::clicked, this, serverInfo);
    connect(ui.mnuServerInfo, &QAction::triggered, this, serverInfo);
    const auto say = [this] { run(QStringLiteral("cmdSay_Click"), [this] { cmdSay_Click(); }); };
    connect(ui.cmdSay, &QPushButton::clicked, this, say);
    connect(ui.txtSay, &QLineEdit::returnPressed, this, say); // Enter, on key down
    connect(ui.cmdQuit, &QPushButton::clicked, this, &QWidget::close);
    connect(ui.mnuExit, &QAction::triggered, this, &QWidget::close);
    connect(ui.chkSettings, &QCheckBox::toggled, this, [this](bool ticked) { m_engine->chkSettings_Click(ticked); });
    connect(ui.chkTray, &QCheckBox::toggled, this, &frmMain::chkTray_Click);
    connect(m_tray, &TrayIcon::activated, this,
            [this] { run(QStringLiteral("sysTray_Click"), [this] { sysTray_Click(); }); });
    // An orderly stop begun elsewhere still closes the window.
    connect(m_engine, &Engine::finished, this, [this] {
        if (!m_closing)
            close();
    });
}

void frmMain::connectActions()
{
    MainWindowLayout &ui = *m_ui;
    const auto kick = [this] { run(QStringLiteral("cmdKick_Click"), [this] { m_engine->actions().cmdKick_Click(); }); };
    connect(ui.cmdKick, &QPushButton::clicked, this, kick);
    connect(ui.mnuKick, &QAction::triggered, this, kick);
    const auto kickBan = [this] {
        run(QStringLiteral("cmdKickBan_Click"), [this] { m_engine->actions().cmdKickBan_Click(); });
    };
    connect(ui.cmdKickBan, &QPushButton::clicked, this, kickBan);
    connect(ui.mnuKickBan, &QAction::triggered, this, kickBan);
    connect(ui.cmdOther, &QPushButton::clicked, this, &frmMain::mnuOther_Click);
    connect(ui.mnuOther, &QAction::triggered, this, &frmMain::mnuOther_Click);
    connect(ui.mnuAnnounce, &QAction::triggered, this, &frmMain::mnuAnnounce_Click);
    connect(ui.mnuTolerance, &QAction::triggered, this, &frmMain::mnuTolerance_Click);
    connect(ui.mnuSettings, &QAction::triggered, this, &frmMain::mnuSettings_Click);
    connect(ui.mnuAbout, &QAction::triggered, this, &frmMain::mnuAbout_Click);
}

void frmMain::connectFields()
{
    Settings &s = m_engine->settings;
    connect(m_ui->txtHost, &QLineEdit::textChanged, this, [&s](const QString &text) { s.Host = text; });
    connect(m_ui->txtPwd, &QLineEdit::textChanged, this, [&s](const QString &text) { s.Pwd = text; });
    connect(m_ui->txtServerName, &QLineEdit::textChanged, this, [&s](const QString &text) { s.Voice = text; });
    connect(m_ui->txtPort, &QLineEdit::textChanged, this, &frmMain::txtPort_Change);
}

void frmMain::letMenuShortcutsWin()
{
    const QList<QWidget *> controls = findChildren<QWidget *>();
    for (QWidget *control : controls)
        control->installEventFilter(this);
}

bool frmMain::eventFilter(QObject *watched, QEvent *event)
{
    // Text boxes claim keys such as Ctrl+A and Ctrl+E for their own editing; the menu's
    // shortcuts come first from every control of the window, as long as their entry is on.
    if (event->type() == QEvent::ShortcutOverride) {
        const QKeySequence pressed(static_cast<QKeyEvent *>(event)->keyCombination());
        const QList<QAction *> entries = menuBar()->findChildren<QAction *>();
        for (const QAction *entry : entries) {
            if (entry->isEnabled() && !entry->shortcut().isEmpty() && entry->shortcut() == pressed) {
                event->ignore();
                return true;
            }
        }
    }
    return QMainWindow::eventFilter(watched, event);
}

void frmMain::txtPort_Change(const QString &text)
{
    // Port is a 32-bit number and the box takes any typing. Text that is no such number
    // (empty, letters, out of range) leaves the setting as it was; fieldText() still
    // gives the box as it stands, and every send reads the box afresh.
    if (!Text::isNumeric(text))
        return;
    try {
        m_engine->settings.Port = Text::toInt32(text);
    } catch (const RuntimeError &) {
    }
}

void frmMain::cmdServerInfo_Click()
{
    m_engine->link().UDPClient_SendMessage(QStringLiteral("serverinfo"), true, true);
}

void frmMain::cmdSay_Click()
{
    const QString words = Text::trimBlanks(m_ui->txtSay->text());
    m_engine->link().UDPClient_SendMessage(QStringLiteral("say ") + words, true, true);
    m_ui->txtSay->clear();
}

// The dialogs open modally; the timers go on while they are open.
void frmMain::mnuOther_Click()
{
    frmOther dialog(m_engine->actions(), m_engine->errors(), m_prompts, this);
    dialog.exec();
}

void frmMain::mnuAnnounce_Click()
{
    Engine &e = *m_engine;
    frmAnnounce dialog(e.settings, e.lists(), e.announcer(), e, e.errors(), m_prompts, this);
    dialog.exec();
}

void frmMain::mnuTolerance_Click()
{
    Engine &e = *m_engine;
    frmTolerance dialog(e.settings, e.lists(), e.timKickcheck(), e.errors(), m_prompts, this);
    dialog.exec();
}

void frmMain::mnuSettings_Click()
{
    frmSettings dialog(m_engine->settings, m_engine->log(), m_engine->errors(), m_prompts, this);
    dialog.exec();
}

void frmMain::mnuAbout_Click()
{
    frmAbout dialog(m_engine->errors(), m_prompts, this);
    dialog.exec();
}

void frmMain::chkTray_Click(bool ticked)
{
    m_engine->settings.SysTray = ticked;
    m_tray->setShown(ticked);
}

// --- the pane, fields and labels

void frmMain::paneAppended(const QString &text)
{
    m_pane->append(text);
}

void frmMain::paneCleared()
{
    m_pane->clear();
}

void frmMain::paneCursorToEnd()
{
    m_pane->cursorToEnd();
}

namespace {

QLineEdit *fieldBox(const MainWindowLayout &ui, View::Field field)
{
    switch (field) {
    case View::Field::txtHost:
        return ui.txtHost;
    case View::Field::txtPort:
        return ui.txtPort;
    case View::Field::txtPwd:
        return ui.txtPwd;
    case View::Field::txtServerName:
        return ui.txtServerName;
    case View::Field::txtSay:
        return ui.txtSay;
    }
    return nullptr;
}

QLabel *labelOf(const MainWindowLayout &ui, View::Label label)
{
    switch (label) {
    case View::Label::lblResponseTime:
        return ui.lblResponseTime;
    case View::Label::lblPlayers:
        return ui.lblPlayers;
    case View::Label::lblPing:
        return ui.lblPing;
    case View::Label::lblPing2:
        return ui.lblPing2;
    case View::Label::lblMap:
        return ui.lblMap;
    }
    return nullptr;
}

} // namespace

QString frmMain::fieldText(Field field) const
{
    return fieldBox(*m_ui, field)->text();
}

void frmMain::setFieldText(Field field, const QString &text)
{
    fieldBox(*m_ui, field)->setText(text);
}

void frmMain::setLabel(Label label, const QString &text)
{
    labelOf(*m_ui, label)->setText(text);
}

void frmMain::setStartCaption(const QString &caption)
{
    m_ui->cmdStart->setText(caption);
}

void frmMain::setEnabled(Control control, bool enabled)
{
    MainWindowLayout &ui = *m_ui;
    if (control == Control::mnuOptions) {
        // The entries go too: their shortcuts would open the dialogs past a greyed menu.
        ui.mnuOptions->menuAction()->setEnabled(enabled);
        for (QAction *entry : ui.mnuOptions->actions())
            entry->setEnabled(enabled);
        return;
    }
    const QHash<Control, QAction *> entries{{Control::mnuStatus, ui.mnuStatus},
                                            {Control::mnuServerInfo, ui.mnuServerInfo},
                                            {Control::mnuOther, ui.mnuOther}};
    if (QAction *entry = entries.value(control)) {
        entry->setEnabled(enabled);
        return;
    }
    const QHash<Control, QWidget *> widgets{{Control::cmdStatus, ui.cmdStatus},
                                            {Control::cmdServerInfo, ui.cmdServerInfo},
                                            {Control::cmdOther, ui.cmdOther},
                                            {Control::cmdKick, ui.cmdKick},
                                            {Control::cmdKickBan, ui.cmdKickBan},
                                            {Control::cmdSay, ui.cmdSay},
                                            {Control::txtSay, ui.txtSay}};
    widgets.value(control)->setEnabled(enabled);
}

void frmMain::setSettingsTicked(bool ticked)
{
    m_ui->chkSettings->setChecked(ticked);
}

void frmMain::setTrayTicked(bool ticked)
{
    m_ui->chkTray->setChecked(ticked);
}

void frmMain::setProgress(int minimum, int maximum, int value)
{
    m_ui->pbarCheck->setRange(minimum, maximum);
    m_ui->pbarCheck->setValue(qBound(minimum, value, maximum));
}

// --- the grid

void frmMain::showGrid(const GridView &grid)
{
    QTableWidget *t = m_ui->gridPlayers;
    t->setUpdatesEnabled(false);
    t->setRowCount(0); // the operator's selection does not survive a refresh
    t->setColumnCount(static_cast<int>(grid.header.size()));
    t->setHorizontalHeaderLabels(grid.header);
    t->setRowCount(static_cast<int>(grid.rows.size()));
    for (int r = 0; r < grid.rows.size(); ++r) {
        const GridView::Row &row = grid.rows.at(r);
        for (int c = 0; c < t->columnCount(); ++c) {
            auto *item = new QTableWidgetItem(row.cells.value(c));
            item->setTextAlignment(c == 1 ? Qt::AlignLeft | Qt::AlignVCenter : Qt::AlignCenter);
            if (c == 0)
                item->setData(Qt::UserRole, row.playerNumber);
            t->setItem(r, c, item);
        }
    }
    for (int c = 0; c < grid.columnWidths.size() && c < t->columnCount(); ++c)
        t->setColumnWidth(c, MainWindowLayout::px(grid.columnWidths.at(c)));
    t->setUpdatesEnabled(true);
}

int frmMain::gridCurrentRow() const
{
    // Only a row the operator sees marked counts: focus alone can make a row current
    // without marking it, and a kick must not fall on a row nobody chose.
    const QTableWidget *t = m_ui->gridPlayers;
    const int row = t->currentRow();
    return row >= 0 && t->selectionModel()->isRowSelected(row, QModelIndex()) ? row + 1 : -1;
}

qint32 frmMain::gridRowData(int row) const
{
    const QTableWidget *t = m_ui->gridPlayers;
    if (row < 1 || row > t->rowCount())
        return 0;
    const QTableWidgetItem *item = t->item(row - 1, 0);
    return item ? item->data(Qt::UserRole).toInt() : 0;
}

// --- the tray

void frmMain::setTrayTip(const QString &tip)
{
    m_tray->setToolTip(tip);
}

void frmMain::setTrayFlashing(bool flashing)
{
    m_tray->setFlashEnabled(flashing);
}

void frmMain::setTrayShown(bool shown)
{
    m_tray->setShown(shown);
}

bool frmMain::otherWindowOpen() const
{
    // The program's other windows are dialogs and boxes. Plain top-level widgets do not
    // count: the tray's own fallback window on some desktops is one.
    const QWidgetList windows = QApplication::topLevelWidgets();
    return std::any_of(windows.cbegin(), windows.cend(), [this](const QWidget *w) {
        return w != this && w->isVisible() && (w->windowType() == Qt::Dialog || w->isModal());
    });
}

void frmMain::sysTray_Click()
{
    if (isVisible()) {
        if (otherWindowOpen()) {
            messageBox(QStringLiteral("Please return to the main window before minimizing"));
            return;
        }
        setWindowState(Qt::WindowMinimized);
        return;
    }
    // A window put away while minimised comes back normal, never as an icon again.
    setWindowState(qtState(m_lastState == stateMinimized ? stateNormal : m_lastState));
    show();
    raise();
    activateWindow();
}

// --- size and state

int frmMain::windowState() const
{
    const Qt::WindowStates s = QWidget::windowState();
    // A minimised window can keep its maximised flag; minimised wins.
    if (s & Qt::WindowMinimized)
        return stateMinimized;
    if (s & Qt::WindowMaximized)
        return stateMaximized;
    return stateNormal;
}

void frmMain::applyWindowLayout()
{
    Settings &s = m_engine->settings;
    m_ui->noteMeasures();
    // Setting the width runs the resize handler, which rewrites both settings from the
    // present size; the height is kept aside and put back before it is applied.
    const qint32 height = s.WinHeight;
    m_ui->setOuterWidth(s.WinWidth);
    s.WinHeight = height;
    m_ui->setOuterHeight(s.WinHeight);
    setWindowState(qtState(s.WinState));
    m_lastState = windowState();
}

void frmMain::Form_Resize()
{
    Settings &s = m_engine->settings;
    const int state = windowState();
    if (state == stateMinimized) {
        // Hidden a moment later: some window managers lose an icon hidden mid-change.
        // Without a tray to click there would be no way back, so the window stays.
        if (s.SysTray && TrayIcon::trayAvailable())
            QTimer::singleShot(0, this, [this] {
                if (windowState() == stateMinimized && m_engine->settings.SysTray)
                    hide();
            });
    } else {
        const QSize outer = m_ui->outerSize();
        s.WinWidth = outer.width();
        s.WinHeight = outer.height();
        const QSize base = m_ui->baseSize();
        m_ui->follow(outer.width() - base.width(), outer.height() - base.height());
    }
    m_lastState = m_seenState;
    m_seenState = state;
}

void frmMain::resizeEvent(QResizeEvent *event)
{
    QMainWindow::resizeEvent(event);
    // A minimised window has had its resize with the change of state.
    if (windowState() != stateMinimized)
        Form_Resize();
}

void frmMain::changeEvent(QEvent *event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange)
        Form_Resize();
}

// --- boxes and the end

void frmMain::messageBox(const QString &text)
{
    m_prompts.information(this, text);
}

bool frmMain::question(const QString &text)
{
    return m_prompts.question(this, text);
}

void frmMain::closeEvent(QCloseEvent *event)
{
    if (m_closing) {
        event->ignore(); // the orderly stop is under way; the close that began it ends it
        return;
    }
    m_closing = true;
    if (!m_engine->unloaded())
        run(QStringLiteral("Form_Unload"), [this] { m_engine->Form_Unload(); });
    event->accept();
    // Quitting ends every event loop, also those of waits that the close ran inside.
    QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
}
