// SPDX-License-Identifier: MIT
#include "StderrCapture.h"

#include <cstdio>
#include <unistd.h>

StderrCapture::StderrCapture()
{
    if (!m_file.open())
        qFatal("no temporary file");
    std::fflush(stderr);
    m_saved = ::dup(STDERR_FILENO);
    ::dup2(m_file.handle(), STDERR_FILENO);
}

StderrCapture::~StderrCapture()
{
    std::fflush(stderr);
    ::dup2(m_saved, STDERR_FILENO);
    ::close(m_saved);
}

QByteArray StderrCapture::text()
{
    std::fflush(stderr);
    QFile read(m_file.fileName());
    return read.open(QIODevice::ReadOnly) ? read.readAll() : QByteArray();
}
