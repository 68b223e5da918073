// SPDX-License-Identifier: MIT
#pragma once

#include "core/View.h"

#include <QMainWindow>

#include <functional>
#include <memory>

class Engine;
class MainWindowLayout;
class PaneMirror;
class Prompts;
class TrayIcon;

// frmMain: the program's one permanent window. It is the View the engine is built with,
// shows what the engine shows, and hands the operator's clicks to it. Build the window,
// then the engine with it as View, then attach() the engine. Once the window has closed,
// the engine may go before it.
class frmMain : public QMainWindow, public View
{
    Q_OBJECT
public:
    // Window state codes, as WinState stores them.
    enum StateCode { stateNormal = 0, stateMinimized = 1, stateMaximized = 2 };

    explicit frmMain(Prompts &prompts, QWidget *parent = nullptr);
    ~frmMain() override;

    // Once, before the window is shown.
    void attach(Engine &engine);

    TrayIcon &sysTray() { return *m_tray; }

    // View
    void paneAppended(const QString &text) override;
    void paneCleared() override;
    void paneCursorToEnd() override;
    QString fieldText(Field field) const override;
    void setFieldText(Field field, const QString &text) override;
    void setLabel(Label label, const QString &text) override;
    void setStartCaption(const QString &caption) override;
    using QMainWindow::setEnabled;
    void setEnabled(Control control, bool enabled) override;
    void setSettingsTicked(bool ticked) override;
    void setTrayTicked(bool ticked) override;
    void showGrid(const GridView &grid) override;
    int gridCurrentRow() const override;
    qint32 gridRowData(int row) const override;
    void setProgress(int minimum, int maximum, int value) override;
    void setTrayTip(const QString &tip) override;
    void setTrayFlashing(bool flashing) override;
    void setTrayShown(bool shown) override;
    void applyWindowLayout() override;
    int windowState() const override;
    void messageBox(const QString &text) override;
    bool question(const QString &text) override;

    // The state before the latest resize: what the tray brings back.
    int lastState() const { return m_lastState; }

    // The tray icon's event.
    void sysTray_Click();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void connectControls();
    void connectActions();
    void connectFields();
    void letMenuShortcutsWin();
    void run(const QString &routine, const std::function<void()> &handler);

    void Form_Resize();
    void cmdServerInfo_Click();
    void cmdSay_Click();
    void chkTray_Click(bool ticked);
    void txtPort_Change(const QString &text);
    bool otherWindowOpen() const;

    void mnuOther_Click();
    void mnuAnnounce_Click();
    void mnuTolerance_Click();
    void mnuSettings_Click();
    void mnuAbout_Click();

    Prompts &m_prompts;
    std::unique_ptr<MainWindowLayout> m_ui;
    Engine *m_engine = nullptr;
    TrayIcon *m_tray;
    PaneMirror *m_pane = nullptr;
    int m_seenState = stateNormal;
    int m_lastState = stateNormal;
    bool m_closing = false;
};

using MainWindow = frmMain;
