// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

// A private world for one test: its own config and data homes and a working folder,
// so no test touches the user's settings or another test's files.
class TestEnv
{
public:
    TestEnv();
    ~TestEnv();

    QString root() const { return m_dir.path(); }
    QString configHome() const { return m_dir.path() + QStringLiteral("/config"); }
    QString workDir() const { return m_dir.path() + QStringLiteral("/work/"); }

    static QByteArray readFile(const QString &path);
    static void writeFile(const QString &path, const QByteArray &bytes);

private:
    QTemporaryDir m_dir;
    QByteArray m_oldConfig;
    QByteArray m_oldData;
};
