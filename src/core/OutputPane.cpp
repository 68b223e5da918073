// SPDX-License-Identifier: MIT
#include "core/OutputPane.h"

#include "core/View.h"

void OutputPane::append(const QString &text)
{
    m_text += text;
    m_view.paneAppended(text);
}

void OutputPane::appendReply(const QString &text)
{
    if (m_text.size() >= Limit)
        clear();
    append(text);
}

void OutputPane::clear()
{
    m_text.clear();
    m_view.paneCleared();
}

void OutputPane::cursorToEnd()
{
    m_view.paneCursorToEnd();
}
