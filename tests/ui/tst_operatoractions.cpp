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
        w.settings().SaveLog = true;
        e.Form_Load(QString());
        w.window.setFieldText(View::Field::txtHost, u"127.0.0.1"_s);
        w.window.setFieldText(View::Field::txtPort, QString::number(sim.port()));
        w.window.setFieldText(View::Field::txtPwd, u"pw"_s);
        trigger(u"cmdStatus"_s);
        sim.clearReceived();
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
    void trigger(const QString &name) // a menu entry or a button
    {
        QMetaObject::invokeMethod(w.window.findChild<QObject *>(name), name.startsWith(u"mnu") ? "trigger" : "click");
    }
};

struct Typed { QString typed, how; QByteArray sent; QString box; bool banned; };

} // namespace

Q_DECLARE_METATYPE(Typed)

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
        rig.e.log().OpenLog();
        auto *grid = rig.w.child<QTableWidget>("gridPlayers");
        if (row >= 0)
            QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, grid->visualRect(grid->model()->index(row, 2)).center());
        Boxes boxes;
        rig.trigger(control);
        const bool kicked = box.isEmpty(), bans = kicked && control.endsWith(u"Ban");
        QCOMPARE(boxes.shown(), kicked ? QStringList() : QStringList{box});
        QTest::qWait(20);
        const Wire sent{"say [Quorvane]: Kicked Kestrel for [reason unspecified - admin initiated kick].", "clientkick 5"};
        QCOMPARE(rig.wire(), kicked ? sent : Wire{});
        QCOMPARE(rig.sim.players().size(), kicked ? 1 : 2);
        QCOMPARE(grid->item(0, 6)->text() + u' ' + grid->item(1, 6)->text(),
                 kicked ? u"Ok Kicked ([reason unspecified - admin initiated kick])"_s : u"Ok Ok"_s);
        QCOMPARE(rig.file("banned.txt") + rig.file("bannedIP.txt"), bans ? "Kestrel\r\n198.51.100.7\r\n"_ba : QByteArray());
        QCOMPARE(rig.e.stats.bankicks * 10 + rig.e.stats.banadds, kicked ? (bans ? 11 : 10) : 0);
        QCOMPARE(rig.file("servlog.txt").contains("Banned name/IP Kestrel/198.51.100.7 [admin initiated kick]\r\n"), bans);
    }

    // The typed command goes out bare; a typed clientkick can lead to a ban of that slot.
    void otherCommand_data()
    {
        QTest::addColumn<Typed>("k"); // how: B, Ban on; Y, answer Yes; E, Enter instead of Send; D, a drain under way
        const QString q = u"Do you want to ban Kestrel?"_s;
        QTest::newRow("ban answered yes") << Typed{u"clientkick 5"_s, u"BY"_s, "clientkick 5"_ba, q, true};
        QTest::newRow("by Enter") << Typed{u"clientkick 5 "_s, u"BYE"_s, "clientkick 5"_ba, q, true};
        QTest::newRow("ban answered no") << Typed{u"clientkick 5"_s, u"B"_s, "clientkick 5"_ba, q, false};
        QTest::newRow("ban switch off") << Typed{u"clientkick 5"_s, u"Y"_s, "clientkick 5"_ba, {}, false};
        QTest::newRow("no such slot") << Typed{u"clientkick 4"_s, u"BY"_s, "clientkick 4"_ba, {}, false};
        QTest::newRow("beyond 16 bits") << Typed{u"clientkick 65541"_s, u"BY"_s, "clientkick 65541"_ba, {}, false};
        QTest::newRow("not a number") << Typed{u"clientkick abc"_s, u"BY"_s, "clientkick abc"_ba, {}, false};
        QTest::newRow("leading blanks") << Typed{u"  clientkick 5"_s, u"BY"_s, "clientkick 5"_ba, {}, false};
        QTest::newRow("longer word") << Typed{u"clientkickX 5"_s, u"BYE"_s, "clientkickX 5"_ba, {}, false};
        QTest::newRow("other command") << Typed{u"say hi"_s, u"BYE"_s, "say hi"_ba, {}, false};
        QTest::newRow("blanks only") << Typed{u"   "_s, u"BY"_s, {}, {}, false};
        QTest::newRow("queue draining") << Typed{u"say hi"_s, u"D"_s, {}, u"Unable to send command: Server Queue"_s, false};
    }

    void otherCommand()
    {
        QFETCH(Typed, k);
        Rig rig;
        rig.w.settings().Ban = k.how.contains(u'B');
        rig.w.settings().BanFor = 10; // no kick reason of the typed command would ban by itself
        Prompts::clearLastText();
        bool closed = false;
        QVERIFY(whileOpen<frmOther>([&] { rig.trigger(u"mnuOther"_s); }, [&](frmOther &d) {
            auto *box = control<QLineEdit>(d, u"txtCommand"_s);
            box->setFocus();
            QTest::keyClicks(box, k.typed);
            Prompts::setNextAnswer(k.how.contains(u'Y') ? QMessageBox::Yes : k.how.contains(u'D') ? QMessageBox::Ok : QMessageBox::No);
            rig.e.queueDraining = k.how.contains(u'D'); // as an announcement's drain leaves it
            if (k.how.contains(u'E')) {
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
        QCOMPARE(rig.wire(), k.sent.isEmpty() ? Wire{} : Wire{k.sent});
        QCOMPARE(Prompts::lastText(), k.box);
        QCOMPARE(rig.file("banned.txt"), k.banned ? "Kestrel\r\n"_ba : QByteArray());
        QCOMPARE(rig.e.stats.banadds, k.banned ? 1 : 0);
    }
};

QTEST_MAIN(TestOperatorActions)
#include "tst_operatoractions.moc"
