// SPDX-License-Identifier: MIT
#include "FakeClock.h"
#include "TestEnv.h"
#include "core/Settings.h"
#include "core/SettingsStore.h"
#include "core/Stats.h"

#include <QSettings>
#include <QTest>

namespace {

// Remembers every write in order, for the order of a save.
class RecordingBackend final : public SettingsBackend
{
public:
    QStringList *writes;
    QHash<QString, QString> values;
    explicit RecordingBackend(QStringList *log) : writes(log) {}
    QString read(const QString &app, const QString &key, const QString &fallback) override
    {
        return values.value(app + u'/' + key, fallback);
    }
    void write(const QString &app, const QString &key, const QString &value) override
    {
        writes->append(app + u'/' + key + u'=' + value);
    }
};

QString iniPath()
{
    return IniSettingsBackend::filePath(SettingsStore::ownApp);
}

void writeIni(const QString &appName, const QList<QPair<QString, QString>> &values)
{
    QSettings ini(IniSettingsBackend::filePath(appName), QSettings::IniFormat);
    for (const auto &v : values)
        ini.setValue(QStringLiteral("Settings/") + v.first, v.second);
}

} // namespace

class TestSettingsStore : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        env = std::make_unique<TestEnv>();
        SettingsStore::setProgramDirectoryForTesting(env->workDir());
    }
    void cleanup() { env.reset(); }

    void emptyStoreGivesDefaults()
    {
        Settings s;
        s.CheckInt = 1;
        s.Host = QStringLiteral("x");
        Stats st;
        FakeClock clock;
        SettingsStore store(s, st, clock);
        store.readSettings(SettingsStore::ownApp);
        const Settings d;
        QCOMPARE(s.CheckInt, d.CheckInt);
        QCOMPARE(s.Host, QStringLiteral("000.000.000.000"));
        QCOMPARE(s.CommandDelay, 1.0);
        QCOMPARE(s.FileLoc, env->workDir());
        QCOMPARE(store.readRunBefore(), 0);
    }

    void valuesConvertOrFallBack_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QString>("expected"); // as written back by a save

        QTest::newRow("letters in a number") << "CheckInt" << "abc" << "20000";
        QTest::newRow("number with blanks") << "CheckInt" << " 1000 " << "1000";
        QTest::newRow("raised value is not corrected at load") << "CheckInt" << "1000" << "1000";
        QTest::newRow("beyond 32 bits") << "Port" << "99999999999" << "12203";
        QTest::newRow("half rounds to even") << "MaxPing" << "750.5" << "750";
        QTest::newRow("bool words any case") << "KickPing" << "false" << "False";
        QTest::newRow("bool from number") << "Warn" << "-1" << "True";
        QTest::newRow("bool nonsense") << "TellPlayers" << "maybe" << "True";
        QTest::newRow("delay shortest form") << "CommandDelay" << "1.0" << "1";
        QTest::newRow("delay fraction") << "CommandDelay" << "0.25" << "0.25";
        QTest::newRow("delay without exponent") << "CommandDelay" << "0.00001" << "0.00001";
        QTest::newRow("delay letters") << "CommandDelay" << "fast" << "1";
        QTest::newRow("FileLoc of blanks") << "FileLoc" << "   " << "<program>";
        QTest::newRow("string with comma") << "WarnTxt" << "stop, now" << "stop, now";
        QTest::newRow("high byte text") << "Voice" << QString::fromLatin1("[Qv\xE9]") << QString::fromLatin1("[Qv\xE9]");
    }

    void valuesConvertOrFallBack()
    {
        QFETCH(QString, key);
        QFETCH(QString, stored);
        QFETCH(QString, expected);
        if (expected == u"<program>")
            expected = env->workDir();
        writeIni(SettingsStore::ownApp, {{key, stored}});

        Settings s;
        Stats st;
        FakeClock clock;
        {
            SettingsStore store(s, st, clock);
            store.readSettings(SettingsStore::ownApp);
            store.StoreSettings(true);
        }
        QSettings ini(iniPath(), QSettings::IniFormat);
        QCOMPARE(ini.value(QStringLiteral("Settings/") + key).toString(), expected);
    }

    void roundTripKeepsEveryValue()
    {
        Settings s;
        s.Warn = true;
        s.WarnTxt = QStringLiteral("  spaced, \"quoted\" \\ text ");
        s.TKLimit = -7;
        s.CommandDelay = 0.1;
        s.Host = QStringLiteral("192.0.2.7");
        s.Pwd = QStringLiteral("p=w;d");
        s.SaveLog = true;
        s.WinState = 2;
        s.Persona = QStringLiteral("Obnoxious");
        Stats st;
        FakeClock clock;
        {
            SettingsStore store(s, st, clock);
            store.StoreSettings(true);
        }
        Settings back;
        SettingsStore again(back, st, clock);
        again.readSettings(SettingsStore::ownApp);
        QCOMPARE(back.Warn, true);
        QCOMPARE(back.WarnTxt, s.WarnTxt);
        QCOMPARE(back.TKLimit, -7);
        QCOMPARE(back.CommandDelay, 0.1);
        QCOMPARE(back.Host, s.Host);
        QCOMPARE(back.Pwd, s.Pwd);
        QCOMPARE(back.SaveLog, true);
        QCOMPARE(back.WinState, 2);
        QCOMPARE(back.Persona, s.Persona);
        QCOMPARE(again.readRunBefore(), 1);
        // The file is plain text with the words True and False.
        const QByteArray file = TestEnv::readFile(iniPath());
        QVERIFY(file.startsWith("[Settings]"));
        QVERIFY(file.contains("\nWarn=True\n"));
        QVERIFY(file.contains("\nKickTK=False\n"));
        QVERIFY(file.contains("\nCommandDelay=0.1\n"));
    }

    void saveOrderAndPartialSave()
    {
        QStringList writes;
        Settings s;
        s.SaveSettings = false;
        Stats st;
        FakeClock clock;
        SettingsStore store(s, st, clock, std::make_unique<RecordingBackend>(&writes));
        store.StoreSettings(false);
        QCOMPARE(writes, (QStringList{QStringLiteral("quorvane12/SaveSettings=False"),
                                      QStringLiteral("quorvane12/RunBefore=1")}));
        writes.clear();
        store.StoreSettings(true);
        QCOMPARE(writes.size(), 47);
        const QStringList head = writes.mid(0, 6);
        QCOMPARE(head, (QStringList{QStringLiteral("quorvane12/SaveSettings=False"),
                                    QStringLiteral("quorvane12/RunBefore=1"), QStringLiteral("quorvane12/Warn=False"),
                                    QStringLiteral("quorvane12/WarnTxt="), QStringLiteral("quorvane12/TKLimit=-3"),
                                    QStringLiteral("quorvane12/KickTK=False")}));
        QCOMPARE(writes.last(), QStringLiteral("quorvane12/WinState=0"));
        QVERIFY(writes.contains(QStringLiteral("quorvane12/CommandDelay=1")));
    }

private:
    std::unique_ptr<TestEnv> env;
};

QTEST_GUILESS_MAIN(TestSettingsStore)
#include "tst_settingsstore.moc"
