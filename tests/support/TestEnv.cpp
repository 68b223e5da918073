// SPDX-License-Identifier: MIT
#include "TestEnv.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

TestEnv::TestEnv()
    : m_oldConfig(qgetenv("XDG_CONFIG_HOME"))
    , m_oldData(qgetenv("XDG_DATA_HOME"))
{
    QDir().mkpath(configHome());
    QDir().mkpath(workDir());
    QDir().mkpath(m_dir.path() + QStringLiteral("/data"));
    qputenv("XDG_CONFIG_HOME", configHome().toLocal8Bit());
    qputenv("XDG_DATA_HOME", (m_dir.path() + QStringLiteral("/data")).toLocal8Bit());
}

TestEnv::~TestEnv()
{
    qputenv("XDG_CONFIG_HOME", m_oldConfig);
    qputenv("XDG_DATA_HOME", m_oldData);
}

QByteArray TestEnv::readFile(const QString &path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return {};
    return f.readAll();
}

void TestEnv::writeFile(const QString &path, const QByteArray &bytes)
{
    QFile f(path);
    if (f.open(QIODevice::WriteOnly | QIODevice::Truncate))
        f.write(bytes);
}
