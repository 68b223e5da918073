// SPDX-License-Identifier: MIT
#include "players/ScoreReader.h"

#include "core/ErrorLog.h"
#include "core/OutputPane.h"
#include "core/Text.h"
#include "players/PlayerMerge.h"
#include "players/StatusParser.h"

#include <exception>

ScoreReader::ScoreReader(const OutputPane &pane, StatusParser &parser, PlayerMerge &merge, ErrorLog &errors)
    : m_pane(pane)
    , m_parser(parser)
    , m_merge(merge)
    , m_errors(errors)
{
}

qint32 ScoreReader::GetScores(const QString &cmd)
{
    qint32 answer = -1;
    try {
        const QString &pane = m_pane.text();
        // Nothing ties a reply to its command: the newest echo of the word is taken.
        const qsizetype hit = pane.lastIndexOf(cmd) + 1;
        if (hit < 1)
            return answer;
        const QString text = Text::midToEnd(pane, hit);

        const qint32 rows = m_parser.GoodStatus(text, cmd);
        if (rows <= 0)
            return answer;
        if (!m_parser.ParseScores(Text::midToEnd(text, rows), cmd))
            return answer;
        // a cheap reply has no address to tell two equal names apart
        if (cmd != u"status" && m_merge.SameNames())
            return 0;
        m_merge.CopyPlayers();
        answer = 1;
    } catch (const std::exception &) {
        m_errors.ReportError(true, QStringLiteral("Error getting scores"));
    }
    return answer;
}
