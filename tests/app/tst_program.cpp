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

    struct Run
    {
        TestEnv env;
        QProcess program, sim;
        QUdpSocket holder; // keeps the program's local port free until it starts
        QString ini = env.configHome() + QStringLiteral("/quorvane/quorvane12.ini");

        explicit Run(quint16 simPort)
        {
            holder.bind(QHostAddress::AnyIPv4, 0, QAbstractSocket::DontShareAddress);
            QDir().mkpath(env.configHome() + QStringLiteral("/quorvane"));
            TestEnv::writeFile(ini, QStringLiteral("[Settings]\nHost=127.0.0.1\nPort=%1\nPwd=pw\nLocalPort=%2\nSaveLog=True\n"
                                                   "FileLoc=%3\nRunBefore=1\n")
                                        .arg(simPort).arg(holder.localPort()).arg(env.workDir()).toUtf8());
            QProcessEnvironment pe = QProcessEnvironment::systemEnvironment();
            pe.insert(QStringLiteral("XDG_CONFIG_HOME"), env.configHome());
            pe.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
            program.setProcessEnvironment(pe);
        }
        QByteArray workFile(const char *name) const { return TestEnv::readFile(env.workDir() + QLatin1String(name)); }
        ~Run()
        {
            for (QProcess *p : {&program, &sim}) {
                if (p->state() != QProcess::NotRunning) {
                    p->kill();
                    p->waitForFinished(3000);
                }
            }
        }
    };

private Q_SLOTS:
    // Started by -a, stopped by the service manager: the orderly stop runs to the end.
    void automaticStartAndServiceStop()
    {
        QUdpSocket probe;
        probe.bind(QHostAddress::AnyIPv4, 0);
        const quint16 simPort = probe.localPort();
        probe.close();
        Run run(simPort);
        run.sim.start(qEnvironmentVariable("QUORVANE_SIM"), {QStringLiteral("--port"), QString::number(simPort),
                                                             QStringLiteral("--password"), QStringLiteral("pw")});
        QVERIFY(run.sim.waitForReadyRead(5000));
        run.holder.close();
        run.program.start(qEnvironmentVariable("QUORVANE_BIN"), {QStringLiteral("-a")});
        QTRY_VERIFY_WITH_TIMEOUT(run.workFile("servlog.txt").contains("Automatically starting TK check"), 15000);
        ::kill(static_cast<pid_t>(run.program.processId()), SIGTERM);
        QVERIFY(run.program.waitForFinished(10000));
        QCOMPARE(run.program.exitStatus(), QProcess::NormalExit);
        QCOMPARE(run.program.exitCode(), 0);
        const QByteArray log = run.workFile("servlog.txt");
        // The reply to the status of Start stands between the two records.
        QVERIFY(log.indexOf("...command line '-a'") < log.indexOf("num score ping"));
        QVERIFY(log.indexOf("num score ping") < log.indexOf("Automatically starting TK check"));
        QVERIFY(log.contains("Quorvane stopped\r\n\r\nShutting down and closing log.\r\n\r\n----"));
        QVERIFY(log.endsWith(QByteArray(52, '-') + "\r\n"));
        QCOMPARE(QSettings(run.ini, QSettings::IniFormat).value(QStringLiteral("Settings/CheckInt")).toString(),
                 QStringLiteral("20000"));
    }

    void takenPortEndsWithARecordAndNoWindow()
    {
        Run run(12203);
        run.program.start(qEnvironmentVariable("QUORVANE_BIN"), QStringList());
        QVERIFY(run.program.waitForFinished(15000));
        QCOMPARE(run.program.exitCode(), 1);
        QVERIFY(run.program.readAllStandardError().contains("Quorvane: Quorvane has encountered an error and will shut down."));
        const QByteArray record = run.workFile("ErrLog.txt");
        QVERIFY(record.startsWith("\"[") && record.contains("\tAppMsg: Error initializing application\"\r\n"));
        // Nothing saved on the short way out.
        QVERIFY(!QSettings(run.ini, QSettings::IniFormat).contains(QStringLiteral("Settings/CheckInt")));
    }
};

QTEST_GUILESS_MAIN(TestProgram)
#include "tst_program.moc"
