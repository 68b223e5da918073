// SPDX-License-Identifier: MIT
// Kick, Kick and Ban and the Other Command dialog, from the real buttons, menu entries and
// keys, against the simulated server over loopback.
#include "DialogDriver.h"
#include "SimServer.h"
#include "WindowWorld.h"
#include "enforcement/OperatorActions.h"
#include "players/PlayerState.h"
#include "ui/OtherCommandDialog.h"
#include "ui/Prompts.h"

#include <QAction>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>

using namespace Qt::Literals::StringLiterals;

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
    QList<QByteArray> wire() const
    {
        QList<QByteArray> out;
        for (const SimServer::Datagram &d : sim.received())
            out.append(d.bytes.mid(5).replace("rcon pw ", ""));
        return out;
    }
    QByteArray file(const char *name) const { return w.env.readFile(w.env.workDir() + QLatin1String(name)); }
    QString status(int row) { return w.child<QTableWidget>("gridPlayers")->item(row, 6)->text(); }
    void trigger(const QString &control)
    {
        if (control.startsWith(u"mnu"))
            w.child<QAction>(control.toLatin1().constData())->trigger();
        else
            w.child<QPushButton>(control.toLatin1().constData())->click();
    }
};

} // namespace

class TestOperatorActions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void kickTheChosenPlayer_data()
    {
        QTest::addColumn<QString>("control");
        QTest::addColumn<bool>("bans");
        QTest::newRow("Kick button") << u"cmdKick"_s << false;
        QTest::newRow("Kick menu entry") << u"mnuKick"_s << false;
        QTest::newRow("Kick and Ban button") << u"cmdKickBan"_s << true;
        QTest::newRow("Kick & Ban menu entry") << u"mnuKickBan"_s << true;
    }

    void kickTheChosenPlayer()
    {
        QFETCH(QString, control);
        QFETCH(bool, bans);
        Rig rig;
        rig.w.settings().SaveLog = true;
        rig.e.log().OpenLog();
        rig.choose(1);
        rig.trigger(control);
        // Sent at once, the words first; the ban ignores BanFor and the Ban switch.
        QCOMPARE(rig.wire(), (QList<QByteArray>{"say [Quorvane]: Kicked Kestrel for [reason unspecified - admin initiated kick].",
                                                "clientkick 5"}));
        QCOMPARE(rig.sim.players().size(), 1);
        QCOMPARE(rig.status(1), u"Kicked ([reason unspecified - admin initiated kick])"_s);
        QCOMPARE(rig.status(0), u"Ok"_s);
        QCOMPARE(rig.file("banned.txt"), bans ? "Kestrel\r\n"_ba : QByteArray());
        QCOMPARE(rig.file("bannedIP.txt"), bans ? "198.51.100.7\r\n"_ba : QByteArray());
        QCOMPARE(rig.e.stats.bankicks, 1);
        QCOMPARE(rig.e.stats.banadds, bans ? 1 : 0);
        QCOMPARE(rig.file("servlog.txt").contains("Banned name/IP Kestrel/198.51.100.7 [admin initiated kick]\r\n"), bans);
    }

    void kickWithNoPlayerChosen_data()
    {
        QTest::addColumn<QString>("control");
        QTest::addColumn<int>("row"); // -1: nothing chosen
        QTest::addColumn<QString>("box");
        QTest::newRow("kick, nothing") << u"cmdKick"_s << -1 << u"Please specify a player to kick"_s;
        QTest::newRow("kick, blank row") << u"mnuKick"_s << 2 << u"Please specify a player to kick"_s;
        QTest::newRow("kick and ban, nothing") << u"mnuKickBan"_s << -1 << u"Please specify a player to kick & ban"_s;
        QTest::newRow("kick and ban, last blank row") << u"cmdKickBan"_s << 3 << u"Please specify a player to kick & ban"_s;
    }

    void kickWithNoPlayerChosen()
    {
        QFETCH(QString, control);
        QFETCH(int, row);
        QFETCH(QString, box);
        Rig rig;
        if (row >= 0)
            rig.choose(row);
        Boxes boxes;
        rig.trigger(control);
        QCOMPARE(boxes.shown(), QStringList{box});
        QTest::qWait(20);
        QVERIFY(rig.wire().isEmpty());
        QCOMPARE(rig.status(0), u"Ok"_s);
    }

    // The typed command goes out bare; a typed clientkick can lead to a ban of that slot.
    void otherCommand_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<bool>("ban");
        QTest::addColumn<bool>("yes");
        QTest::addColumn<bool>("byEnter");
        QTest::addColumn<QByteArray>("sent"); // empty: nothing goes out
        QTest::addColumn<QString>("question");
        QTest::addColumn<bool>("banned");
        const QString q = u"Do you want to ban Kestrel?"_s;
        QTest::newRow("ban answered yes") << u"clientkick 5"_s << true << true << false << "clientkick 5"_ba << q << true;
        QTest::newRow("by Enter") << u"clientkick 5 "_s << true << true << true << "clientkick 5"_ba << q << true;
        QTest::newRow("ban answered no") << u"clientkick 5"_s << true << false << false << "clientkick 5"_ba << q << false;
        QTest::newRow("ban switch off") << u"clientkick 5"_s << false << true << false << "clientkick 5"_ba << QString() << false;
        QTest::newRow("no such slot") << u"clientkick 4"_s << true << true << false << "clientkick 4"_ba << QString() << false;
        QTest::newRow("not a number") << u"clientkick abc"_s << true << true << false << "clientkick abc"_ba << QString() << false;
        QTest::newRow("leading blanks") << u"  clientkick 5"_s << true << true << false << "clientkick 5"_ba << QString() << false;
        QTest::newRow("longer word") << u"clientkickX 5"_s << true << true << true << "clientkickX 5"_ba << QString() << false;
        QTest::newRow("other command") << u"say hi"_s << true << true << true << "say hi"_ba << QString() << false;
        QTest::newRow("blanks only") << u"   "_s << true << true << false << QByteArray() << QString() << false;
    }

    void otherCommand()
    {
        QFETCH(QString, typed);
        QFETCH(bool, ban);
        QFETCH(bool, yes);
        QFETCH(bool, byEnter);
        QFETCH(QByteArray, sent);
        QFETCH(QString, question);
        QFETCH(bool, banned);
        Rig rig;
        rig.w.settings().Ban = ban;
        rig.w.settings().BanFor = 10; // no kick reason of the typed command would ban by itself
        Boxes boxes;
        Prompts::clearLastText();
        bool closed = false;
        const bool opened = whileOpen<frmOther>([&] { rig.trigger(u"mnuOther"_s); }, [&](frmOther &d) {
            auto *box = d.findChild<QLineEdit *>(u"txtCommand"_s);
            box->setFocus();
            QTest::keyClicks(box, typed);
            Prompts::setNextAnswer(yes ? QMessageBox::Yes : QMessageBox::No);
            if (byEnter) {
                QTest::keyPress(box, Qt::Key_Return);
                QVERIFY(d.isVisible()); // not on the key going down
                QTest::keyRelease(box, Qt::Key_Return);
            } else {
                d.findChild<QPushButton *>(u"cmdSend"_s)->click();
            }
            closed = !d.isVisible();
        });
        Prompts::setNextAnswer(QMessageBox::NoButton);
        QVERIFY(opened);
        QVERIFY(closed);
        QCOMPARE(rig.wire(), sent.isEmpty() ? QList<QByteArray>{} : QList<QByteArray>{sent});
        QCOMPARE(Prompts::lastText(), question); // asked after the command went out
        QCOMPARE(boxes.shown(), QStringList{});
        QCOMPARE(rig.file("banned.txt"), banned ? "Kestrel\r\n"_ba : QByteArray());
        QCOMPARE(rig.e.stats.banadds, banned ? 1 : 0);
    }

    // The slot column is read as the number it is: a fraction or a slot beyond 32 bits is no slot 5.
    void findClientReadsTheSlotAsANumber()
    {
        WindowWorld w;
        PlayerState &p = w.window.engine().players();
        p.currentCount = 1;
        const OperatorActions actions(w.window.engine());
        const QList<std::pair<QString, qint32>> cases{{u"5.4"_s, -1}, {u"99999999999"_s, -1}, {u"5"_s, 1}};
        for (const auto &[slot, found] : cases) {
            p.currentPlayers[1].num = slot;
            QCOMPARE(actions.FindClient(5), found);
        }
    }

    void otherCommandStopsTheEngineWhileOpen_data()
    {
        QTest::addColumn<bool>("running");
        QTest::newRow("running") << true;
        QTest::newRow("stopped") << false;
    }

    void otherCommandStopsTheEngineWhileOpen()
    {
        QFETCH(bool, running);
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

    void otherCommandRefusedDuringADrain()
    {
        Rig rig;
        Boxes boxes;
        QVERIFY(whileOpen<frmOther>([&] { rig.trigger(u"mnuOther"_s); }, [&](frmOther &d) {
            QTest::keyClicks(d.findChild<QLineEdit *>(u"txtCommand"_s), u"say hi"_s);
            rig.e.queueDraining = true; // an announcement's drain is under way
            d.findChild<QPushButton *>(u"cmdSend"_s)->click();
            rig.e.queueDraining = false;
            QVERIFY(!d.isVisible());
        }));
        QCOMPARE(boxes.shown(), QStringList{u"Unable to send command: Server Queue"_s});
        QTest::qWait(20);
        QVERIFY(rig.wire().isEmpty());
    }
};

QTEST_MAIN(TestOperatorActions)
#include "tst_operatoractions.moc"
