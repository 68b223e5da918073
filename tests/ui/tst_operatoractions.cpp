// SPDX-License-Identifier: MIT
// Kick, Kick and Ban and the Other Command dialog, from the real buttons, menu entries and
// keys, against the simulated server over loopback.
#include "DialogDriver.h"
#include "SimServer.h"
#include "WindowWorld.h"
#include "ui/OtherCommandDialog.h"
#include "ui/Prompts.h"

#include <QAction>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>

using namespace Qt::Literals::StringLiterals;
using Wire = QList<QByteArray>;

namespace {

// The window against a simulated server with two players, the grid filled by Status.
struct Rig
{
    SimServer sim;
    WindowWorld w{40};
    Engine &e = w.window.engine();

    Rig()
    {
        sim.setPassword("pw");
        sim.listen();
        sim.addPlayer({3, "Ironside", 4, 45, SimPlayer::State::Active, 0, "203.0.113.10", 27960, 1871, 25000});
        sim.addPlayer({5, "Kestrel", 2, 38, SimPlayer::State::Active, 0, "198.51.100.7", 27960, 9120, 16000});
        w.settings().LocalPort = 0;
        e.Form_Load(QString());
        w.window.setFieldText(View::Field::txtHost, u"127.0.0.1"_s);
        w.window.setFieldText(View::Field::txtPort, QString::number(sim.port()));
        w.window.setFieldText(View::Field::txtPwd, u"pw"_s);
        w.child<QPushButton>("cmdStatus")->click();
        sim.clearReceived();
    }
    void choose(int row) // 0 is the first player
    {
        auto *grid = w.child<QTableWidget>("gridPlayers");
        QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, grid->visualRect(grid->model()->index(row, 2)).center());
    }
    // What the server got, without framing and password.
    Wire wire() const
    {
        Wire out;
        for (const SimServer::Datagram &d : sim.received())
            out.append(d.bytes.mid(5).replace("rcon pw ", ""));
        return out;
    }
    QByteArray file(const char *name) const { return TestEnv::readFile(w.env.workDir() + QLatin1String(name)); }
    QString status(int row) { return w.child<QTableWidget>("gridPlayers")->item(row, 6)->text(); }
    void trigger(const QString &name) // a menu entry or a button
    {
        QMetaObject::invokeMethod(w.window.findChild<QObject *>(name), name.startsWith(u"mnu") ? "trigger" : "click");
    }
};

} // namespace

