// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class View;

// txtOutput: what the operator watches and, at the same time, the link's only receive
// buffer. The engine holds the text with its CR LF line ends; the view mirrors it.
class OutputPane
{
public:
    explicit OutputPane(View &view) : m_view(view) {}

    const QString &text() const { return m_text; }
    qsizetype length() const { return m_text.size(); }
    void append(const QString &text);
    // A reply as the receive handler adds it: the pane is emptied whole first when it
    // holds Limit characters or more, which keeps it small however long the program runs.
    void appendReply(const QString &text);
    static constexpr qsizetype Limit = 24000;
    void clear();
    void cursorToEnd();
    // The operator typed in the pane.
    void setTextFromOperator(const QString &text) { m_text = text; }

private:
    View &m_view;
    QString m_text;
};
