// SPDX-License-Identifier: MIT
#include "ui/ListFileText.h"

#include "core/RuntimeError.h"
#include "core/Text.h"

#include <QFile>
#include <QSaveFile>

#include <cerrno>

namespace ListFileText {

namespace {
[[noreturn]] void fail(const QString &reason)
{
    throw RuntimeError(RuntimeError::FileError, reason, QStringLiteral("Quorvane"), errno);
}
} // namespace

Loaded load(const QString &path)
{
    QFile file(path);
    if (!file.exists())
        fail(QStringLiteral("File not found"));
    if (!file.open(QIODevice::ReadOnly))
        fail(file.errorString());
    const QString bytes = Text::fromWire(file.readAll());
    const bool crlf = bytes.contains(QStringLiteral("\r\n")) || !bytes.contains(u'\n');
    QString text = bytes;
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    return {text, crlf ? QStringLiteral("\r\n") : QStringLiteral("\n")};
}

void save(const QString &path, const QString &text, const QString &lineEnd)
{
    QString content = text;
    if (lineEnd != u"\n")
        content.replace(u'\n', lineEnd);
    QSaveFile file(path);
    // Unbuffered, so that a write the disk cuts short shows in the count: a buffered flush
    // can lose a short write and hand over a truncated copy.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        fail(file.errorString());
    const QByteArray bytes = Text::toWire(content);
    if (file.write(bytes) != bytes.size() || file.size() != bytes.size())
        fail(file.errorString().isEmpty() ? QStringLiteral("The disk took only part of the list")
                                          : file.errorString()); // the copy is dropped; the old list stands
    if (!file.commit())
        fail(file.errorString());
}

} // namespace ListFileText
