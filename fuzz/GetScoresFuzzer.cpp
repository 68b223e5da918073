// SPDX-License-Identifier: MIT
// Arbitrary datagrams through the receive path into the pane, then GetScores into
// CopyPlayers and the grid figures, and on an accepted scan the check cycle's policies
// with the kick and ban actions over lists that are not empty.
//
// The input is cut at every 0x00 byte into pieces; a piece's first byte says what it is:
//   0x01  echo of "status"            0x02  echo of "getStatus"
//   0x03  GetScores with the last echoed word
//   0x04  the previous datagram again, as often as the next byte says (to reach the pane limit)
//   0x05  settings: the next bytes switch the policies and Ban, and set MaxPing, PingPasses,
//         TKLimit, the QPort and Rate ranges, BanFor and BanType
//   0x06  the clock moves on by the next byte's seconds
//   0x07  a datagram from a stranger: the server's address on another port, or another
//         address on the server's port, as the next bytes say; it must change nothing but
//         bring, at most once a minute, the line that counts the strangers
//   else  the whole piece is one datagram, from the server
// GetScores runs once more at the end. A fatal report is the program's own way out,
// so it ends the input without counting as a crash.
#include "FakeClock.h"
#include "HeadlessView.h"
#include "PolicyStack.h"
#include "core/ErrorLog.h"
#include "core/OutputPane.h"
#include "core/Settings.h"
#include "core/Stats.h"
#include "core/Text.h"
#include "core/View.h"
#include "enforcement/CheckCycle.h"
#include "link/RconCodec.h"
#include "link/SenderGate.h"
#include "players/PlayerGrid.h"
#include "players/PlayerMerge.h"
#include "players/PlayerState.h"
#include "players/ScoreReader.h"
#include "players/StatusParser.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <cstddef>
#include <cstdint>
#include <memory>

namespace {

void require(bool condition)
{
    if (!condition)
        __builtin_trap();
}

struct Rig
{
    FakeClock clock{QDateTime(QDate(2026, 11, 22), QTime(23, 59, 59))};
    HeadlessView view;
    // ErrLog.txt is a link to /dev/null: records are written, and nothing grows.
    ErrorLog errors{clock, view, [] { return errorFolder(); }, [] { throw FatalExit{}; }};
    PlayerState state;
    Stats stats;
    Settings settings;
    OutputPane pane{view};
    StatusParser parser{state, stats, clock, errors};
    PlayerMerge merge{state, stats, errors};
    ScoreReader scores{pane, parser, merge, errors};
    PolicyStack stack{state, settings, stats, clock, errors, pane};
    SenderGate gate{clock, [] { return false; }};
    const QHostAddress server{QStringLiteral("127.0.0.1")};
    static constexpr quint16 serverPort = 12203;
    QDateTime lastNotice;

    Rig()
    {
        gate.serverIs(server, serverPort);
        QObject::connect(&gate, &SenderGate::notice, &gate, [this](const QString &line) {
            require(!lastNotice.isValid() || lastNotice.secsTo(clock.now()) >= SenderGate::NoticeSeconds);
            lastNotice = clock.now();
            pane.append(QStringLiteral("\r\n") + line + QStringLiteral("\r\n"));
        });
        static const QString folder = seedLists();
        settings.FileLoc = folder;
        stack.lists.LoadAll();
        settings.KickTK = settings.QPort = settings.Rate = settings.NameCheck = true;
    }
    ~Rig()
    {
        if (stats.banadds > 0) // the next input starts from the seeds again
            seedLists(settings.FileLoc);
    }

    static QString errorFolder()
    {
        static QTemporaryDir dir;
        static const bool linked = QFile::link(QStringLiteral("/dev/null"), dir.path() + QStringLiteral("/ErrLog.txt"));
        require(linked);
        return dir.path() + u'/';
    }

    static QString seedLists(QString folder = QString())
    {
        static QTemporaryDir dir;
        if (folder.isEmpty())
            folder = dir.path() + u'/';
        const auto write = [&folder](const char *name, const char *text) {
            QFile file(folder + QString::fromLatin1(name));
            if (file.open(QIODevice::WriteOnly | QIODevice::Truncate))
                file.write(text);
        };
        write("highping.txt", "%name% at %ping%\r\nbye %map%\r\n");
        write("banned.txt", "player\r\n  Zed \r\n");
        write("bannedIP.txt", "127.0.0.1\r\n----\r\n");
        write("badnames.txt", "a\r\naa\r\n^\r\n \t\r\n");
        write("immuneIP.txt", "192.0.2.1\r\n");
        return folder;
    }

