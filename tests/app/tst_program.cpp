// SPDX-License-Identifier: MIT
// The program as an operator starts it: its own process, the offscreen platform, the
// simulated server as another process, settings in a private config folder.
#include "TestEnv.h"

#include <QDir>
#include <QProcess>
#include <QSettings>
#include <QTest>
#include <QUdpSocket>

#include <csignal>
#include <sys/stat.h>

class TestProgram : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Started by -a under a umask of 022, stopped by the service manager: the orderly stop runs
    // to the end, the settings file (0644 before) is its owner's alone, and the password is
    // nowhere but there.
    void automaticStartAndServiceStop()
    {
        TestEnv env;
        QUdpSocket probe, local; // two free ports: the server's and the program's own
        QVERIFY(probe.bind(QHostAddress::AnyIPv4, 0) && local.bind(QHostAddress::AnyIPv4, 0));
        const QString simPort = QString::number(probe.localPort());
        const QString ini = env.configHome() + QStringLiteral("/quorvane/quorvane12.ini");
        QDir().mkpath(env.configHome() + QStringLiteral("/quorvane"));
        TestEnv::writeFile(ini, QStringLiteral("[Settings]\nHost=127.0.0.1\nPort=%1\nPwd=Zq7-secret\nLocalPort=%2\nSaveLog=True\n"
                                               "FileLoc=%3\nRunBefore=1\n")
                                    .arg(simPort).arg(local.localPort()).arg(env.workDir()).toUtf8());
        QFile::setPermissions(ini, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther);
        probe.close();
        local.close();
        QProcess sim;
        sim.start(qEnvironmentVariable("QUORVANE_SIM"), {QStringLiteral("--port"), simPort, QStringLiteral("--password"),
                                                         QStringLiteral("Zq7-secret")});
        QVERIFY(sim.waitForReadyRead(5000));
        QProcess program; // inherits the private config folder and the umask
        const mode_t umaskBefore = ::umask(022);
        program.start(qEnvironmentVariable("QUORVANE_BIN"), {QStringLiteral("-a")});
        ::umask(umaskBefore);
        const QString log = env.workDir() + QStringLiteral("servlog.txt");
        QTRY_VERIFY_WITH_TIMEOUT(TestEnv::readFile(log).contains("Automatically starting TK check"), 15000);
        ::kill(static_cast<pid_t>(program.processId()), SIGTERM);
        QVERIFY(program.waitForFinished(10000));
        sim.kill();
        sim.waitForFinished(3000);
        QVERIFY(program.exitStatus() == QProcess::NormalExit && program.exitCode() == 0);
        const QByteArray text = TestEnv::readFile(log);
        // The reply to the status of Start stands between the two records.
        QVERIFY(text.indexOf("...command line '-a'") < text.indexOf("num score ping"));
        QVERIFY(text.indexOf("num score ping") < text.indexOf("Automatically starting TK check"));
        QVERIFY(text.contains("Quorvane stopped\r\n\r\nShutting down and closing log.\r\n\r\n----"));
        QVERIFY(text.endsWith(QByteArray(52, '-') + "\r\n"));
        QCOMPARE(QSettings(ini, QSettings::IniFormat).value(QStringLiteral("Settings/CheckInt")).toString(),
                 QStringLiteral("20000"));
        struct stat file = {};
        QCOMPARE(::stat(QFile::encodeName(ini).constData(), &file), 0);
        QCOMPARE(file.st_mode & 0777, 0600u);
        const QByteArray seen = program.readAllStandardOutput() + program.readAllStandardError() + text
            + TestEnv::readFile(env.workDir() + QStringLiteral("ErrLog.txt"));
        QVERIFY(text.contains("Quorvane started") && !seen.contains("Zq7-secret"));
    }
};

QTEST_GUILESS_MAIN(TestProgram)
#include "tst_program.moc"
