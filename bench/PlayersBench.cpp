// SPDX-License-Identifier: MIT
// One full status scan: GoodStatus and ParseScores on a pane text, then CopyPlayers
// against a previous table that holds the same players in other slots.
#include "HeadlessView.h"
#include "core/Clock.h"
#include "core/ErrorLog.h"
#include "core/Settings.h"
#include "core/Stats.h"
#include "core/Text.h"
#include "core/View.h"
#include "link/RconCodec.h"
#include "players/PlayerGrid.h"
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

// The text GetScores hands over: the echoed word, its ruler and the cleaned reply, with
// player k (of `order`) in row position k.
QString statusText(const std::vector<int> &order)
{
    QString raw = RconCodec::replyHeader() + QStringLiteral("map: obj/obj_team2\n")
        + QStringLiteral("num score ping name            lastmsg address               qport rate\n")
        + QStringLiteral("--- ----- ---- --------------- ------- --------------------- ----- -----\n");
    for (size_t slot = 0; slot < order.size(); ++slot) {
        const int p = order[slot];
        const QString address = QStringLiteral("10.%1.%2.7:%3").arg(p / 256).arg(p % 256).arg(12203 + p);
        raw += QString::number(slot).rightJustified(3) + u' ' + QString::number(p % 40).rightJustified(5) + u' '
            + QString::number(30 + p % 200).rightJustified(4) + u' '
            + (QStringLiteral("^") + QString::number(p % 8) + QStringLiteral("Player ") + QString::number(p)).leftJustified(16)
            + QStringLiteral("      0 ") + address.leftJustified(22) + QString::number(1000 + p).rightJustified(5)
            + QStringLiteral(" 25000\n");
    }
    raw += u'\n';
    return status + QStringLiteral("\r\n===============\r\n") + RconCodec::CleanReply(raw);
}

struct Rig
{
    SystemClock clock;
    HeadlessView view;
    ErrorLog errors{clock, view, [] { return QStringLiteral("/proc/quorvane-bench/"); }};
    PlayerState state;
    Stats stats;
    Settings settings;
    StatusParser parser{state, stats, clock, errors};
    PlayerMerge merge{state, stats, errors};

    bool parse(const QString &text)
    {
        const qint32 area = parser.GoodStatus(text, status);
        return area > 0 && parser.ParseScores(Text::midToEnd(text, area), status);
    }
};

// Two replies with the same players in different, shuffled slots.
std::pair<QString, QString> replies(int players)
{
    std::vector<int> order(static_cast<size_t>(players));
    std::iota(order.begin(), order.end(), 0);
    std::mt19937 random(1247);
    std::shuffle(order.begin(), order.end(), random);
    const QString first = statusText(order);
    std::shuffle(order.begin(), order.end(), random);
    return {first, statusText(order)};
}

void BM_ParseStatus(benchmark::State &state)
{
    const auto [text, unused] = replies(static_cast<int>(state.range(0)));
    auto rig = std::make_unique<Rig>();
    for (auto _ : state)
        benchmark::DoNotOptimize(rig->parse(text));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_ParseAndMerge(benchmark::State &state)
{
    const auto [first, second] = replies(static_cast<int>(state.range(0)));
    auto rig = std::make_unique<Rig>();
    rig->parse(first);
    rig->merge.CopyPlayers();
    bool flip = true;
    for (auto _ : state) {
        rig->parse(flip ? second : first);
        rig->merge.CopyPlayers();
        flip = !flip;
    }
    if (rig->stats.totalplayers != state.range(0))
        state.SkipWithError("players were not matched");
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_GridPicture(benchmark::State &state)
{
    auto rig = std::make_unique<Rig>();
    rig->parse(replies(static_cast<int>(state.range(0))).first);
    rig->merge.CopyPlayers();
    for (auto _ : state)
        benchmark::DoNotOptimize(PlayerGrid::picture(rig->state, rig->settings));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

} // namespace

BENCHMARK(BM_ParseStatus)->Arg(16)->Arg(64)->Arg(256);
BENCHMARK(BM_ParseAndMerge)->Arg(16)->Arg(64)->Arg(256);
BENCHMARK(BM_GridPicture)->Arg(16)->Arg(64)->Arg(256);
BENCHMARK_MAIN();
