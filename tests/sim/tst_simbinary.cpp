// SPDX-License-Identifier: MIT
// The quorvane-sim program as the demo starts it: its options, its one line on stdout,
// and a clean stop on a signal.
#include <QNetworkDatagram>
#include <QProcess>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QUdpSocket>

#include <csignal>

namespace {

constexpr int kWaitMs = 5000;

const QByteArray kPrint = QByteArrayLiteral("\xFF\xFF\xFF\xFF\x01print\n");

QString simPath()
{
    return QStringLiteral(QUORVANE_SIM_PATH);
}

} // namespace

class TstSimBinary : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void servesUntilSignal_data();
    void servesUntilSignal();
    void refusesToStart_data();
    void refusesToStart();
};

void TstSimBinary::servesUntilSignal_data()
{
    QTest::addColumn<int>("signal");
    QTest::newRow("SIGTERM") << int(SIGTERM);
    QTest::newRow("SIGINT") << int(SIGINT);
}

void TstSimBinary::servesUntilSignal()
{
    QFETCH(int, signal);
    QTemporaryDir dir;
    const QString script = dir.filePath(QStringLiteral("s.script"));
    const QString record = dir.filePath(QStringLiteral("rec.txt"));
    {
        QFile f(script);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write("0 map test/map\n0 join \"Early Bird\" ping=33\n");
    }

    QProcess sim;
    sim.start(simPath(), {QStringLiteral("--port"), QStringLiteral("0"), QStringLiteral("--password"), QStringLiteral("pw"),
                          QStringLiteral("--script"), script, QStringLiteral("--record"), record});
    QByteArray out;
    connect(&sim, &QProcess::readyReadStandardOutput, this, [&] { out += sim.readAllStandardOutput(); });
    QTRY_VERIFY_WITH_TIMEOUT(out.endsWith('\n'), kWaitMs);
    const QRegularExpression line(QStringLiteral("^quorvane-sim listening on 127\\.0\\.0\\.1:(\\d+)\n$"));
    const auto match = line.match(QString::fromLatin1(out));
    QVERIFY2(match.hasMatch(), out.constData());
    const quint16 port = match.captured(1).toUShort();

    QUdpSocket client;
    QVERIFY(client.bind(QHostAddress::LocalHost, 0));
    const QByteArray ask = "\xFF\xFF\xFF\xFF\x02rcon pw status";
    client.writeDatagram(ask, QHostAddress::LocalHost, port);
    QTRY_VERIFY_WITH_TIMEOUT(client.hasPendingDatagrams(), kWaitMs);
    const QByteArray reply = client.receiveDatagram().data();
    QVERIFY(reply.startsWith(kPrint + "map: test/map\n"));
    QVERIFY(reply.contains("Early Bird"));

    QSignalSpy finished(&sim, &QProcess::finished);
    QCOMPARE(::kill(pid_t(sim.processId()), signal), 0);
    QVERIFY(finished.wait(kWaitMs));
    QCOMPARE(sim.exitStatus(), QProcess::NormalExit);
    QCOMPARE(sim.exitCode(), 0);

    QFile rec(record);
    QVERIFY(rec.open(QIODevice::ReadOnly));
    QCOMPARE(rec.readAll(), "127.0.0.1:" + QByteArray::number(client.localPort()) + " \\xFF\\xFF\\xFF\\xFF\\x02rcon pw status\n");
}

void TstSimBinary::refusesToStart_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("complaint");

    QTest::newRow("port taken") << QStringList{QStringLiteral("--port"), QStringLiteral("TAKEN")}
                                << QStringLiteral("cannot listen on 127.0.0.1:");
    QTest::newRow("bad port") << QStringList{QStringLiteral("--port"), QStringLiteral("70000")} << QStringLiteral("bad port");
    QTest::newRow("bad address") << QStringList{QStringLiteral("--bind"), QStringLiteral("nowhere")} << QStringLiteral("bad address");
    QTest::newRow("no script") << QStringList{QStringLiteral("--script"), QStringLiteral("/nonexistent/x.script")}
                               << QStringLiteral("/nonexistent/x.script");
}

void TstSimBinary::refusesToStart()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, complaint);

    QUdpSocket holder;
    QVERIFY(holder.bind(QHostAddress::LocalHost, 0, QAbstractSocket::DontShareAddress));
    arguments.replaceInStrings(QStringLiteral("TAKEN"), QString::number(holder.localPort()));

    QProcess sim;
    QSignalSpy finished(&sim, &QProcess::finished);
    sim.start(simPath(), arguments);
    QVERIFY(finished.wait(kWaitMs));
    QCOMPARE(sim.exitCode(), 1);
    QVERIFY(sim.readAllStandardOutput().isEmpty());
    const QString err = QString::fromLocal8Bit(sim.readAllStandardError());
    QVERIFY2(err.contains(complaint), qPrintable(err));
}

QTEST_GUILESS_MAIN(TstSimBinary)
#include "tst_simbinary.moc"
