// SPDX-License-Identifier: MIT
#include "SimScript.h"

#include "SimText.h"

#include <QFile>

#include <algorithm>
#include <cmath>
#include <optional>

namespace {

struct Token
{
    QByteArray text;
    bool quoted = false;
};

bool isBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\r';
}

// Splits one line; a quoted token may hold blanks and escapes. Empty optional on a
// broken quote or escape.
std::optional<QList<Token>> tokenize(const QByteArray &line, QString *why)
{
    QList<Token> tokens;
    qsizetype i = 0;
    while (i < line.size()) {
        if (isBlank(line[i])) {
            ++i;
            continue;
        }
        if (line[i] == '#')
            break;
        Token token;
        if (line[i] == '"') {
            const qsizetype start = ++i;
            while (i < line.size() && line[i] != '"')
                i += line[i] == '\\' ? 2 : 1;
            if (i >= line.size()) {
                *why = QStringLiteral("quote not closed");
                return std::nullopt;
            }
            if (!SimText::unescape(line.mid(start, i - start), &token.text)) {
                *why = QStringLiteral("bad escape in quotes");
                return std::nullopt;
            }
            token.quoted = true;
            ++i;
        } else {
            const qsizetype start = i;
            while (i < line.size() && !isBlank(line[i]))
                ++i;
            token.text = line.mid(start, i - start);
        }
        tokens.append(token);
    }
    return tokens;
}

std::optional<int> toInt(const QByteArray &text, int low, int high)
{
    bool ok = false;
    const int value = text.toInt(&ok);
    if (!ok || value < low || value > high)
        return std::nullopt;
    return value;
}

// A ping is a number or one of the two states shown in its place.
bool readPing(const QByteArray &text, SimPlayer::State *state, int *ping)
{
    const QByteArray word = SimText::asciiLower(text);
    if (word == "cnct" || word == "zmbi") {
        *state = word == "cnct" ? SimPlayer::State::Connecting : SimPlayer::State::Zombie;
        return true;
    }
    const auto number = toInt(text, 0, 99999);
    if (!number)
        return false;
    *state = SimPlayer::State::Active;
    *ping = *number;
    return true;
}

void readWho(const Token &token, SimScript::Event *event)
{
    const auto slot = token.quoted ? std::nullopt : toInt(token.text, 0, 63);
    if (slot)
        event->slot = *slot;
    else
        event->who = token.text;
}

bool readJoinField(const QByteArray &key, const QByteArray &value, SimPlayer *p)
{
    std::optional<int> number;
    if (key == "slot" && (number = toInt(value, 0, 63)))
        p->slot = *number;
    else if (key == "score" && (number = toInt(value, -99999, 999999)))
        p->score = *number;
    else if (key == "ping")
        return readPing(value, &p->state, &p->ping);
    else if (key == "lastmsg" && (number = toInt(value, 0, 9999999)))
        p->lastmsg = *number;
    else if (key == "ip" && !value.isEmpty())
        p->ip = value;
    else if (key == "port" && (number = toInt(value, 0, 65535)))
        p->port = static_cast<quint16>(*number);
    else if (key == "qport" && (number = toInt(value, 0, 99999)))
        p->qport = *number;
    else if (key == "rate" && (number = toInt(value, 0, 99999)))
        p->rate = *number;
    else
        return false;
    return true;
}

// One line's event; an error text when the line is wrong.
std::optional<SimScript::Event> readEvent(const QList<Token> &tokens, QString *why)
{
    using Kind = SimScript::Event::Kind;
    SimScript::Event event;
    bool ok = false;
    event.time = tokens[0].text.toDouble(&ok);
    if (tokens[0].quoted || !ok || !std::isfinite(event.time) || event.time < 0) {
        *why = QStringLiteral("bad time \"%1\"").arg(QString::fromLatin1(tokens[0].text));
        return std::nullopt;
    }
    if (tokens.size() < 2) {
        *why = QStringLiteral("no verb after the time");
        return std::nullopt;
    }
    const QByteArray verb = SimText::asciiLower(tokens[1].text);
    const QList<Token> args = tokens.mid(2);
    auto wantArgs = [&](qsizetype count) {
        if (args.size() == count)
            return true;
        *why = QStringLiteral("%1 takes %2 argument(s)").arg(QString::fromLatin1(verb)).arg(count);
        return false;
    };

    if (verb == "map") {
        if (!wantArgs(1))
            return std::nullopt;
        event.kind = Kind::Map;
        event.text = args[0].text;
    } else if (verb == "join") {
        if (args.isEmpty()) {
            *why = QStringLiteral("join needs a name");
            return std::nullopt;
        }
        event.kind = Kind::Join;
        event.player.name = args[0].text;
        for (const Token &field : args.mid(1)) {
            const qsizetype eq = field.text.indexOf('=');
            if (field.quoted || eq < 0
                || !readJoinField(SimText::asciiLower(field.text.left(eq)), field.text.mid(eq + 1), &event.player)) {
                *why = QStringLiteral("bad join field \"%1\"").arg(QString::fromLatin1(field.text));
                return std::nullopt;
            }
        }
    } else if (verb == "leave") {
        if (!wantArgs(1))
            return std::nullopt;
        event.kind = Kind::Leave;
        readWho(args[0], &event);
    } else if (verb == "ping") {
        if (!wantArgs(2))
            return std::nullopt;
        event.kind = Kind::Ping;
        readWho(args[0], &event);
        if (!readPing(args[1].text, &event.state, &event.number)) {
            *why = QStringLiteral("bad ping \"%1\"").arg(QString::fromLatin1(args[1].text));
            return std::nullopt;
        }
    } else if (verb == "name") {
        if (!wantArgs(2))
            return std::nullopt;
        event.kind = Kind::Name;
        readWho(args[0], &event);
        event.text = args[1].text;
    } else if (verb == "score") {
        if (!wantArgs(2))
            return std::nullopt;
        event.kind = Kind::Score;
        readWho(args[0], &event);
        const auto score = toInt(args[1].text, -99999, 999999);
        if (!score) {
            *why = QStringLiteral("bad score \"%1\"").arg(QString::fromLatin1(args[1].text));
            return std::nullopt;
        }
        event.number = *score;
    } else {
        *why = QStringLiteral("unknown verb \"%1\"").arg(QString::fromLatin1(tokens[1].text));
        return std::nullopt;
    }
    return event;
}

} // namespace

bool SimScript::parse(const QByteArray &text, QString *error)
{
    QList<Event> events;
    const QList<QByteArray> lines = text.split('\n');
    for (qsizetype n = 0; n < lines.size(); ++n) {
        QString why;
        const auto tokens = tokenize(lines[n], &why);
        std::optional<Event> event;
        if (tokens && tokens->isEmpty())
            continue;
        if (tokens)
            event = readEvent(*tokens, &why);
        if (!event) {
            if (error)
                *error = QStringLiteral("line %1: %2").arg(n + 1).arg(why);
            return false;
        }
        event->line = static_cast<int>(n + 1);
        events.append(*event);
    }
    std::stable_sort(events.begin(), events.end(), [](const Event &a, const Event &b) { return a.time < b.time; });
    m_events = events;
    return true;
}

bool SimScript::load(const QString &path, QString *error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        if (error)
            *error = QStringLiteral("%1: %2").arg(path, file.errorString());
        return false;
    }
    QString why;
    if (parse(file.readAll(), &why))
        return true;
    if (error)
        *error = QStringLiteral("%1: %2").arg(path, why);
    return false;
}
