// SPDX-License-Identifier: MIT
// Arbitrary datagrams through the receive path into the pane, then GetScores into
// CopyPlayers and the grid figures.
//
// The input is cut at every 0x00 byte into pieces; a piece's first byte says what it is:
//   0x01  echo of "status"            0x02  echo of "getStatus"
//   0x03  GetScores with the last echoed word
//   0x04  the previous datagram again, as often as the next byte says (to reach the pane limit)
//   else  the whole piece is one datagram
// GetScores runs once more at the end. A fatal report is the program's own way out,
// so it ends the input without counting as a crash.
#include "FakeClock.h"
#include "HeadlessView.h"
#include "core/ErrorLog.h"
#include "core/OutputPane.h"
#include "core/Settings.h"
#include "core/Stats.h"
#include "core/Text.h"
#include "core/View.h"
#include "link/RconCodec.h"
#include "players/PlayerGrid.h"
#include "players/PlayerMerge.h"
#include "players/PlayerState.h"
#include "players/StatusCycle.h"
#include "players/StatusParser.h"

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
    // A folder that cannot exist, so that no ErrLog.txt is written.
    ErrorLog errors{clock, view, [] { return QStringLiteral("/proc/quorvane-fuzz/"); }};
    PlayerState state;
    Stats stats;
    Settings settings;
    OutputPane pane{view};
    StatusParser parser{state, stats, clock, errors};
    PlayerMerge merge{state, stats, errors};
    StatusCycle cycle{pane, parser, merge, errors};

    Rig() { errors.setTerminate([] { throw FatalExit{}; }); }

    // As the receive handler takes a datagram in.
    void arrive(const QByteArray &datagram)
    {
        pane.appendReply(RconCodec::arrivalText(datagram));
    }

    void echo(const QString &cmd) { pane.append(QStringLiteral("\r\n") + RconCodec::echo(QStringLiteral("23:59:59"), cmd)); }

    void getScores(const QString &cmd)
    {
        const qint32 before = state.currentCount;
        const qint32 answer = cycle.GetScores(cmd);
        require(answer >= -1 && answer <= 1);
        require(state.currentCount >= 0 && state.currentCount <= PlayerTable::Capacity);
        if (answer == 1) {
            require(state.currentCount == state.scanCount && stats.players == state.currentCount);
            for (qint32 k = 1; k <= state.currentCount; ++k)
                require(state.currentPlayers[k].scanIndex == k);
        } else {
            require(state.currentCount == before);
        }
        const PlayerGrid::Picture picture = PlayerGrid::picture(state, settings);
        require(picture.grid.rows.size() == state.currentCount + 2);
        require(picture.counted == 0 || (picture.low <= picture.avgping && picture.avgping <= picture.high));
    }
};

} // namespace

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
