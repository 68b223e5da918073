// SPDX-License-Identifier: MIT
#pragma once

#include <QSize>

class QAction;
class QCheckBox;
class QComboBox;
class QFrame;
class QGroupBox;
class QLabel;
class QLineEdit;
class QMainWindow;
class QMenu;
class QPlainTextEdit;
class QProgressBar;
class QPushButton;
class QTableWidget;
class QWidget;

// The controls of the main window at their places, and the rule by which they follow
// the window's size. Places are kept in twips, 15 to the pixel, as they were drawn.
// The members carry the controls' names; each control's object name is the same.
class MainWindowLayout
{
public:
    static constexpr int twipsPerPixel = 15;
    static int px(int twips);
    static int twips(int pixels) { return pixels * twipsPerPixel; }

    // Builds every control and menu on `window`.
    explicit MainWindowLayout(QMainWindow &window);

    // The window's outer size in twips. The frame is counted as the classic 120 by 780
    // twips (borders, caption and menu bar) whatever the window manager draws, so that a
    // stored 9240 by 7860 gives the drawn client area of 9120 by 7080, and a size reads
    // back exactly as it was applied.
    QSize outerSize() const;
    void setOuterWidth(int widthTwips);
    void setOuterHeight(int heightTwips);

    // The measures the resize rule starts from, taken as the controls stand now.
    void noteMeasures();
    QSize baseSize() const { return {m_baseWidth, m_baseHeight}; }
    // Widths follow dW both ways; the grid takes dH and the bottom rows move by it, but
    // only when dH >= 0. Both in twips.
    void follow(int dW, int dH);

    QFrame *Line1, *Line2;
    QGroupBox *Frame1;
    QLabel *Label1, *Label2, *Label3, *Label4, *Label5, *Label6;
    QLineEdit *txtHost, *txtPort, *txtPwd, *txtServerName, *txtSay;
    QComboBox *cmbPersona;
    QLabel *lblPlayers, *lblMap, *lblPing, *lblPing2, *lblResponseTime;
    QPushButton *cmdStart, *cmdStatus, *cmdServerInfo, *cmdOther, *cmdJunk;
    QPushButton *cmdKick, *cmdKickBan, *cmdSay, *cmdQuit;
    QPlainTextEdit *txtOutput;
    QTableWidget *gridPlayers;
    QProgressBar *pbarCheck;
    QCheckBox *chkTray, *chkSettings;

    QMenu *mnuFile, *mnuOptions, *mnuCommands, *mnuHelp;
    QAction *mnuExit;
    QAction *mnuAnnounce, *mnuTolerance, *mnuSettings;
    QAction *mnuStatus, *mnuServerInfo, *mnuOther, *mnuKick, *mnuKickBan;
    QAction *mnuAbout;

private:
    void buildFrame(QWidget *client);
    void buildStats(QWidget *client);
    void buildPaneAndGrid(QWidget *client);
    void buildBottom(QWidget *client);
    void buildMenus();
    void setTabOrder();
    void chooseFonts(QWidget *client);
    int menuBarHeight() const;

    QMainWindow &m_window;
    int m_baseWidth = 0;
    int m_baseHeight = 0;
    int m_outputWidth = 0;
    int m_gridWidth = 0;
    int m_gridHeight = 0;
    int m_kickTop = 0;
    int m_quitTop = 0;
    int m_line2Y = 0; // Line2 lies level: both of its ends share this Y
};
