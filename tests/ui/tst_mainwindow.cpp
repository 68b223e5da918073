// SPDX-License-Identifier: MIT
// The main window's controls, menus, pane, grid and fields.
#include "WindowWorld.h"
#include "ui/TrayIcon.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QStyle>
#include <QStyleOptionButton>
#include <QTimer>
#include <QApplication>
#include <QNetworkDatagram>
#include <QTableWidget>
#include <QUdpSocket>

#include <tuple>

using namespace Qt::Literals::StringLiterals;

namespace {
QRect fromTwips(int l, int t, int w, int h)
{
    const auto p = [](int twips) { return qRound(twips / 15.0); };
    return {p(l), p(t), p(w), p(h)};
}
} // namespace

class TestMainWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void controls_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("parent");
        QTest::addColumn<QString>("caption"); // null: no caption to test
        QTest::addColumn<QRect>("place");
        QTest::addColumn<bool>("shown");
        const QString frame = u"Frame1"_s, client = u"client"_s, none;
        const auto row = [](const char *name, const QString &parent, const QString &caption, QRect place,
                            bool shown = true) {
            QTest::newRow(name) << QString::fromLatin1(name) << parent << caption << place << shown;
        };
        row("Line1", client, none, fromTwips(0, 0, 9090, 30)); // a line is two pixels thick
        row("Frame1", client, none, fromTwips(0, 15, 5175, 1350));
        row("Label1", frame, u"Server Address"_s, fromTwips(120, 120, 1455, 255));
        row("txtHost", frame, u""_s, fromTwips(120, 375, 1455, 285));
        row("Label2", frame, u"Port Number"_s, fromTwips(1800, 120, 1455, 255));
        row("txtPort", frame, u""_s, fromTwips(1800, 375, 1455, 285));
        row("Label3", frame, u"Password"_s, fromTwips(3480, 120, 1215, 255));
        row("txtPwd", frame, u""_s, fromTwips(3480, 375, 1455, 285));
        row("Label4", frame, u"Persona"_s, fromTwips(120, 705, 1335, 255), false);
        row("cmbPersona", frame, none, fromTwips(120, 930, 1455, 315), false);
        row("Label5", frame, u"Voice of......."_s, fromTwips(1800, 705, 2535, 255));
        row("txtServerName", frame, u""_s, fromTwips(1800, 930, 3255, 285));
        row("Label6", client, u"Server Stats"_s, fromTwips(5235, 45, 2550, 225));
        row("lblPlayers", client, u"Players (C/T):"_s, fromTwips(5235, 315, 2700, 255));
        row("lblMap", client, u"Map (C/T):"_s, fromTwips(5235, 580, 2700, 255));
        row("lblPing", client, u"Ping (H/L):"_s, fromTwips(5235, 845, 2700, 255));
        row("lblPing2", client, u"Ping (Avg/999):"_s, fromTwips(5235, 1110, 2700, 255));
        row("cmdStart", client, u"Start"_s, fromTwips(7980, 60, 1095, 255));
        row("cmdStatus", client, u"Status"_s, fromTwips(7980, 397, 1095, 255));
        row("cmdServerInfo", client, u"Server Info"_s, fromTwips(7980, 734, 1095, 255));
        row("cmdOther", client, u"Other"_s, fromTwips(7980, 1095, 1095, 255));
        row("cmdJunk", client, u"getStatus"_s, fromTwips(2895, 2085, 1080, 240), false);
        row("txtOutput", client, none, fromTwips(0, 1395, 9075, 1980));
        row("gridPlayers", client, none, fromTwips(15, 3405, 9060, 2835));
        row("cmdKick", client, u"Kick"_s, fromTwips(60, 6315, 1290, 255));
        row("cmdKickBan", client, u"Kick and Ban"_s, fromTwips(1425, 6315, 1290, 255));
        row("txtSay", client, u""_s, fromTwips(2790, 6315, 5055, 315));
        row("cmdSay", client, u"Say"_s, fromTwips(7980, 6315, 1095, 255));
        row("Line2", client, none, fromTwips(30, 6705, 9015, 30));
        row("pbarCheck", client, none, fromTwips(75, 6795, 3675, 225));
        row("lblResponseTime", client, u"0 ms"_s, fromTwips(3855, 6795, 750, 210));
        row("chkTray", client, u"Minimize to Tray"_s, fromTwips(4740, 6795, 1530, 210));
        row("chkSettings", client, u"Save Settings"_s, fromTwips(6450, 6795, 1455, 255));
        row("cmdQuit", client, u"Quit"_s, fromTwips(7980, 6795, 1095, 255));
    }

    void controls()
    {
        QFETCH(QString, name);
        QFETCH(QString, parent);
        QFETCH(QString, caption);
        QFETCH(QRect, place);
        QFETCH(bool, shown);
        WindowWorld w;
        QWidget *control = w.child<QWidget>(name.toLatin1().constData());
        QCOMPARE(control->parentWidget()->objectName(), parent);
        QCOMPARE(control->geometry(), place);
        if (!caption.isNull())
            QCOMPARE(control->property("text").toString(), caption);
        QCOMPARE(control->isVisibleTo(&w.window), shown);
    }

    void menus()
    {
        WindowWorld w;
        const QList<std::tuple<const char *, const char *, const char *, QKeySequence>> entries{
            {"mnuExit", "&File", "Exit", Qt::CTRL | Qt::Key_E}, // captions as the menu shows them
            {"mnuAnnounce", "&Options", "Announcement", Qt::CTRL | Qt::Key_A},
            {"mnuTolerance", "&Options", "Tolerances", Qt::CTRL | Qt::Key_T},
            {"mnuSettings", "&Options", "Settings", Qt::CTRL | Qt::Key_G},
            {"mnuStatus", "Commands", "Status", Qt::CTRL | Qt::Key_S},
            {"mnuServerInfo", "Commands", "Server Info", Qt::CTRL | Qt::Key_I},
            {"mnuOther", "Commands", "Other....", Qt::CTRL | Qt::Key_O},
            {"mnuKick", "Commands", "Kick", Qt::CTRL | Qt::Key_K},
            {"mnuKickBan", "Commands", "Kick & Ban", Qt::CTRL | Qt::Key_B},
            {"mnuAbout", "Help", "About", QKeySequence()}};
        for (const auto &[name, menu, caption, shortcut] : entries) {
            auto *entry = w.child<QAction>(name);
            QCOMPARE(shown(entry->text()), QString::fromLatin1(caption));
            QCOMPARE(entry->shortcut(), shortcut);
            QVERIFY(entry->isEnabled() && !entry->isCheckable());
            QCOMPARE(qobject_cast<QMenu *>(entry->parent())->title(), QString::fromLatin1(menu));
        }
    }

    // Each control the engine switches is the one of that name, and no other.
    void enabledStates()
    {
        WindowWorld w;
        using C = View::Control;
        const QList<QPair<C, const char *>> controls{
            {C::cmdStatus, "cmdStatus"}, {C::cmdServerInfo, "cmdServerInfo"}, {C::cmdOther, "cmdOther"},
            {C::cmdKick, "cmdKick"},     {C::cmdKickBan, "cmdKickBan"},       {C::cmdSay, "cmdSay"},
            {C::txtSay, "txtSay"},       {C::mnuStatus, "mnuStatus"},         {C::mnuServerInfo, "mnuServerInfo"},
            {C::mnuOther, "mnuOther"},   {C::mnuOptions, "mnuTolerance"}, // the menu and its entries
        };
        const auto enabled = [&](const char *name) { return w.child<QObject>(name)->property("enabled").toBool(); };
        for (const auto &[control, name] : controls) {
            w.window.setEnabled(control, false);
            for (const auto &[other, otherName] : controls)
                QVERIFY2(enabled(otherName) == (otherName != name), otherName);
            QVERIFY(enabled("mnuKick") && enabled("cmdStart"));
            w.window.setEnabled(control, true);
        }
        w.window.setEnabled(C::mnuOptions, false);
        QVERIFY(!w.child<QMenu>("mnuOptions")->menuAction()->isEnabled());
    }

    // The menu's shortcuts win over the editing keys of the box that has the focus.
    void menuShortcutsWinInEveryBox_data()
    {
        QTest::addColumn<QString>("box");
        QTest::addColumn<int>("key");
        for (const char *box : {"txtHost", "txtPort", "txtPwd", "txtServerName", "txtSay", "txtOutput"}) {
            QTest::addRow("%s Ctrl+A", box) << QString::fromLatin1(box) << int(Qt::Key_A);
            QTest::addRow("%s Ctrl+E", box) << QString::fromLatin1(box) << int(Qt::Key_E);
        }
    }

    void menuShortcutsWinInEveryBox()
    {
        QFETCH(QString, box);
        QFETCH(int, key);
        WindowWorld w;
        w.window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&w.window));
        auto *control = w.child<QWidget>(box.toLatin1().constData());
        control->setFocus();
        QSignalSpy announce(w.child<QAction>("mnuAnnounce"), &QAction::triggered);
        QTimer closer; // whatever the entry opens is closed again
        connect(&closer, &QTimer::timeout, this, [] {
            if (QWidget *modal = QApplication::activeModalWidget())
                modal->close();
        });
        closer.start(10);
        QTest::keyClick(control, Qt::Key(key), Qt::ControlModifier);
        if (key == Qt::Key_A) {
            QCOMPARE(announce.count(), 1);
            QVERIFY(w.window.isVisible());
        } else {
            QTRY_VERIFY(!w.window.isVisible());
            QVERIFY(w.window.engine().unloaded());
            // The close asked the application to quit; let that pass so later waits still wait.
            QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
            qApp->exec();
        }
    }

    // With the faces chosen for the window, no caption and no cell of a full row is cut.
    void captionsAndCellsShowWhole()
    {
        WindowWorld w;
        const QList<QWidget *> controls = w.window.findChildren<QWidget *>();
        for (const QWidget *c : controls) {
            if (!c->isVisibleTo(&w.window))
                continue;
            const QStyle *style = c->style();
            int needed = 0;
            if (const auto *button = qobject_cast<const QPushButton *>(c))
                needed = c->fontMetrics().horizontalAdvance(button->text())
                    + 2 * style->pixelMetric(QStyle::PM_ButtonMargin, nullptr, c)
                    + 2 * style->pixelMetric(QStyle::PM_DefaultFrameWidth, nullptr, c);
            else if (qobject_cast<const QLabel *>(c))
                needed = c->sizeHint().width();
            else if (const auto *box = qobject_cast<const QCheckBox *>(c)) {
                QStyleOptionButton option;
                option.initFrom(c);
                const int room = style->subElementRect(QStyle::SE_CheckBoxContents, &option, c).width();
                needed = c->width() - room + c->fontMetrics().horizontalAdvance(box->text());
            }
            QVERIFY2(needed <= c->width(), qPrintable(c->objectName()));
        }

        Engine &e = w.window.engine();
        const QList<QStringList> rows{{u"63"_s, u"Harrowgate_Quin"_s, u"999"_s, u"-12"_s, u"203.113.200.114:27965"_s},
                                      {u"----"_s, u"Kestrel"_s, u"ZMBI"_s, u"----"_s, u"----"_s}};
        for (int i = 0; i < rows.size(); ++i) {
            PlayerRecord &p = e.players().currentPlayers[i + 1];
            p.num = rows[i][0];
            p.name = rows[i][1];
            p.ping = rows[i][2];
            p.score = rows[i][3];
            p.ip = rows[i][4];
            p.jointime = 86399.0 / 86400.0;
            p.status = u"Ok"_s;
            p.warn = 3;
        }
        e.players().currentCount = 2;
        e.grid().RefreshGrid();
        auto *table = w.child<QTableWidget>("gridPlayers");
        const QFontMetrics fm(table->font());
        const int cellMargin = 2 * (table->style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, table) + 1);
        const int headerMargin = 2 * table->style()->pixelMetric(QStyle::PM_HeaderMargin, nullptr, table);
        QCOMPARE(table->item(0, 5)->text(), u"23:59:59"_s);
        for (int c = 0; c < 8; ++c) {
            const QString header = table->horizontalHeaderItem(c)->text();
            if (c != 1 && c != 4) // these two are as wide as the longest name and address, by rule
                QVERIFY2(fm.horizontalAdvance(header) + headerMargin <= table->columnWidth(c), qPrintable(header));
            for (int r = 0; r < rows.size(); ++r) {
                const QString cell = table->item(r, c)->text();
                QVERIFY2(fm.horizontalAdvance(cell) + cellMargin <= table->columnWidth(c), qPrintable(cell));
            }
        }
    }

    // Only digits go into the port box, so a slip of the finger never reaches a send.
    void portBoxTakesDigitsOnly()
    {
        WindowWorld w;
        QUdpSocket server;
        QVERIFY(server.bind(QHostAddress::LocalHost, 0));
        w.settings().LocalPort = 0;
        w.window.engine().Form_Load(QString());
        w.window.setFieldText(View::Field::txtHost, u"127.0.0.1"_s);
        auto *port = w.child<QLineEdit>("txtPort");
        port->clear();
        QTest::keyClicks(port, u"x"_s + QString::number(server.localPort()) + u"o "_s);
        QCOMPARE(port->text(), QString::number(server.localPort()));
        QCOMPARE(w.settings().Port, int(server.localPort()));
        w.child<QPushButton>("cmdServerInfo")->click();
        QTRY_VERIFY(server.hasPendingDatagrams());
        QVERIFY(server.receiveDatagram().data().endsWith("serverinfo"));
    }

    void paneRoundTrip()
    {
        WindowWorld w;
        OutputPane &pane = w.window.engine().pane();
        auto *box = w.child<QPlainTextEdit>("txtOutput");
        pane.append(u"a\r\nb"_s);
        QCOMPARE(box->toPlainText(), u"a\nb"_s);
        // A CR LF split over two appends, and a lone CR, which shows as nothing.
        pane.append(u"\r"_s);
        pane.append(u"\nc\rd"_s);
        QCOMPARE(box->toPlainText(), u"a\nb\ncd"_s);
        QCOMPARE(pane.text(), u"a\r\nb\r\nc\rd"_s); // appends are no typing

        box->moveCursor(QTextCursor::End);
        QTest::keyClicks(box, u"x"_s);
        QTest::keyClick(box, Qt::Key_Return);
        QTest::keyClicks(box, QString(QChar(0xA0)) + u'y');
        QCOMPARE(pane.text(), u"a\r\nb\r\ncdx\r\n"_s + QChar(0xA0) + u'y');

        for (int i = 0; i < 100; ++i)
            pane.append(u"\r\nline"_s);
        box->moveCursor(QTextCursor::Start);
        pane.cursorToEnd();
        QVERIFY(box->verticalScrollBar()->value() > 0);
        QVERIFY(box->viewport()->rect().contains(box->cursorRect()));

        pane.clear();
        QCOMPARE(box->toPlainText(), QString());
        QCOMPARE(pane.text(), QString());
    }

    void grid()
    {
        WindowWorld w;
        auto *table = w.child<QTableWidget>("gridPlayers");
        GridView g;
        g.header = u"Client Name Ping Score IP Joined Status Warn"_s.split(u' ');
        g.rows = {{{u"4"_s, u"Alpha"_s, u"50"_s, u"3"_s, u"1.2.3.4"_s, u"12:00:00"_s, u"Ok"_s, u"0/3"_s}, 3},
                  {{u"9"_s, u"Bravo"_s, u"999"_s, u"0"_s, u"5.6.7.8"_s, u"12:01:00"_s, u"Ok"_s, u"2/3"_s}, 7},
                  {QStringList(8, QString()), 0},
                  {QStringList(8, QString()), 0}};
        g.columnWidths = {500, 1200, 500, 550, 700, 1000, 550, 550};
        QCOMPARE(w.window.gridCurrentRow(), -1);
        w.window.showGrid(g);
        QCOMPARE(table->rowCount(), 4);
        QCOMPARE(table->horizontalHeaderItem(7)->text(), u"Warn"_s);
        QCOMPARE(table->item(1, 1)->text(), u"Bravo"_s);
        QCOMPARE(table->columnWidth(1), 80);
        QCOMPARE(table->columnWidth(4), 47);
        QCOMPARE(table->item(0, 1)->textAlignment(), int(Qt::AlignLeft | Qt::AlignVCenter));
        QCOMPARE(table->item(0, 2)->textAlignment(), int(Qt::AlignCenter));
        const QList<qint32> data{w.window.gridRowData(0), w.window.gridRowData(1), w.window.gridRowData(2),
                                 w.window.gridRowData(3), w.window.gridRowData(5)};
        QCOMPARE(data, QList<qint32>({0, 3, 7, 0, 0}));

        table->setCurrentCell(1, 4);
        QCOMPARE(w.window.gridCurrentRow(), 2);
        QCOMPARE(w.window.gridRowData(w.window.gridCurrentRow()), 7);
        w.window.showGrid(g); // a refresh drops the selection
        QCOMPARE(w.window.gridCurrentRow(), -1);
    }

    void fieldsWriteThrough_data()
    {
        QTest::addColumn<QString>("box");
        QTest::addColumn<int>("field");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("setting");
        using F = View::Field;
        QTest::newRow("host") << "txtHost" << int(F::txtHost) << "10.0.0.5" << "10.0.0.5";
        QTest::newRow("password") << "txtPwd" << int(F::txtPwd) << "s3cret" << "s3cret";
        QTest::newRow("voice") << "txtServerName" << int(F::txtServerName) << "[Admin]" << "[Admin]";
        QTest::newRow("port number") << "txtPort" << int(F::txtPort) << "27015" << "27015";
        QTest::newRow("port with blanks") << "txtPort" << int(F::txtPort) << " 2000 " << "2000";
        QTest::newRow("port letters leave it") << "txtPort" << int(F::txtPort) << "12ab" << "12203";
        QTest::newRow("port empty leaves it") << "txtPort" << int(F::txtPort) << "" << "12203";
        QTest::newRow("port overflow leaves it") << "txtPort" << int(F::txtPort) << "99999999999" << "12203";
    }

    void fieldsWriteThrough()
    {
        QFETCH(QString, box);
        QFETCH(int, field);
        QFETCH(QString, typed);
        QFETCH(QString, setting);
        WindowWorld w;
        w.child<QLineEdit>(box.toLatin1().constData())->setText(typed); // as pasted: one change
        const Settings &s = w.settings();
        const QStringList now{s.Host, QString::number(s.Port), s.Pwd, s.Voice}; // in the order of View::Field
        QCOMPARE(now.at(field), setting);
        QCOMPARE(w.window.fieldText(View::Field(field)), typed); // the box as it stands
    }

    void sayAndServerInfoGoOut()
    {
        WindowWorld w;
        QUdpSocket server;
        QVERIFY(server.bind(QHostAddress::LocalHost, 0));
        w.settings().LocalPort = 0;
        w.window.engine().Form_Load(QString());
        w.window.setFieldText(View::Field::txtHost, u"127.0.0.1"_s);
        w.window.setFieldText(View::Field::txtPort, QString::number(server.localPort()));
        w.window.setFieldText(View::Field::txtPwd, u"pw"_s);
        auto *say = w.child<QLineEdit>("txtSay");
        QTest::keyClicks(say, u"  hello all "_s);
        QTest::keyClick(say, Qt::Key_Return);
        QCOMPARE(say->text(), QString());
        w.child<QPushButton>("cmdServerInfo")->click();
        QByteArrayList got;
        QTRY_VERIFY_WITH_TIMEOUT((got += receiveAll(server), got.size() == 2), 3000);
        QVERIFY(got.at(0).endsWith("rcon pw say hello all"));
        QVERIFY(got.at(1).endsWith("rcon pw serverinfo"));
    }

private:
    // A caption as a menu shows it: a lone & marks the mnemonic, && is one &.
    static QString shown(QString text)
    {
        text.replace(u"&&"_s, u"\x01"_s);
        text.remove(u'&');
        return text.replace(u'\x01', u'&');
    }

    static QByteArrayList receiveAll(QUdpSocket &socket)
    {
        QByteArrayList out;
        while (socket.hasPendingDatagrams())
            out.append(socket.receiveDatagram().data());
        return out;
    }
};

QTEST_MAIN(TestMainWindow)
#include "tst_mainwindow.moc"
