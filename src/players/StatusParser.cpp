// SPDX-License-Identifier: MIT
#include "players/StatusParser.h"

#include "core/Clock.h"
#include "core/ErrorLog.h"
#include "core/Stats.h"
#include "core/Text.h"
#include "players/PlayerState.h"

#include <exception>

namespace {

const QString crlf = QStringLiteral("\r\n");

bool isStatusForm(const QString &cmd)
{
    return cmd == u"status";
}

// A column is cut first, then trimmed; invalid cuts raise through Text::mid.
QString column(const QString &row, qsizetype start, qsizetype length)
{
    return Text::trimBlanks(Text::mid(row, start, length));
}

void fillStatusRow(PlayerRecord &r, const QString &row)
{
    const qsizetype L = row.size();
    r.num = column(row, 1, 3);
    r.score = column(row, 4, 6);
    r.ping = column(row, 10, 5);
    r.rate = column(row, L - 5, 6);
    r.qport = column(row, L - 11, 6);
    const QString address = column(row, L - 33, 22);
    const qsizetype colon = address.lastIndexOf(u':') + 1;
    if (colon > 0) {
        r.ip = Text::left(address, colon - 1);
        r.port = Text::midToEnd(address, colon + 1);
    } else {
        r.ip = address; // no port in the row: the slot keeps its old one
    }
    r.lastmsg = column(row, L - 40, 7);
    r.name = column(row, 15, L - 55);
}

void fillInfoRow(PlayerRecord &r, const QString &row)
{
    const QString &none = unknownField();
    r.num = r.ping = r.name = r.score = r.ip = r.port = r.qport = r.rate = r.lastmsg = none;
    const qint32 blank = StatusParser::FirstSpace(row);
    if (blank > 0) {
        r.ping = Text::left(row, blank - 1);
        // the quotation marks are skipped by position, not tested
        r.name = Text::mid(row, blank + 2, row.size() - blank - 2);
    }
}

} // namespace

StatusParser::StatusParser(PlayerState &state, Stats &stats, Clock &clock, ErrorLog &errors)
    : m_state(state)
    , m_stats(stats)
    , m_clock(clock)
    , m_errors(errors)
{
}

qint32 StatusParser::GoodStatus(const QString &text, const QString &cmd)
{
    qint32 result = -1;
    try {
        const bool status = isStatusForm(cmd);
        const qsizetype minimum = status ? 143 : 0;
        if (Text::left(text, cmd.size()) != cmd || text.size() <= minimum)
            return result;

        qsizetype area = 0;
        QString info;
        if (status) {
            const qsizetype hit = Text::find(text, QStringLiteral("num score ping"), cmd.size() + 1);
            const qsizetype p = hit > 0 ? hit + 1 : text.size();
            area = p + 71 + 72 + 1; // head and dashes passed over by count
        } else {
            area = 1;
            for (int line = 1; line <= 4; ++line) {
                info = GetRow(text, area);
                area += info.size() + 2;
            }
        }
        if (Text::mid(text, area, 4) == crlf + crlf)
            return 0;
        result = static_cast<qint32>(area);
        GetMapName(status ? text : info, cmd);
    } catch (const std::exception &) {
        m_errors.ReportError(true, QStringLiteral("GoodStatus"));
    }
    return result;
}

void StatusParser::GetMapName(const QString &text, const QString &cmd)
{
    const bool status = isStatusForm(cmd);
    const QString open = status ? QStringLiteral("map:") : QStringLiteral("\\mapname\\");
    const QString close = status ? QStringLiteral("\r") : QStringLiteral("\\");
    const qsizetype skip = status ? 5 : 9;

    // The closing mark counts only before the text's last character.
    const qsizetype mark = Text::find(text, open, 7);
    const qsizetype start = mark + skip;
    const qsizetype end = mark > 0 ? Text::find(text, close, start) : 0;
    if (end > 0 && end < text.size()) {
        if (m_stats.map != m_stats.prevmap)
            ++m_stats.totalmaps;
        m_stats.prevmap = m_stats.map;
        m_stats.map = Text::mid(text, start, end - start);
    } else {
        m_stats.prevmap = m_stats.map;
        m_stats.map.clear();
    }
}

bool StatusParser::ParseScores(const QString &text, const QString &cmd)
{
    try {
        const bool status = isStatusForm(cmd);
        // One moment for the whole scan, so all new rows of it share their join time.
        const double now = m_clock.timeOfDay();
        const QDate today = m_clock.today();
        m_state.scanCount = 0;
        qsizetype pos = status ? 3 : 1;
        for (;;) {
            const QString row = GetRow(text, pos);
            if (row.isEmpty())
                break;
            ++m_state.scanCount;
            PlayerRecord &r = m_state.scanPlayers[m_state.scanCount];
            if (status)
                fillStatusRow(r, row);
            else
                fillInfoRow(r, row);
            r.warn = 0;
            r.spare1 = 0;
            r.jointime = now;
            r.joindate = today;
            r.spare2 = 0;
            r.status = QStringLiteral("Ok");
            r.kicktime = 0;
            r.nametime = r.jointime;
            r.unique = true;
            r.matched = false;
            r.prevIndex = -1;
            r.scanIndex = -1;
            pos += row.size() + 2;
        }
        return m_state.scanCount > 0;
    } catch (const std::exception &) {
        m_errors.ReportError(true, QStringLiteral("ParseScores"));
    }
    return false;
}

QString StatusParser::GetRow(const QString &text, qsizetype pos)
{
    try {
        const qsizetype end = Text::find(text, crlf, pos);
        if (end == 0)
            return {}; // a line without its line end is lost
        return Text::mid(text, pos, end - pos);
    } catch (const std::exception &) {
        m_errors.ReportError(true, QStringLiteral("GetRow"));
    }
    return {};
}

qint32 StatusParser::FirstSpace(const QString &row)
{
    const qsizetype blank = Text::find(row, QStringLiteral(" "));
    return blank > 0 ? static_cast<qint32>(blank) : -1;
}
