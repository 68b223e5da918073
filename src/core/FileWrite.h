// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QFileDevice>
#include <QString>

#include <optional>

class QFile;

// Writes that reach the file whole or are reported. Every write's count and flush are
// checked; each routine raises RuntimeError::FileError with the system's reason.
namespace FileWrite {

// The bytes behind the end of the file at `path`, created when missing. A write the disk
// cuts short (full, over quota, a file size limit) is taken back to where the file ended,
// so a list never keeps half a line.
void append(const QString &path, const QByteArray &bytes);

// Opens `file` to append, Unbuffered, so that the count of a write is what the system took.
// A device (a link to /dev/null, say) is opened to write without the seek to its end.
bool openToAppend(QFile &file);

// The same as append() for a file kept open by openToAppend().
void appendTo(QFile &file, const QByteArray &bytes);

// How replace() treats the file it puts in place.
struct Replacement
{
    // Exactly these bits, whatever the umask; none keeps those of the file replaced.
    std::optional<QFileDevice::Permissions> permissions;
    // Where the folder takes no new file, write over the old one, as plain writing would.
    bool inPlaceFallback = false;
};

// The whole file replaced by `bytes`: written completely beside it and put in its place in
// one step, so that a failure leaves the old file as it was. A link is followed; a target
// that is no plain file (a device) is written in place.
void replace(const QString &path, const QByteArray &bytes, const Replacement &how);

} // namespace FileWrite
