// SPDX-License-Identifier: MIT
// One check cycle's engine work on a full server: a 256-player status reply parsed and
// merged, then all nine policies over it with every list at 2048 entries. The socket and
// the waits are left out; they are the queue's pacing, not work.
#include "FakeClock.h"
#include "HeadlessView.h"
#include "PolicyStack.h"
#include "ReplyText.h"
#include "TestEnv.h"
#include "core/ErrorLog.h"
#include "core/OutputPane.h"
#include "core/Settings.h"
#include "core/Stats.h"
#include "core/Text.h"
#include "enforcement/CheckCycle.h"
#include "players/PlayerMerge.h"
#include "players/PlayerState.h"
#include "players/StatusParser.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <memory>
#include <numeric>
#include <random>

namespace {

const QString status = QStringLiteral("status");
constexpr int Players = 256;

// Player k on slot `slot`; player 42 sends a rate of 99999.
QString statusText(const std::vector<int> &order)
{
    QStringList rows;
    for (size_t slot = 0; slot < order.size(); ++slot) {
        const int k = order[slot];
        ReplyText::StatusRow row;
        row.name = QStringLiteral("Player%1").arg(k);
        row.address = QStringLiteral("10.0.%1.%2:%3").arg(k / 256).arg(k % 256).arg(27000 + k);
        row.num = QString::number(slot);
        row.score = QString::number(k % 40);
        row.ping = QString::number(30 + k % 200);
        row.rate = QString::fromLatin1(k == 42 ? "99999" : "25000");
        rows.append(ReplyText::statusRow(row));
    }
    return ReplyText::statusReply(QStringLiteral("obj/obj_team2"), rows);
}

// A word of letters that no "PLAYER n" holds.
QByteArray word(int i)
{
    QByteArray w = "QX";
    for (int n = i + 1; n > 0; n /= 10)
        w += "BCDFGHJKMN"[n % 10];
    return w;
}

QByteArray listOf(int count, const std::function<QByteArray(int)> &entry)
{
    QByteArray bytes;
    for (int i = 0; i < count; ++i)
        bytes += entry(i) + "\r\n";
    return bytes;
}

struct Rig
{
    TestEnv env;
    FakeClock clock;
    HeadlessView view;
    Settings settings;
    Stats stats;
    PlayerState state;
    ErrorLog errors{clock, view, [this] { return settings.FileLoc; }};
    StatusParser parser{state, stats, clock, errors};
    PlayerMerge merge{state, stats, errors};
    OutputPane pane{view};
    PolicyStack stack{state, settings, stats, clock, errors, pane};
    QString replies[2];

    // With `kicks`, four of the 2048 entries (a name, an address, a word) and a rate hit.
    explicit Rig(bool kicks)
    {
        settings.FileLoc = env.workDir();
        settings.KickTK = settings.KickTeleFrag = settings.QPort = settings.Rate = settings.NameCheck = settings.Warn = true;
        settings.QPortMax = 65535;
        settings.RateMax = kicks ? 25000 : 100000;
        const auto write = [this](const char *file, const QByteArray &bytes) {
            TestEnv::writeFile(env.workDir() + QString::fromLatin1(file), bytes);
        };
        write("servmsg.txt", listOf(2048, [](int i) { return "Message " + QByteArray::number(i) + " on %map%"; }));
        write("highping.txt", listOf(2048, [](int i) { return "%name% lags " + QByteArray::number(i); }));
        write("banned.txt", listOf(2048, [kicks](int i) { return kicks && i == 2047 ? "player7" : "Banned " + QByteArray::number(i); }));
        write("bannedIP.txt", listOf(2048, [kicks](int i) {
                  return kicks && i == 1000 ? QByteArray("10.0.0.9") : "172.31." + QByteArray::number(i / 256) + '.' + QByteArray::number(i % 256);
              }));
        write("badnames.txt", listOf(2048, [kicks](int i) { return kicks && i == 5 ? QByteArray("r200") : word(i); }));
        write("immuneIP.txt", listOf(2048, [](int i) { return "192.168." + QByteArray::number(i / 256) + '.' + QByteArray::number(i % 256); }));
        stack.lists.LoadAll();

        std::vector<int> order(Players);
        std::iota(order.begin(), order.end(), 0);
        std::mt19937 random(1247);
        for (QString &reply : replies) {
            std::shuffle(order.begin(), order.end(), random);
            reply = statusText(order);
        }
    }

    void cycle(const QString &text)
    {
        const qint32 area = parser.GoodStatus(text, status);
        if (area > 0 && parser.ParseScores(Text::midToEnd(text, area), status))
            merge.CopyPlayers();
        CheckCycle::runPolicies(stack.context);
    }
};

void BM_CheckCycleWork(benchmark::State &state)
{
    const bool kicks = state.range(0) != 0;
    auto rig = std::make_unique<Rig>(kicks);
    rig->cycle(rig->replies[1]);
    int flip = 0;
    for (auto _ : state) {
        rig->clock.jump(6); // past the repeat gate: every cycle kicks in full
        rig->stack.queued.clear();
        rig->cycle(rig->replies[flip ^= 1]);
    }
    if (rig->state.currentCount != Players || rig->stack.queued.size() != (kicks ? 8 : 0))
        state.SkipWithError("the cycle did not do what it should");
    state.counters["queued"] = static_cast<double>(rig->stack.queued.size());
}

// The nine policies alone, over the merged table.
void BM_Policies(benchmark::State &state)
{
    auto rig = std::make_unique<Rig>(state.range(0) != 0);
    rig->cycle(rig->replies[0]);
    for (auto _ : state) {
        rig->clock.jump(6);
        rig->stack.queued.clear();
        CheckCycle::runPolicies(rig->stack.context);
    }
}

} // namespace

BENCHMARK(BM_CheckCycleWork)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Policies)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);
BENCHMARK_MAIN();
