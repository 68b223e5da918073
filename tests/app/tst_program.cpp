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

class TestProgram : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Started by -a, stopped by the service manager: the orderly stop runs to the end.
    void automaticStartAndServiceStop()
    {
        TestEnv env;
        QUdpSocket probe, local; // two free ports: the server's and the program's own
        QVERIFY(probe.bind(QHostAddress::AnyIPv4, 0) && local.bind(QHostAddress::AnyIPv4, 0));
        const QString simPort = QString::number(probe.localPort());
        const QString ini = env.configHome() + QStringLiteral("/quorvane/quorvane12.ini");
        QDir().mkpath(env.configHome() + QStringLiteral("/quorvane"));
        TestEnv::writeFile(ini, QStringLiteral("[Settings]\nHost=127.0.0.1\nPort=%1\nPwd=pw\nLocalPort=%2\nSaveLog=True\n"
                                               "FileLoc=%3\nRunBefore=1\n")
                                    .arg(simPort).arg(local.localPort()).arg(env.workDir()).toUtf8());
        probe.close();
        local.close();
        QProcess sim;
        sim.start(qEnvironmentVariable("QUORVANE_SIM"), {QStringLiteral("--port"), simPort, QStringLiteral("--password"),
                                                         QStringLiteral("pw")});
        QVERIFY(sim.waitForReadyRead(5000));
        QProcess program; // inherits the private config folder from the environment
        program.start(qEnvironmentVariable("QUORVANE_BIN"), {QStringLiteral("-a")});
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
    }
};

QTEST_GUILESS_MAIN(TestProgram)
#include "tst_program.moc"
