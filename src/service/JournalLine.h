// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <cstdio>

// One line for the journal: the priority as "<N>" in front, which journald reads from a
// service's output (sd-daemon(3)), the text in UTF-8, a line end, written through at once.
namespace JournalLine {

enum Priority { Error = 3, Warning = 4, Notice = 5, Info = 6 };

QByteArray text(Priority priority, const QString &line);
void write(std::FILE *stream, Priority priority, const QString &line);

} // namespace JournalLine
