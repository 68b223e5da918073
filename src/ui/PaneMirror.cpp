// SPDX-License-Identifier: MIT
#include "ui/PaneMirror.h"

#include "core/OutputPane.h"

#include <QPlainTextEdit>
#include <QScopedValueRollback>
#include <QTextCursor>
#include <QTextDocument>

PaneMirror::PaneMirror(QPlainTextEdit &box, OutputPane &pane, QObject *parent)
    : QObject(parent)
    , m_box(box)
    , m_pane(pane)
{
    connect(&m_box, &QPlainTextEdit::textChanged, this, &PaneMirror::edited);
}

QString PaneMirror::toDisplay(const QString &text)
{
    QString shown = text;
    shown.remove(u'\r');
    return shown;
}

QString PaneMirror::toPane(const QString &raw)
{
    QString text = raw;
    text.replace(QChar::ParagraphSeparator, QStringLiteral("\r\n"));
    text.replace(QChar::LineSeparator, QStringLiteral("\r\n"));
    return text;
}

void PaneMirror::append(const QString &text)
{
    const QScopedValueRollback<bool> writing(m_writing, true);
    // A cursor of our own, so the operator's caret and selection stay where they are.
    QTextCursor end(m_box.document());
    end.movePosition(QTextCursor::End);
    end.insertText(toDisplay(text));
}

void PaneMirror::clear()
{
    const QScopedValueRollback<bool> writing(m_writing, true);
    m_box.clear();
}

void PaneMirror::cursorToEnd()
{
    m_box.moveCursor(QTextCursor::End);
    m_box.ensureCursorVisible();
}

void PaneMirror::edited()
{
    if (m_writing)
        return;
    // toRawText keeps non-breaking spaces; a player's name can hold them.
    m_pane.setTextFromOperator(toPane(m_box.document()->toRawText()));
}
