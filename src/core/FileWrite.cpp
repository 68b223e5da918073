// SPDX-License-Identifier: MIT
#include "core/FileWrite.h"

#include "core/RuntimeError.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <cerrno>
#include <cstring>

namespace FileWrite {

namespace {

RuntimeError failure(const QFileDevice &file, int systemError)
{
    // A write cut short sets no error on the file; the system's own words say why.
    QString reason = file.error() == QFileDevice::NoError ? QString() : file.errorString();
    if (reason.isEmpty())
        reason = systemError != 0 ? QString::fromLocal8Bit(std::strerror(systemError))
                                  : QStringLiteral("The disk took only part of the text");
    return RuntimeError(RuntimeError::FileError, reason, QStringLiteral("Quorvane"), systemError);
}

// All of `bytes` into a file opened Unbuffered, or the error of the part that failed.
void writeWhole(QFileDevice &file, const QByteArray &bytes)
{
    errno = 0;
    const qint64 written = file.write(bytes);
    const int systemError = errno;
    if (written != bytes.size() || !file.flush())
        throw failure(file, systemError);
}

} // namespace

bool openToAppend(QFile &file)
{
    const QFileInfo target(QFileInfo(file.fileName()).canonicalFilePath());
    const bool device = target.exists() && !target.isFile();
    return file.open(QIODevice::WriteOnly | QIODevice::Unbuffered | (device ? QIODevice::NotOpen : QIODevice::Append));
}

void appendTo(QFile &file, const QByteArray &bytes)
{
    const qint64 end = file.size();
    file.unsetError();
    try {
        writeWhole(file, bytes);
    } catch (const RuntimeError &) {
        if (file.size() > end)
            file.resize(end);
        throw;
    }
}

void append(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    errno = 0;
    if (!openToAppend(file))
        throw failure(file, errno);
    appendTo(file, bytes);
    file.close();
    if (file.error() != QFileDevice::NoError)
        throw failure(file, errno);
}

void replace(const QString &path, const QByteArray &bytes, const Replacement &how)
{
    const QFileInfo target(QFileInfo(path).canonicalFilePath());
    if (target.exists() && !target.isFile()) {
        // No copy can be put in a device's place (and none may be, by whoever runs this).
        QFile device(target.filePath());
        errno = 0;
        if (!device.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
            throw failure(device, errno);
        writeWhole(device, bytes);
        return;
    }
    QSaveFile file(path);
    file.setDirectWriteFallback(how.inPlaceFallback);
    errno = 0;
    // Unbuffered, so that a write the disk cuts short shows in the count: a buffered flush
    // at commit can lose a short write and hand over a cut-short copy.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        throw failure(file, errno);
    writeWhole(file, bytes);
    errno = 0;
    if ((how.permissions && !file.setPermissions(*how.permissions)) || !file.commit())
        throw failure(file, errno);
}

} // namespace FileWrite
