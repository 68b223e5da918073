// SPDX-License-Identifier: MIT
#include "ui/ListFileText.h"

#include "core/RuntimeError.h"
#include "core/FileWrite.h"
#include "core/Text.h"

#include <QFile>
#include <QPlainTextEdit>
#include <QTextBlock>

#include <algorithm>
#include <cerrno>

namespace ListFileText {

namespace {

[[noreturn]] void fail(const QString &reason)
{
    throw RuntimeError(RuntimeError::FileError, reason, QStringLiteral("Quorvane"), errno);
}

// A line of the file as read, on its block of the box. A block the operator makes has none.
struct ReadLine final : QTextBlockUserData
{
    explicit ReadLine(Text::Line line)
        : read(std::move(line))
    {
    }
    Text::Line read;
};

const Text::Line *readLine(const QTextBlock &block)
{
    const auto *line = static_cast<const ReadLine *>(block.userData());
    return line ? &line->read : nullptr;
}

} // namespace

QString load(const QString &path, QPlainTextEdit &box)
{
    QFile file(path);
    if (!file.exists())
        fail(QStringLiteral("File not found"));
    if (!file.open(QIODevice::ReadOnly))
        fail(file.errorString());
    const QList<Text::Line> lines = Text::splitLines(Text::fromWire(file.readAll()));
    QStringList texts;
    for (const Text::Line &line : lines)
        texts.append(line.text);
    box.setPlainText(texts.join(u'\n'));
    QTextBlock block = box.document()->firstBlock();
    for (const Text::Line &line : lines) {
        block.setUserData(new ReadLine(line));
        block = block.next();
    }

    // The end most lines have; a tie goes to the one named first.
    QString most = QStringLiteral("\r\n");
    qsizetype mostCount = 0;
    for (const QString &end : {QStringLiteral("\r\n"), QStringLiteral("\n"), QStringLiteral("\r")}) {
        const auto count = std::count_if(lines.begin(), lines.end(), [&](const Text::Line &l) { return l.end == end; });
        if (count > mostCount)
            most = end, mostCount = count;
    }
    return most;
}

namespace {

// The box's text as it goes to the file.
QString text(const QPlainTextEdit &box, const QString &lineEnd)
{
    QString out;
    QTextBlock movedTo;
    QString movedEnd;
    for (QTextBlock block = box.document()->firstBlock(); block.isValid(); block = block.next()) {
        // A soft break (Shift+Enter) counts as a line end the operator added.
        out += block.text().replace(QChar::LineSeparator, lineEnd);
        if (!block.next().isValid())
            break;
        QString end;
        if (block == movedTo) {
            end = movedEnd;
        } else if (const Text::Line *read = readLine(block)) {
            end = read->end;
            // Enter in front of a line leaves its text in a new block behind this one: the
            // end goes with the text.
            for (QTextBlock next = block.next(); block.text() != read->text && next.isValid() && !readLine(next);
                 next = next.next()) {
                if (next.text() == read->text) {
                    movedTo = next, movedEnd = read->end, end.clear();
                    break;
                }
            }
        }
        out += end.isEmpty() ? lineEnd : end; // empty: an added line, or the old last line
    }
    return out;
}

} // namespace

void save(const QString &path, const QPlainTextEdit &box, const QString &lineEnd)
{
    // A copy cut short is dropped and the old list stands (not so for one written in place).
    FileWrite::replace(path, Text::toWire(text(box, lineEnd)), {std::nullopt, true});
}

} // namespace ListFileText
