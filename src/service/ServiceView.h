// SPDX-License-Identifier: MIT
#pragma once

#include "core/View.h"

#include <QHash>

struct Settings;

// The View of the service: no window. It keeps what the engine reads back (the server's
// address fields, the labels) and drops what only a screen would show (the pane, the
// grid, the bar, the tray). A box goes to standard error as one line at error priority
// and takes its default answer: OK, or No for a question.
class ServiceView final : public View
{
public:
    // Once, after the engine is built: the window state it stores stays as read.
    void attach(const Settings &settings) { m_settings = &settings; }

    void paneAppended(const QString &) override {}
    void paneCleared() override {}
    void paneCursorToEnd() override {}
    QString fieldText(Field field) const override { return m_fields.value(field); }
    void setFieldText(Field field, const QString &text) override { m_fields.insert(field, text); }
    void setLabel(Label label, const QString &text) override { m_labels.insert(label, text); }
    QString label(Label label) const { return m_labels.value(label); }
    void setStartCaption(const QString &) override {}
    void setEnabled(Control, bool) override {}
    void setSettingsTicked(bool) override {}
    void setTrayTicked(bool) override {}
    void showGrid(const GridView &) override {}
    int gridCurrentRow() const override { return -1; }
    qint32 gridRowData(int) const override { return 0; }
    void setProgress(int, int, int) override {}
    void setTrayTip(const QString &) override {}
    void setTrayFlashing(bool) override {}
    void setTrayShown(bool) override {}
    void applyWindowLayout() override {}
    int windowState() const override;
    void messageBox(const QString &text) override;
    bool question(const QString &text) override;

private:
    const Settings *m_settings = nullptr;
    QHash<Field, QString> m_fields;
    QHash<Label, QString> m_labels;
};
