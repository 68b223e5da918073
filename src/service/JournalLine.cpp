// SPDX-License-Identifier: MIT
#include "service/JournalLine.h"

#include "core/Text.h"

QByteArray JournalLine::text(Priority priority, const QString &line)
{
    // A line end inside would start a journal entry without its priority, and a player
    // chooses his own name: control characters go, so no terminal takes them as commands.
    QString clean = Text::oneLine(line);
    for (QChar &c : clean) {
        if (c.unicode() < 0x20 || (c.unicode() >= 0x7f && c.unicode() < 0xa0))
            c = u'?';
    }
    return '<' + QByteArray::number(priority) + '>' + clean.toUtf8() + '\n';
}

void JournalLine::write(std::FILE *stream, Priority priority, const QString &line)
{
    const QByteArray bytes = text(priority, line);
    std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), stream);
    std::fflush(stream);
}
