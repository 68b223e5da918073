// SPDX-License-Identifier: MIT
// The tray icon, the boxes on a platform nobody watches, and the splash.
#include "StderrCapture.h"
#include "ui/Prompts.h"
#include "ui/SplashScreen.h"
#include "ui/TrayIcon.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestTrayPrompts : public QObject
{
    Q_OBJECT

    // The colours of the 16-pixel picture at a point of the disc and a point of the Q.
    static QList<QColor> discAndLetter(const QIcon &icon)
    {
        const QImage image = icon.pixmap(QSize(16, 16)).toImage();
        return {image.pixelColor(2, 7), image.pixelColor(4, 7)};
    }
    const QList<QColor> plain{QColor(0, 0, 160), QColor(255, 255, 0)};
    const QList<QColor> flash{QColor(255, 255, 0), QColor(0, 0, 0)};

private Q_SLOTS:
    // Both pictures come from the resource rendered from the installed icon's drawing.
    void pictures()
    {
        TrayIcon tray;
        const QList<QSize> sizes = tray.icon().availableSizes();
        for (int side : {16, 22, 24, 32, 48, 64, 128, 256})
            QVERIFY2(sizes.contains(QSize(side, side)), qPrintable(QString::number(side)));
        QVERIFY(tray.flashIcon().availableSizes().contains(QSize(16, 16)));
        QCOMPARE(discAndLetter(tray.icon()), plain);
        QCOMPARE(discAndLetter(tray.flashIcon()), flash);
        QCOMPARE(discAndLetter(tray.shownIcon()), plain);
    }

    void trayFlashes()
    {
        TrayIcon tray;
        QCOMPARE(tray.toolTip(), u"Quorvane"_s);
        QCOMPARE(tray.flashInterval(), 1000);
        tray.setFlashInterval(10);
        tray.setFlashEnabled(true);
        QTRY_VERIFY(tray.showsFlashIcon());
        QCOMPARE(discAndLetter(tray.shownIcon()), flash);
        QTRY_VERIFY(!tray.showsFlashIcon());
        QCOMPARE(discAndLetter(tray.shownIcon()), plain);
        QTRY_VERIFY(tray.showsFlashIcon());
        tray.setFlashEnabled(false);
        QVERIFY(!tray.showsFlashIcon()); // back to the plain icon at once
        QCOMPARE(discAndLetter(tray.shownIcon()), plain);
        QTest::qWait(40);
        QVERIFY(!tray.showsFlashIcon());
    }

    void unattendedBoxes_data()
    {
        QTest::addColumn<bool>("isQuestion");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QByteArray>("line");
        QTest::newRow("ok box") << false << u"Port taken"_s << "Quorvane: Port taken\n"_ba;
        QTest::newRow("line ends flattened") << false << u"Stops.\r\n\r\nError[10048]"_s
                                             << "Quorvane: Stops.  Error[10048]\n"_ba;
        QTest::newRow("question") << true << u"Copy settings?"_s << "Quorvane: Copy settings?\n"_ba;
    }

    void unattendedBoxes()
    {
        QFETCH(bool, isQuestion);
        QFETCH(QString, text);
        QFETCH(QByteArray, line);
        StderrCapture err;
        if (isQuestion)
            QCOMPARE(Prompts::question(nullptr, text), false); // No by default
        else
            Prompts::information(nullptr, text);
        QCOMPARE(err.text(), line);
    }

    void answeredInAdvance()
    {
        StderrCapture err;
        Prompts::setNextAnswer(QMessageBox::Yes);
        QVERIFY(Prompts::question(nullptr, u"Ban him?"_s));
        QVERIFY(!Prompts::question(nullptr, u"Ban him?"_s)); // one answer, one box
        QCOMPARE(err.text(), "Quorvane: Ban him?\n"_ba);
    }

    void splash()
    {
        frmSplash s;
        QCOMPARE(s.size(), QSize(286, 207));
        QVERIFY(s.windowFlags() & Qt::FramelessWindowHint);
        const QImage picture = s.grab().toImage();
        QCOMPARE(picture.pixelColor(2, 2), QColor(Qt::black));
        int lit = 0;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x)
                lit += picture.pixelColor(x, y) != QColor(Qt::black);
        QVERIFY(lit > 200); // the name and version are drawn
    }
};

QTEST_MAIN(TestTrayPrompts)
#include "tst_trayprompts.moc"
