// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

// What the engine shows in the grid: the engine computes it, the window only draws it.
struct GridView
{
    struct Row
    {
        QStringList cells;  // eight cells, or empty cells for the two blank rows
        qint32 playerNumber = 0; // hidden row data: the number in currentPlayers, 0 for none
    };
    QStringList header;
    QList<Row> rows;        // below the header
    QList<qint32> columnWidths; // twips
};

// The one way from the engine to the window's controls. The main window implements
// it; tests use a headless implementation. It holds no logic.
class View
{
public:
    enum class Control {
        cmdStatus, cmdServerInfo, cmdOther, cmdKick, cmdKickBan, cmdSay, txtSay,
        mnuStatus, mnuServerInfo, mnuOther, mnuOptions,
    };
    enum class Label { lblResponseTime, lblPlayers, lblPing, lblPing2, lblMap };
    enum class Field { txtHost, txtPort, txtPwd, txtServerName, txtSay };

    virtual ~View() = default;

    // The output pane. The engine keeps the text; these mirror it on screen.
    virtual void paneAppended(const QString &text) = 0;
    virtual void paneCleared() = 0;
    virtual void paneCursorToEnd() = 0;

    virtual QString fieldText(Field field) const = 0;
    virtual void setFieldText(Field field, const QString &text) = 0;
    virtual void setLabel(Label label, const QString &text) = 0;
    virtual void setStartCaption(const QString &caption) = 0;
    virtual void setEnabled(Control control, bool enabled) = 0;
    virtual void setSettingsTicked(bool ticked) = 0;
    virtual void setTrayTicked(bool ticked) = 0;

    virtual void showGrid(const GridView &grid) = 0;
    // The grid's current row as the grid counts it: 0 is the header, players from 1.
    virtual int gridCurrentRow() const = 0;
    // The hidden row data of a grid row (the number in currentPlayers), 0 for none.
    virtual qint32 gridRowData(int row) const = 0;
    virtual void setProgress(int minimum, int maximum, int value) = 0;

    virtual void setTrayTip(const QString &tip) = 0;
    virtual void setTrayFlashing(bool flashing) = 0;
    virtual void setTrayShown(bool shown) = 0;

    // Window layout and state at load and at the orderly stop.
    virtual void applyWindowLayout() = 0;
    virtual int windowState() const = 0;

    // Modal boxes: one OK button, or Yes and No (true for Yes).
    virtual void messageBox(const QString &text) = 0;
    virtual bool question(const QString &text) = 0;
};
