// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QTemporaryFile>

// Sends what the process writes to stderr into a file while it lives.
class StderrCapture
{
public:
    StderrCapture();
    ~StderrCapture();
    QByteArray text();

private:
    QTemporaryFile m_file;
    int m_saved = -1;
};
