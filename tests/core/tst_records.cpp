// SPDX-License-Identifier: MIT
// servlog.txt and ErrLog.txt, byte for byte.
#include "FakeClock.h"
#include "HeadlessView.h"
#include "TestEnv.h"
#include "core/ActivityLog.h"
#include "core/ErrorLog.h"
#include "core/RuntimeError.h"
#include "core/Settings.h"
#include "core/Stats.h"

#include <QDir>
#include <QTest>

class TestRecords : public QObject
{
    Q_OBJECT

    struct World
    {
        TestEnv env;
        FakeClock clock{QDateTime(QDate(2026, 11, 22), QTime(21, 5, 9))};
        HeadlessView view;
        Settings settings;
        Stats stats;
        ErrorLog errors{clock, view, [this] { return settings.FileLoc; }};
        ActivityLog log{clock, errors, settings, stats};
        World()
        {
            settings.FileLoc = env.workDir();
            errors.setTerminate([this] { throw FatalExit{QStringLiteral("fatal")}; });
        }
        QByteArray servlog() const { return TestEnv::readFile(env.workDir() + QStringLiteral("servlog.txt")); }
        QByteArray errlog() const { return TestEnv::readFile(env.workDir() + QStringLiteral("ErrLog.txt")); }
    };

private Q_SLOTS:
    void logBlocksByteForByte()
    {
        World w;
        w.stats.startdate = QDate(2026, 11, 22);
        w.stats.starttime = 0.5;
        w.stats.totalplayers = 12;
        w.stats.checks = 3;
        w.log.OpenLog();
        QVERIFY(w.log.logOpen());
        w.log.WriteLog(QStringLiteral("Application started successfully\r\n...check interval 5000"));
        w.clock.jump(61);
        w.log.WriteLog(QStringLiteral("Quorvane started"), true);
        w.log.WriteLog(QStringLiteral("21:06:10>status\r\n================\r\n"));
        w.log.CloseLog();
        QVERIFY(!w.log.logOpen());
        w.log.WriteLog(QStringLiteral("lost"));

        const QByteArray rule(52, '-');
        const QByteArray expected = rule + "\r\nLogging Started on 2026-11-22 at 21:05:09\r\n" + rule + "\r\n\r\n"
            "Application started successfully\r\n...check interval 5000\r\n\r\n"
            "[21:06:10]\r\nQuorvane started\r\n\r\n"
            "21:06:10>status\r\n================\r\n\r\n\r\n"
            + rule + "\r\nLogging Completed on 2026-11-22 at 21:06:10\r\nServer Stats:\r\n"
            "  - Quorvane started on 2026-11-22 at 12:00:00.\r\n"
            "  - Hosted 12 total players.\r\n  - Ran 0 maps total.\r\n  - Ran 3 total checks.\r\n"
            "  - Banned 0 players.\r\n  - Kicked 0 banned players.\r\n  - Kicked 0 players for high ping.\r\n"
            "  - Kicked 0 players for TKs.\r\n  - Closed while on  map.\r\n  - Closed with 0 players on the server.\r\n"
            + rule + "\r\n";
        QCOMPARE(w.servlog(), expected);

        // A second run goes on behind the tail, with no empty line between.
        w.log.OpenLog();
        w.log.CloseLog();
        QVERIFY(w.servlog().startsWith(expected + rule + "\r\nLogging Started on "));
    }

    void logPathHasDoubledSeparator()
    {
        QCOMPARE(ActivityLog::path(QStringLiteral("/srv/qv/")), QStringLiteral("/srv/qv//servlog.txt"));
    }

    void unopenableLogIsFatal()
    {
        World w;
        w.settings.FileLoc = w.env.workDir() + QStringLiteral("missing/");
        try {
            w.log.OpenLog();
            QFAIL("no fatal report");
        } catch (const FatalExit &) {
        }
        QCOMPARE(w.view.boxes.size(), 1);
        QVERIFY(w.view.boxes.first().contains(QStringLiteral("Error opening server log[75]: ")));
    }

    void errorRecordByteForByte()
    {
        World w;
        try {
            throw RuntimeError(RuntimeError::SendFailed, QStringLiteral("Network unreachable"),
                               QStringLiteral("UDPClient"), 101);
        } catch (...) {
            w.errors.ReportError(false, QStringLiteral("Error appending \"x\" to banned.txt"));
        }
        QVERIFY(w.view.boxes.isEmpty());
        const QByteArray one = "\"[2026-11-22 21:05:09] - Error 126: Network unreachable\r\n"
                               "\tCalling Function: UDPClient\r\n"
                               "\tLast DLL: 101\r\n"
                               "\tSource: UDPClient\r\n"
                               "\tAppMsg: Error appending \"x\" to banned.txt\"\r\n";
        QCOMPARE(w.errlog(), one);

        // Fatal: a second record behind the first, then the box, then the end.
        try {
            try {
                throw RuntimeError(RuntimeError::InvalidCall, QStringLiteral("Invalid procedure call or argument"));
            } catch (...) {
                w.errors.ReportError(true, QStringLiteral("ParseScores"));
            }
            QFAIL("fatal report returned");
        } catch (const FatalExit &) {
        }
        QVERIFY(w.errlog().startsWith(one + "\"[2026-11-22 21:05:09] - Error 5: Invalid procedure call or argument\r\n"
                                            "\tCalling Function: Quorvane\r\n"));
        QCOMPARE(w.view.boxes, QStringList{QStringLiteral("Quorvane has encountered an error and will shut down.\r\n\r\n"
                                                          "ParseScores[5]: Invalid procedure call or argument")});
    }

    void unwritableErrLogStillEnds()
    {
        World w;
        w.settings.FileLoc = QStringLiteral("/proc/no/such/dir/");
        bool ended = false;
        try {
            try {
                throw std::runtime_error("boom");
            } catch (...) {
                w.errors.ReportError(true, QStringLiteral("CopyPlayers"));
            }
        } catch (const FatalExit &) {
            ended = true;
        }
        QVERIFY(ended);
        QCOMPARE(w.view.boxes.size(), 1);
        QVERIFY(w.view.boxes.first().endsWith(QStringLiteral("CopyPlayers[51]: Internal error: boom")));
    }
};

QTEST_GUILESS_MAIN(TestRecords)
#include "tst_records.moc"
