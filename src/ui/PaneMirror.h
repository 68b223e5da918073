// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

class OutputPane;
class QPlainTextEdit;

// txtOutput on screen. The engine keeps the pane's text with CR LF line ends; the box
// shows it with plain line breaks. What the operator types in the box goes back to the
// engine with CR LF line ends; what the engine appends does not count as typing.
class PaneMirror : public QObject
{
    Q_OBJECT
public:
    PaneMirror(QPlainTextEdit &box, OutputPane &pane, QObject *parent = nullptr);

    void append(const QString &text);
    void clear();
    void cursorToEnd();

    // CR is dropped and LF breaks the line, so a CR LF split over two appends shows alike.
    static QString toDisplay(const QString &text);
    // The box's raw text (paragraph and line separators) with CR LF line ends.
    static QString toPane(const QString &raw);

private:
    void edited();

    QPlainTextEdit &m_box;
    OutputPane &m_pane;
    bool m_writing = false;
};
