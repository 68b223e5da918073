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

namespace {

quint16 freePort()
{
    QUdpSocket probe;
    probe.bind(QHostAddress::AnyIPv4, 0);
    return probe.localPort();
}

} // namespace

class TestProgram : public QObject
{
    Q_OBJECT

    struct Run
    {
        TestEnv env;
        QProcess program;
        QProcess sim;
        quint16 simPort = freePort();
        quint16 localPort = freePort();

        void writeSettings(const QString &extra = QString())
        {
            QDir().mkpath(env.configHome() + QStringLiteral("/quorvane"));
            const QString ini = QStringLiteral("[Settings]\nHost=127.0.0.1\nPort=%1\nPwd=pw\nLocalPort=%2\n"
                                               "SaveLog=True\nFileLoc=%3\nRunBefore=1\n%4")
                                    .arg(simPort)
                                    .arg(localPort)
                                    .arg(env.workDir(), extra);
            TestEnv::writeFile(env.configHome() + QStringLiteral("/quorvane/quorvane12.ini"), ini.toUtf8());
        }
        QString ini() const { return env.configHome() + QStringLiteral("/quorvane/quorvane12.ini"); }
        QByteArray workFile(const QString &name) const { return TestEnv::readFile(env.workDir() + name); }

        void startSim()
        {
            sim.start(qEnvironmentVariable("QUORVANE_SIM"),
                      {QStringLiteral("--port"), QString::number(simPort), QStringLiteral("--password"),
                       QStringLiteral("pw"), QStringLiteral("--record"), env.workDir() + QStringLiteral("sim.rec")});
            QVERIFY(sim.waitForReadyRead(5000));
        }
        void startProgram(const QStringList &args)
        {
            QProcessEnvironment pe = QProcessEnvironment::systemEnvironment();
            pe.insert(QStringLiteral("XDG_CONFIG_HOME"), env.configHome());
            pe.insert(QStringLiteral("XDG_DATA_HOME"), env.root() + QStringLiteral("/data"));
            pe.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
            program.setProcessEnvironment(pe);
            program.start(qEnvironmentVariable("QUORVANE_BIN"), args);
            QVERIFY(program.waitForStarted(5000));
        }
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
    void automaticStartAndServiceStop()
    {
        Run run;
        run.writeSettings();
        run.startSim();
        run.startProgram({QStringLiteral("-a")});
        // The status of Start reaches the server as a remote console command.
        QTRY_VERIFY_WITH_TIMEOUT(run.workFile(QStringLiteral("sim.rec")).contains("\\xFF\\xFF\\xFF\\xFF\\x02rcon pw status"),
                                 15000);
        QTRY_VERIFY_WITH_TIMEOUT(run.workFile(QStringLiteral("servlog.txt")).contains("Automatically starting TK check"),
                                 15000);
        ::kill(static_cast<pid_t>(run.program.processId()), SIGTERM);
        QVERIFY(run.program.waitForFinished(10000));
        QCOMPARE(run.program.exitStatus(), QProcess::NormalExit);
        QCOMPARE(run.program.exitCode(), 0);
        const QByteArray log = run.workFile(QStringLiteral("servlog.txt"));
        // The reply of the status at Start, in the verbose log, between the two records.
        QVERIFY(log.indexOf("num score ping") > log.indexOf("...command line '-a'"));
        QVERIFY(log.indexOf("num score ping") < log.indexOf("Automatically starting TK check"));
        QVERIFY(log.contains("Quorvane stopped\r\n\r\nShutting down and closing log.\r\n\r\n----"));
        QVERIFY(log.endsWith(QByteArray(52, '-') + "\r\n"));
        QSettings saved(run.ini(), QSettings::IniFormat);
        QCOMPARE(saved.value(QStringLiteral("Settings/CheckInt")).toString(), QStringLiteral("20000"));
        QCOMPARE(saved.value(QStringLiteral("Settings/SaveSettings")).toString(), QStringLiteral("True"));
    }

    void takenPortEndsWithARecordAndNoWindow()
    {
        Run run;
        QUdpSocket holder;
        QVERIFY(holder.bind(QHostAddress::AnyIPv4, run.localPort, QAbstractSocket::DontShareAddress));
        run.writeSettings();
        run.startProgram({});
        QVERIFY(run.program.waitForFinished(15000));
        QCOMPARE(run.program.exitCode(), 1);
        const QByteArray err = run.program.readAllStandardError();
        QVERIFY2(err.contains("Quorvane has encountered an error and will shut down."), err.constData());
        const QByteArray record = run.workFile(QStringLiteral("ErrLog.txt"));
        QVERIFY(record.startsWith("\"["));
        QVERIFY(record.contains("\tAppMsg: Error initializing application\"\r\n"));
        // Nothing saved on the short way out.
        QSettings saved(run.ini(), QSettings::IniFormat);
        QVERIFY(!saved.contains(QStringLiteral("Settings/CheckInt")));
    }
};

QTEST_GUILESS_MAIN(TestProgram)
#include "tst_program.moc"