    void setUp(const QByteArray &piece)
    {
        const auto byte = [&piece](int i) { return i < piece.size() ? static_cast<uint8_t>(piece.at(i)) : 0; };
        Settings &s = settings;
        const int f = byte(1);
        s.KickTK = f & 1, s.KickBanned = f & 2, s.KickPing = f & 4, s.QPort = f & 8;
        s.Rate = f & 16, s.NameCheck = f & 32, s.KickImpersonators = f & 64, s.Ban = f & 128;
        s.MaxPing = byte(2) * 4, s.PingPasses = byte(3) % 7, s.TKLimit = byte(4) - 128;
        s.QPortMin = byte(5) * 256, s.QPortMax = byte(6) * 256, s.RateMin = byte(7) * 100, s.RateMax = byte(8) * 100;
        const qint32 banFor[] = {1, 10, 11, 100, 1000, 7};
        s.BanFor = banFor[byte(9) % 6], s.BanType = byte(10) % 5, s.SkipMap = byte(11) & 1, s.TellPlayers = byte(11) & 2;
    }

    void runPolicies()
    {
        const qint32 count = state.currentCount;
        CheckCycle::runPolicies(stack.context);
        require(state.currentCount == count);
        for (qint32 k = 1; k <= count; ++k) {
            const PlayerRecord &r = state.currentPlayers[k];
            require(r.warn >= 0 && (r.status == u"Ok" || r.status.startsWith(u"Kicked (")));
        }
        require(stack.lists.bannedNameTop() < ListTable::Size && stack.lists.bannedIPTop() < ListTable::Size);
        require(stats.pingkicks >= 0 && stats.bankicks >= 0 && stats.tkkicks >= 0 && stats.banadds >= 0);
    }

    // As the receive handler takes a datagram in from the server.
    void arrive(const QByteArray &datagram)
    {
        require(gate.fromServer(server, serverPort));
        pane.appendReply(RconCodec::arrivalText(datagram));
    }

    void stranger(const QByteArray &piece)
    {
        const auto byte = [&piece](int i) { return i < piece.size() ? static_cast<uint8_t>(piece.at(i)) : 0; };
        const bool sameAddress = byte(1) & 1;
        const QHostAddress from = sameAddress ? server : QHostAddress(QStringLiteral("203.0.113.%1").arg(byte(2)));
        const quint16 port = sameAddress ? static_cast<quint16>(serverPort + 1 + byte(3)) : serverPort;
        require(!gate.fromServer(from, port));
        const QString before = pane.text();
        const qint32 players = state.currentCount;
        gate.dropped(from, port);
        require(pane.text() == before || (pane.text().startsWith(before) && pane.text().mid(before.size()).startsWith(u"\r\nIgnored ")));
        require(state.currentCount == players);
    }

    void echo(const QString &cmd) { pane.append(QStringLiteral("\r\n") + RconCodec::echo(QStringLiteral("23:59:59"), cmd)); }

    void getScores(const QString &cmd)
    {
        const qint32 before = state.currentCount;
        const qint32 answer = scores.GetScores(cmd);
        require(answer >= -1 && answer <= 1);
        require(state.currentCount >= 0 && state.currentCount <= PlayerTable::Capacity);
        if (answer == 1) {
            require(state.currentCount == state.scanCount && stats.players == state.currentCount);
            for (qint32 k = 1; k <= state.currentCount; ++k)
                require(state.currentPlayers[k].scanIndex == k);
            runPolicies();
        } else {
            require(state.currentCount == before);
        }
        const PlayerGrid::Picture picture = PlayerGrid::picture(state, settings);
        require(picture.grid.rows.size() == state.currentCount + 2);
        require(picture.counted == 0 || (picture.low <= picture.avgping && picture.avgping <= picture.high));
    }
};

} // namespace

// The gate's timers need an application object; the clock's jumps drive it here.
extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    static QCoreApplication app(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray input = QByteArray::fromRawData(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    auto rig = std::make_unique<Rig>();
    QString cmd = QStringLiteral("status");
    QByteArray last;
    try {
        for (const QByteArray &piece : input.split('\0')) {
            switch (piece.isEmpty() ? 0 : piece.at(0)) {
            case 0x01:
                cmd = QStringLiteral("status");
                rig->echo(cmd);
                break;
            case 0x02:
                cmd = QStringLiteral("getStatus");
                rig->echo(cmd);
                break;
            case 0x03:
                rig->getScores(cmd);
                break;
            case 0x05:
                rig->setUp(piece);
                break;
            case 0x06:
                rig->clock.jump(piece.size() > 1 ? static_cast<uint8_t>(piece.at(1)) : 1);
                break;
            case 0x07:
                rig->stranger(piece);
                break;
            case 0x04:
                for (int n = piece.size() > 1 ? static_cast<uint8_t>(piece.at(1)) : 1; n > 0; --n)
                    rig->arrive(last);
                break;
            default:
                last = piece;
                rig->arrive(piece);
            }
        }
        rig->getScores(cmd);
    } catch (const FatalExit &) {
    }
    return 0;
}
