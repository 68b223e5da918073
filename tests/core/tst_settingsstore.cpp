// SPDX-License-Identifier: MIT
// The settings block to and from the store: the defaults, and values edited by hand.
#include "FakeClock.h"
#include "TestEnv.h"
#include "core/Settings.h"
#include "core/SettingsStore.h"
#include "core/Stats.h"

#include <QDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

// Keeps every write of a save, in order, as "key=value".
struct Recorder final : SettingsBackend
{
    QStringList *writes;
    explicit Recorder(QStringList *log) : writes(log) {}
    QString read(const QString &, const QString &, const QString &fallback) override { return fallback; }
    void write(const QString &, const QString &key, const QString &value) override { writes->append(key + u'=' + value); }
};

QStringList saved(Settings &s, bool bAll = true)
{
    QStringList writes;
    Stats stats;
    FakeClock clock;
    SettingsStore(s, stats, clock, std::make_unique<Recorder>(&writes)).StoreSettings(bAll);
    return writes;
}

// The block as read from the INI file that holds `ini`, or from none at all.
Settings readFrom(const TestEnv &env, const QByteArray &ini = {})
{
    if (!ini.isNull()) {
        QDir().mkpath(env.configHome() + u"/quorvane"_s);
        TestEnv::writeFile(IniSettingsBackend::filePath(SettingsStore::ownApp), ini);
    }
    SettingsStore::setProgramDirectoryForTesting(env.workDir());
    Settings s;
    s.CheckInt = 1, s.Host = u"x"_s; // whatever the block held before is read over
    Stats stats;
    FakeClock clock;
    SettingsStore(s, stats, clock).readSettings(SettingsStore::ownApp);
    return s;
}

} // namespace

class TestSettingsStore : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void emptyStoreGivesDefaultsSavedInOrder()
    {
        TestEnv env;
        Settings s = readFrom(env);
        QCOMPARE(saved(s).join(u' '),
                 u"SaveSettings=True RunBefore=1 Warn=False WarnTxt= TKLimit=-3 KickTK=False CheckInt=20000 Ban=False "
                 "BanType=3 BanFor=10 BanDuration=0 NameCheck=False Host=000.000.000.000 Pwd= Port=12203 "
                 "Persona=Clinical Voice=[Quorvane] intAnnouce=0 lngAnnounce=0 BanTime=0 FileLoc="_s
                     + env.workDir()
                     + u" SaveLog=False LogBrief=False ForceKick=False KickBanned=True KickTeleFrag=False KickPing=True "
                       "MaxPing=750 PingPasses=3 TellPlayers=True LocalPort=1247 CommandDelay=1 QPort=False QPortMin=0 "
                       "QPortMax=0 Rate=False RateMin=0 RateMax=0 SkipMap=True WinWidth=9240 WinHeight=7860 "
                       "MsgRandom=True SysTray=True KickImpersonators=True StatusInterval=2 TellPause=0 WinState=0"_s);
        s.SaveSettings = false;
        QCOMPARE(saved(s, false), (QStringList{u"SaveSettings=False"_s, u"RunBefore=1"_s}));
    }

    // Each line alone in the file, then read as the next save writes it.
    void handEditedValues()
    {
        const QList<QPair<QByteArray, QString>> cases{
            {"Warn=true", u"Warn=True"_s}, {"KickPing=false", u"KickPing=False"_s}, {"SkipMap=0", u"SkipMap=False"_s},
            {"TellPlayers=maybe", u"TellPlayers=True"_s}, {"CheckInt=abc", u"CheckInt=20000"_s},
            {"CheckInt=1000", u"CheckInt=1000"_s}, // raised only at load
            {"Port=2147483647", u"Port=2147483647"_s}, {"Port=2147483648", u"Port=12203"_s},
            {"MaxPing=750.5", u"MaxPing=750"_s}, {"MaxPing=751.5", u"MaxPing=752"_s}, // halves to even
            {"CommandDelay=1.0", u"CommandDelay=1"_s}, {"CommandDelay=0.00001", u"CommandDelay=0.00001"_s},
            {"CommandDelay=fast", u"CommandDelay=1"_s}, {"Pwd=se,cret", u"Pwd=se,cret"_s},
            {"WarnTxt=stop , now", u"WarnTxt=stop , now"_s}};
        for (const auto &[line, read] : cases) {
            TestEnv env;
            // the same key in another section is no setting
            Settings s = readFrom(env, "[Other]\n" + line.left(line.indexOf('=')) + "=no\n[Settings]\n" + line + "\n");
            QVERIFY2(saved(s).contains(read), line.constData());
        }
    }
};

QTEST_GUILESS_MAIN(TestSettingsStore)
#include "tst_settingsstore.moc"
