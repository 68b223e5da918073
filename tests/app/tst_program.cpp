// SPDX-License-Identifier: MIT
// The program as an operator starts it: its own process, the offscreen platform, the
// simulated server as another process, settings in a private config folder.
#include "ServiceRun.h"

#include <QSettings>

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
        ServiceRun run;
        run.writeSettings({});
        QFile::setPermissions(run.ini(), QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther);
        QVERIFY(run.startSim({}));
        const mode_t umaskBefore = ::umask(022); // the program inherits it
        run.start(qEnvironmentVariable("QUORVANE_BIN"), {QStringLiteral("-a")});
        ::umask(umaskBefore);
        QTRY_VERIFY_WITH_TIMEOUT(run.file(QStringLiteral("servlog.txt")).contains("Automatically starting TK check"), 15000);
        run.signal(SIGTERM);
        QVERIFY(run.program.waitForFinished(10000));
        QVERIFY(run.program.exitStatus() == QProcess::NormalExit && run.program.exitCode() == 0);
        const QByteArray text = run.file(QStringLiteral("servlog.txt"));
        // The reply to the status of Start stands between the two records.
        QVERIFY(text.indexOf("...command line '-a'") < text.indexOf("num score ping"));
        QVERIFY(text.indexOf("num score ping") < text.indexOf("Automatically starting TK check"));
        QVERIFY(text.contains("Quorvane stopped\r\n\r\nShutting down and closing log.\r\n\r\n----"));
        QVERIFY(text.endsWith(QByteArray(52, '-') + "\r\n"));
        // A setting the file did not hold is stored at Start.
        QCOMPARE(QSettings(run.ini(), QSettings::IniFormat).value(QStringLiteral("Settings/MaxPing")).toString(),
                 QStringLiteral("750"));
        struct stat file = {};
        QCOMPARE(::stat(QFile::encodeName(run.ini()).constData(), &file), 0);
        QCOMPARE(file.st_mode & 0777, 0600u);
        const QByteArray seen = run.out() + run.program.readAllStandardError() + text + run.file(QStringLiteral("ErrLog.txt"));
        QVERIFY(text.contains("Quorvane started") && !seen.contains("Zq7-secret"));
    }
};

QTEST_GUILESS_MAIN(TestProgram)
#include "tst_program.moc"
