// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QString>
#include <QTemporaryDir>

#include <csignal>
#include <sys/fsuid.h>
#include <sys/resource.h>
#include <sys/stat.h>

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

// While it lives, a folder takes no new file while the files in it can still be written, also
// for root, whom permission bits do not stop: this thread meets the file system as an
// ordinary user.
class FolderWithoutWrite
{
public:
    explicit FolderWithoutWrite(const QString &folder)
        : m_folder(QFile::encodeName(folder))
    {
        // The way to it open to everybody: root's groups stay in force.
        for (QDir up(folder); up.cdUp() && !up.isRoot();) {
            struct stat st{};
            const QByteArray path = QFile::encodeName(up.path());
            if (stat(path.constData(), &st) == 0)
                chmod(path.constData(), (st.st_mode & 07777) | S_IXGRP | S_IXOTH);
        }
        for (const QString &name : QDir(folder).entryList(QDir::Files))
            chmod(QFile::encodeName(folder + QStringLiteral("/") + name).constData(), 0666);
        chmod(m_folder.constData(), 0555);
        m_fsuid = setfsuid(65534);
    }
    ~FolderWithoutWrite()
    {
        setfsuid(static_cast<uid_t>(m_fsuid));
        chmod(m_folder.constData(), 0755);
    }
    FolderWithoutWrite(const FolderWithoutWrite &) = delete;
    FolderWithoutWrite &operator=(const FolderWithoutWrite &) = delete;

private:
    QByteArray m_folder;
    int m_fsuid;
};

// While it lives, no file of the process grows beyond `bytes`: a write across the limit is
// cut short there ("File too large"), as on a disk that fills up in the middle of it.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        getrlimit(RLIMIT_FSIZE, &m_old);
        m_handler = std::signal(SIGXFSZ, SIG_IGN);
        const rlimit small{bytes, m_old.rlim_max};
        setrlimit(RLIMIT_FSIZE, &small);
    }
    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &m_old);
        std::signal(SIGXFSZ, m_handler);
    }
    FileSizeLimit(const FileSizeLimit &) = delete;
    FileSizeLimit &operator=(const FileSizeLimit &) = delete;

private:
    rlimit m_old{};
    void (*m_handler)(int) = nullptr;
};
