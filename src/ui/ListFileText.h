// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

// A list file as the operator edits it in a text box: one byte a character (Latin-1),
// shown with plain line feeds and written back with the line ends the file had
// (CR LF, or LF for a file that held only those; CR LF for a file without any).
namespace ListFileText {

struct Loaded
{
    QString text;    // with \n line ends
    QString lineEnd; // what a \n becomes again on saving
};

// The whole file. Raises RuntimeError when it does not exist or cannot be read.
Loaded load(const QString &path);

// Writes the text completely beside the old file and puts it in the old one's place in
// one step, so that a full disk or a crash leaves the old list whole. Raises
// RuntimeError with the reason when the list could not be replaced.
void save(const QString &path, const QString &text, const QString &lineEnd);

} // namespace ListFileText
