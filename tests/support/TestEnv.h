// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QString>
#include <QTemporaryDir>

// A private world for one test: its own config and data homes and a working folder,
// so no test touches the user's settings or another test's files.
class TestEnv
{
public:
    TestEnv()
    {
        QDir().mkpath(configHome());
        QDir().mkpath(workDir());
        QDir().mkpath(m_dir.path() + QStringLiteral("/data"));
        qputenv("XDG_CONFIG_HOME", configHome().toLocal8Bit());
        qputenv("XDG_DATA_HOME", (m_dir.path() + QStringLiteral("/data")).toLocal8Bit());
    }
    ~TestEnv()
    {
        qputenv("XDG_CONFIG_HOME", m_oldConfig);
        qputenv("XDG_DATA_HOME", m_oldData);
    }

    QString root() const { return m_dir.path(); }
    QString configHome() const { return m_dir.path() + QStringLiteral("/config"); }
    QString workDir() const { return m_dir.path() + QStringLiteral("/work/"); }

    static QByteArray readFile(const QString &path)
    {
        QFile f(path);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }
    static void writeFile(const QString &path, const QByteArray &bytes)
    {
        QFile f(path);
        if (f.open(QIODevice::WriteOnly | QIODevice::Truncate))
            f.write(bytes);
    }

private:
    QTemporaryDir m_dir;
    QByteArray m_oldConfig = qgetenv("XDG_CONFIG_HOME");
    QByteArray m_oldData = qgetenv("XDG_DATA_HOME");
};
