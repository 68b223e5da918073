// SPDX-License-Identifier: MIT
#pragma once

#include "core/View.h"

#include <QHash>
#include <QList>
#include <QStringList>

#include <functional>

// The window for tests: it keeps what the engine shows and answers questions from a
// queue of prepared answers (No when none is left).
class HeadlessView final : public View
{
public:
    void paneAppended(const QString &text) override { pane += text; }
    void paneCleared() override { pane.clear(); ++paneClears; }
    void paneCursorToEnd() override { ++cursorMoves; }

    QString fieldText(Field field) const override { return fields.value(field); }
    void setFieldText(Field field, const QString &text) override { fields[field] = text; }
    void setLabel(Label label, const QString &text) override { labels[label] = text; }
    void setStartCaption(const QString &caption) override { startCaption = caption; }
    void setEnabled(Control control, bool enabled) override;
    void setSettingsTicked(bool ticked) override { settingsTicked = ticked; }
    void setTrayTicked(bool ticked) override { trayTicked = ticked; }

    void showGrid(const GridView &g) override { grid = g; ++gridShows; }
    int gridCurrentRow() const override { return currentRow; }
    qint32 gridRowData(int row) const override
    {
        return row >= 1 && row <= grid.rows.size() ? grid.rows.at(row - 1).playerNumber : 0;
    }
    void setProgress(int minimum, int maximum, int value) override;

    void setTrayTip(const QString &tip) override { trayTip = tip; }
    void setTrayFlashing(bool flashing) override { trayFlashing = flashing; }
    void setTrayShown(bool shown) override { trayShown = shown; }

    void applyWindowLayout() override { ++layoutApplied; }
    int windowState() const override { return state; }

    void messageBox(const QString &text) override;
    bool question(const QString &text) override;

    QString pane;
    int paneClears = 0;
    int cursorMoves = 0;
    QHash<Field, QString> fields;
    QHash<Label, QString> labels;
    QString startCaption;
    QHash<Control, bool> enabled;
    QList<QPair<Control, bool>> enableLog;
    bool settingsTicked = false;
    bool trayTicked = false;
    GridView grid;
    int gridShows = 0;
    int currentRow = -1;
    int progressMin = 0, progressMax = 0, progressValue = 0;
    QString trayTip;
    bool trayFlashing = false;
    bool trayShown = false;
    int layoutApplied = 0;
    int state = 0;
    QStringList boxes;
    QStringList questions;
    QList<bool> answers;
    std::function<void(const QString &)> onBox; // runs inside messageBox, e.g. to inspect state
};
