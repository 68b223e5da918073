// SPDX-License-Identifier: MIT
#pragma once

#include "TestEnv.h"

#include <QTemporaryFile>

#include <cstdio>
#include <unistd.h>

// Sends what the process writes to stderr into a file while it lives.
class StderrCapture
{
public:
    StderrCapture()
    {
        if (!m_file.open())
            qFatal("no temporary file");
        std::fflush(stderr);
        m_saved = ::dup(STDERR_FILENO);
        ::dup2(m_file.handle(), STDERR_FILENO);
    }
    ~StderrCapture()
    {
        std::fflush(stderr);
        ::dup2(m_saved, STDERR_FILENO);
        ::close(m_saved);
    }
    QByteArray text()
    {
        std::fflush(stderr);
        return TestEnv::readFile(m_file.fileName());
    }

private:
    QTemporaryFile m_file;
    int m_saved = -1;
};
