// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class QPlainTextEdit;

// A list file as the operator edits it in a text box: one byte a character (Latin-1), each
// line written back with the end it had (CR LF, LF or a lone CR), and the last line with
// or without one as it was. A line the operator adds takes the end that most of the file's
// lines have (CR LF for a file without any).
namespace ListFileText {

// Shows the whole file in the box and gives the end for added lines. Raises RuntimeError
// when the file does not exist or cannot be read.
QString load(const QString &path, QPlainTextEdit &box);

// Writes the box's text, `lineEnd` behind the lines the operator added, completely beside
// the old file and puts it in the old one's place in one step, so that a full disk or a crash
// leaves the old list whole. A folder that takes no new file gets the list written over the
// old one in place. Raises RuntimeError with the reason when the list could not be written.
void save(const QString &path, const QPlainTextEdit &box, const QString &lineEnd);

} // namespace ListFileText
