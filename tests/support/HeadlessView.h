// SPDX-License-Identifier: MIT
#pragma once

#include "core/View.h"

#include <QHash>
#include <QList>
#include <QStringList>

// The window for tests: it keeps what the engine shows and answers questions from a
// queue of prepared answers (No when none is left).
class HeadlessView final : public View
{
public:
    void paneAppended(const QString &text) override { pane += text; }
    void paneCleared() override { pane.clear(); }
    void paneCursorToEnd() override { ++cursorMoves; }

    QString fieldText(Field field) const override { return fields.value(field); }
    void setFieldText(Field field, const QString &text) override { fields[field] = text; }
    void setLabel(Label label, const QString &text) override { labels[label] = text; }
    void setStartCaption(const QString &caption) override { startCaption = caption; }
    void setEnabled(Control control, bool on) override
    {
        enabled[control] = on;
        enableLog.append({control, on});
    }
    void setSettingsTicked(bool) override {}
    void setTrayTicked(bool) override {}

    void showGrid(const GridView &g) override { grid = g; }
    int gridCurrentRow() const override { return -1; }
    qint32 gridRowData(int row) const override
    {
        return row >= 1 && row <= grid.rows.size() ? grid.rows.at(row - 1).playerNumber : 0;
    }
    void setProgress(int, int maximum, int value) override { progressMax = maximum, progressValue = value; }

    void setTrayTip(const QString &tip) override { trayTip = tip; }
    void setTrayFlashing(bool flashing) override { trayFlashing = flashing; }
    void setTrayShown(bool) override {}

    void applyWindowLayout() override {}
    int windowState() const override { return state; }

    void messageBox(const QString &text) override { boxes.append(text); }
    bool question(const QString &text) override
    {
        questions.append(text);
        return answers.isEmpty() ? false : answers.takeFirst();
    }

    QString pane, startCaption, trayTip;
    QHash<Field, QString> fields;
    QHash<Label, QString> labels;
    QHash<Control, bool> enabled;
    QList<QPair<Control, bool>> enableLog;
    GridView grid;
    int cursorMoves = 0, progressMax = 0, progressValue = 0, state = 0;
    bool trayFlashing = false;
    QStringList boxes, questions;
    QList<bool> answers;
};
