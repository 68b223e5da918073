// SPDX-License-Identifier: MIT
// The six lists: file format, table forms, the 2048-entry bound, appending.
#include "EngineWorld.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {
const QStringList files = {u"servmsg.txt"_s, u"highping.txt"_s, u"banned.txt"_s,
                           u"bannedIP.txt"_s, u"badnames.txt"_s, u"immuneIP.txt"_s};

const ListTable &tableOf(ListFiles &l, int which)
{
    const ListTable *tables[] = {&l.serverMessages(), &l.highPingMessages(), &l.bannedNames(),
                                 &l.bannedIPs(),      &l.badNames(),         &l.immuneIPs()};
    return *tables[which];
}

QStringList entries(const ListTable &t)
{
    QStringList out;
    for (qint32 i = 0; i <= t.top; ++i)
        out.append(t.at(i));
    return out;
}
} // namespace

class TestListFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void forms_data()
    {
        QTest::addColumn<int>("which");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("blanks skipped, tab and leading blank kept")
            << 0 << QByteArray("   \r\n\t\r\n abc\r\n\r\n;not a comment") << QStringList{u"\t"_s, u" abc"_s, u";not a comment"_s};
        QTest::newRow("LF and CR end lines too") << 1 << QByteArray("one\ntwo\rthree\r\n") << QStringList{u"one"_s, u"two"_s, u"three"_s};
        QTest::newRow("names as read, Latin-1") << 2 << QByteArray(" S\xF6ren \r\nS\xF6ren\r\n")
                                               << QStringList{u" S\u00F6ren "_s, u"S\u00F6ren"_s};
        QTest::newRow("addresses trimmed") << 3 << QByteArray("  192.0.2.1  \r\n192.0.2.1\t\r\n")
                                           << QStringList{u"192.0.2.1"_s, u"192.0.2.1\t"_s};
        QTest::newRow("bad names in upper case, blanks stay") << 4 << QByteArray("Foo bar \r\n\xE9t\xDF\xFF\r\n")
                                                              << QStringList{u"FOO BAR "_s, u"\u00C9T\u00DF\u00FF"_s};
        QTest::newRow("immune as read") << 5 << QByteArray("192.0.2.1 \r\n") << QStringList{u"192.0.2.1 "_s};
    }

    void forms()
    {
        QFETCH(int, which);
        QFETCH(QByteArray, bytes);
        QFETCH(QStringList, expected);
        EngineWorld w;
        TestEnv::writeFile(w.env.workDir() + files[which], bytes);
        w.engine.LoadSettings(u"quorvane12"_s);
        for (int i = 0; i < files.size(); ++i) {
            QVERIFY(QFile::exists(w.env.workDir() + files[i])); // missing ones are created empty
            QCOMPARE(entries(tableOf(w.engine.lists(), i)), i == which ? expected : QStringList());
        }
    }

    void bound_data()
    {
        QTest::addColumn<int>("which");
        QTest::addColumn<QString>("words");
        QTest::newRow("servmsg") << 0 << u"Error loading server messages"_s;
        QTest::newRow("highping") << 1 << u"Error loading high ping messages"_s;
        QTest::newRow("banned") << 2 << u"Error loading banned names"_s;
        QTest::newRow("bannedIP") << 3 << u"Error loading banned IPs"_s;
        QTest::newRow("badnames") << 4 << u"Error loading bad names"_s;
        QTest::newRow("immuneIP") << 5 << u"Error loading Immune IPs"_s;
    }

    void bound()
    {
        QFETCH(int, which);
        QFETCH(QString, words);
        EngineWorld w;
        QByteArray lines;
        for (int i = 0; i < 2048; ++i)
            lines += "x" + QByteArray::number(i) + "\r\n \r\n";
        TestEnv::writeFile(w.env.workDir() + files[which], lines);
        w.engine.LoadSettings(u"quorvane12"_s);
        QCOMPARE(tableOf(w.engine.lists(), which).top, 2047); // blank lines do not count

        TestEnv::writeFile(w.env.workDir() + files[which], lines + "x2048\r\n");
        QVERIFY_THROWS_EXCEPTION(FatalExit, w.engine.LoadSettings(u"quorvane12"_s));
        QVERIFY(w.file(u"ErrLog.txt"_s).contains("AppMsg: " + words.toLatin1() + "\"\r\n"));
        QCOMPARE(w.view.boxes.size(), 1);
    }

    void appendCreatesAndFailsFatally()
    {
        EngineWorld w;
        w.engine.lists().AppendToFile(u"banned.txt"_s, u"S\u00F6ren"_s);
        w.engine.lists().AppendToFile(u"banned.txt"_s, u"S\u00F6ren"_s);
        QCOMPARE(w.file(u"banned.txt"_s), QByteArray("S\xF6ren\r\nS\xF6ren\r\n"));

        w.engine.settings.FileLoc = w.env.workDir() + QStringLiteral("gone/");
        QVERIFY_THROWS_EXCEPTION(FatalExit, w.engine.lists().AppendToFile(u"banned.txt"_s, QStringLiteral("x")));
        QVERIFY(w.view.boxes.value(0).contains(u"\r\n\r\nError appending x to banned.txt[75]"_s));
    }
};

QTEST_GUILESS_MAIN(TestListFiles)
#include "tst_listfiles.moc"