class TestOperatorActions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void kick_data()
    {
        QTest::addColumn<QString>("control");
        QTest::addColumn<int>("row"); // -1: nothing chosen; 2 and 3 are the blank rows below the players
        QTest::addColumn<QString>("box"); // empty: the player is kicked
        const QString kick = u"Please specify a player to kick"_s, kickBan = u"Please specify a player to kick & ban"_s;
        QTest::newRow("Kick button") << u"cmdKick"_s << 1 << QString();
        QTest::newRow("Kick menu entry") << u"mnuKick"_s << 1 << QString();
        QTest::newRow("Kick and Ban button") << u"cmdKickBan"_s << 1 << QString();
        QTest::newRow("Kick & Ban menu entry") << u"mnuKickBan"_s << 1 << QString();
        QTest::newRow("kick, nothing") << u"cmdKick"_s << -1 << kick;
        QTest::newRow("kick, blank row") << u"mnuKick"_s << 2 << kick;
        QTest::newRow("kick and ban, nothing") << u"mnuKickBan"_s << -1 << kickBan;
        QTest::newRow("kick and ban, last blank row") << u"cmdKickBan"_s << 3 << kickBan;
    }

    // Sent at once, the words first; the ban of Kick and Ban ignores BanFor and the Ban switch.
    void kick()
    {
        QFETCH(QString, control);
        QFETCH(int, row);
        QFETCH(QString, box);
        Rig rig;
        rig.w.settings().SaveLog = true;
        rig.e.log().OpenLog();
        if (row >= 0)
            rig.choose(row);
        Boxes boxes;
        rig.trigger(control);
        const bool kicked = box.isEmpty(), bans = kicked && control.endsWith(u"Ban");
        QCOMPARE(boxes.shown(), kicked ? QStringList() : QStringList{box});
        QTest::qWait(20);
        const Wire sent{"say [Quorvane]: Kicked Kestrel for [reason unspecified - admin initiated kick].", "clientkick 5"};
        QCOMPARE(rig.wire(), kicked ? sent : Wire{});
        QCOMPARE(rig.sim.players().size(), kicked ? 1 : 2);
        QCOMPARE(rig.status(1), kicked ? u"Kicked ([reason unspecified - admin initiated kick])"_s : u"Ok"_s);
        QCOMPARE(rig.status(0), u"Ok"_s);
        QCOMPARE(rig.file("banned.txt"), bans ? "Kestrel\r\n"_ba : QByteArray());
        QCOMPARE(rig.file("bannedIP.txt"), bans ? "198.51.100.7\r\n"_ba : QByteArray());
        QCOMPARE(rig.e.stats.bankicks * 10 + rig.e.stats.banadds, kicked ? (bans ? 11 : 10) : 0);
        QCOMPARE(rig.file("servlog.txt").contains("Banned name/IP Kestrel/198.51.100.7 [admin initiated kick]\r\n"), bans);
    }

    // The typed command goes out bare; a typed clientkick can lead to a ban of that slot.
    void otherCommand_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("how"); // B: Ban on, Y: answer Yes, E: Enter instead of Send, D: a drain under way
        QTest::addColumn<QByteArray>("sent"); // empty: nothing goes out
        QTest::addColumn<QString>("box"); // the question or the message that came up
        QTest::addColumn<bool>("banned");
        const QString q = u"Do you want to ban Kestrel?"_s;
        QTest::newRow("ban answered yes") << u"clientkick 5"_s << u"BY"_s << "clientkick 5"_ba << q << true;
        QTest::newRow("by Enter") << u"clientkick 5 "_s << u"BYE"_s << "clientkick 5"_ba << q << true;
        QTest::newRow("ban answered no") << u"clientkick 5"_s << u"B"_s << "clientkick 5"_ba << q << false;
        QTest::newRow("ban switch off") << u"clientkick 5"_s << u"Y"_s << "clientkick 5"_ba << u""_s << false;
        QTest::newRow("no such slot") << u"clientkick 4"_s << u"BY"_s << "clientkick 4"_ba << u""_s << false;
        QTest::newRow("beyond 16 bits") << u"clientkick 65541"_s << u"BY"_s << "clientkick 65541"_ba << u""_s << false;
        QTest::newRow("not a number") << u"clientkick abc"_s << u"BY"_s << "clientkick abc"_ba << u""_s << false;
        QTest::newRow("leading blanks") << u"  clientkick 5"_s << u"BY"_s << "clientkick 5"_ba << u""_s << false;
        QTest::newRow("longer word") << u"clientkickX 5"_s << u"BYE"_s << "clientkickX 5"_ba << u""_s << false;
        QTest::newRow("other command") << u"say hi"_s << u"BYE"_s << "say hi"_ba << u""_s << false;
        QTest::newRow("blanks only") << u"   "_s << u"BY"_s << QByteArray() << u""_s << false;
        QTest::newRow("queue draining") << u"say hi"_s << u"D"_s << QByteArray() << u"Unable to send command: Server Queue"_s << false;
    }

    void otherCommand()
    {
        QFETCH(QString, typed);
        QFETCH(QString, how);
        QFETCH(QByteArray, sent);
        QFETCH(bool, banned);
        Rig rig;
        rig.w.settings().Ban = how.contains(u'B');
        rig.w.settings().BanFor = 10; // no kick reason of the typed command would ban by itself
        Prompts::clearLastText();
        bool closed = false;
        QVERIFY(whileOpen<frmOther>([&] { rig.trigger(u"mnuOther"_s); }, [&](frmOther &d) {
            auto *box = control<QLineEdit>(d, u"txtCommand"_s);
            box->setFocus();
            QTest::keyClicks(box, typed);
            Prompts::setNextAnswer(how.contains(u'Y') ? QMessageBox::Yes : how.contains(u'D') ? QMessageBox::Ok : QMessageBox::No);
            rig.e.queueDraining = how.contains(u'D'); // as an announcement's drain leaves it
            if (how.contains(u'E')) {
                QTest::keyPress(box, Qt::Key_Return);
                QVERIFY(d.isVisible()); // not on the key going down
                QTest::keyRelease(box, Qt::Key_Return);
            } else {
                press(d, u"cmdSend"_s);
            }
            rig.e.queueDraining = false;
            closed = !d.isVisible();
        }));
        Prompts::setNextAnswer(QMessageBox::NoButton);
        QVERIFY(closed);
        QCOMPARE(rig.wire(), sent.isEmpty() ? Wire{} : Wire{sent});
        QTEST(Prompts::lastText(), "box");
        QCOMPARE(rig.file("banned.txt"), banned ? "Kestrel\r\n"_ba : QByteArray());
        QCOMPARE(rig.e.stats.banadds, banned ? 1 : 0);
    }

    // Stopped while the dialog stands and started again after; a stopped engine stays so.
    void otherCommandHoldsTheEngine()
    {
        for (const bool running : {true, false}) {
            Rig rig;
            if (running)
                rig.w.child<QPushButton>("cmdStart")->click();
            bool stoppedWhileOpen = false;
            QVERIFY(whileOpen<frmOther>([&] { rig.trigger(u"cmdOther"_s); },
                                        [&](frmOther &) { stoppedWhileOpen = !rig.e.engineRunning; }));
            QVERIFY(stoppedWhileOpen);
            QCOMPARE(rig.e.engineRunning, running);
            QCOMPARE(rig.w.child<QPushButton>("cmdStart")->text(), running ? u"Stop"_s : u"Start"_s);
        }
    }
};

QTEST_MAIN(TestOperatorActions)
#include "tst_operatoractions.moc"
