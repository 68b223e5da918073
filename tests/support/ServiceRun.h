// SPDX-License-Identifier: MIT
#pragma once

// A program of ours run as its own process against the simulated server, in a private
// world: config and data homes, a working folder with lists, the sim recording what it
// gets, and a notification socket where systemd's would be.
#include "TestEnv.h"

#include <QProcess>
#include <QRegularExpression>
#include <QSocketNotifier>
#include <QStringList>
#include <QTemporaryDir>
#include <QTest>
#include <QUdpSocket>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

// An AF_UNIX datagram socket bound where NOTIFY_SOCKET points; keeps every message.
struct NotifySocket
{
    explicit NotifySocket(QString where)
        : path(std::move(where))
    {
        fd = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        qstrncpy(address.sun_path, QFile::encodeName(path).constData(), sizeof address.sun_path);
        ::bind(fd, reinterpret_cast<sockaddr *>(&address), sizeof address);
        notifier = std::make_unique<QSocketNotifier>(fd, QSocketNotifier::Read);
        QObject::connect(notifier.get(), &QSocketNotifier::activated, notifier.get(), [this] {
            char buffer[4096];
            const ssize_t got = ::recv(fd, buffer, sizeof buffer, 0);
            if (got > 0)
                messages.append(QString::fromUtf8(buffer, got));
        });
    }
    ~NotifySocket() { ::close(fd); }
    qsizetype count(const QString &start) const
    {
        return std::count_if(messages.cbegin(), messages.cend(), [&](const QString &m) { return m.startsWith(start); });
    }

    QString path;
    int fd = -1;
    std::unique_ptr<QSocketNotifier> notifier;
    QStringList messages;
};

struct ServiceRun
{
    ServiceRun()
    {
        QDir().mkpath(dir.path() + QStringLiteral("/config/quorvane"));
        QDir().mkpath(work());
        QUdpSocket a, b; // two free ports: the server's and the program's own
        if (a.bind(QHostAddress::LocalHost, 0) && b.bind(QHostAddress::LocalHost, 0))
            simPort = a.localPort(), localPort = b.localPort();
    }
    ~ServiceRun()
    {
        for (QProcess *p : {&program, &sim}) {
            p->kill();
            p->waitForFinished(3000);
        }
    }

    QString work() const { return dir.path() + QStringLiteral("/work/"); }
    QString ini() const { return dir.path() + QStringLiteral("/config/quorvane/quorvane12.ini"); }
    QByteArray file(const QString &name) const { return TestEnv::readFile(work() + name); }
    QByteArray record() const { return TestEnv::readFile(dir.path() + QStringLiteral("/record")); }
    // The settings every run shares, then `more` lines.
    void writeSettings(const QByteArray &more) const
    {
        TestEnv::writeFile(ini(), "[Settings]\nHost=127.0.0.1\nPort=" + QByteArray::number(simPort)
                                      + "\nPwd=Zq7-secret\nLocalPort=" + QByteArray::number(localPort)
                                      + "\nSaveLog=True\nRunBefore=1\nCheckInt=5000\nStatusInterval=1\nFileLoc="
                                      + QFile::encodeName(work()) + '\n' + more);
    }
    bool startSim(const QByteArray &script)
    {
        TestEnv::writeFile(dir.path() + QStringLiteral("/script"), script);
        sim.start(qEnvironmentVariable("QUORVANE_SIM"),
                  {QStringLiteral("--port"), QString::number(simPort), QStringLiteral("--password"),
                   QStringLiteral("Zq7-secret"), QStringLiteral("--script"), dir.path() + QStringLiteral("/script"),
                   QStringLiteral("--record"), dir.path() + QStringLiteral("/record")});
        return sim.waitForReadyRead(5000);
    }
    void start(const QString &binary, const QStringList &arguments = {}, const QString &notifySocket = QString())
    {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("XDG_CONFIG_HOME"), dir.path() + QStringLiteral("/config"));
        env.insert(QStringLiteral("XDG_DATA_HOME"), dir.path() + QStringLiteral("/data"));
        env.insert(QStringLiteral("NOTIFY_SOCKET"), notifySocket);
        program.setProcessEnvironment(env);
        program.start(binary, arguments);
    }
    // What the program printed so far, standard output and error apart.
    QByteArray out() { return printed += program.readAllStandardOutput(); }
    void signal(int number) const { ::kill(static_cast<pid_t>(program.processId()), number); }

    // Dates and times masked, so that two runs compare.
    static QByteArray masked(const QByteArray &text)
    {
        QString t = QString::fromLatin1(text);
        t.replace(QRegularExpression(QStringLiteral("\\d\\d:\\d\\d:\\d\\d")), QStringLiteral("hh:mm:ss"));
        t.replace(QRegularExpression(QStringLiteral("\\d{4}-\\d\\d-\\d\\d")), QStringLiteral("yyyy-mm-dd"));
        return t.toLatin1();
    }

    QTemporaryDir dir;
    quint16 simPort = 0, localPort = 0;
    QProcess sim, program;
    QByteArray printed;
};
