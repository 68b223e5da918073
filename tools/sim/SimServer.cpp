// SPDX-License-Identifier: MIT
#include "SimServer.h"

#include "SimText.h"

#include <QNetworkDatagram>

#include <algorithm>
#include <cmath>

namespace {

const QByteArray kOutOfBand = QByteArrayLiteral("\xFF\xFF\xFF\xFF");
const QByteArray kPrintHead = QByteArrayLiteral("\xFF\xFF\xFF\xFF\x01print\n");
const QByteArray kStatusHead = QByteArrayLiteral("\xFF\xFF\xFF\xFFstatusResponse\n");

// The first blank-separated word of `text` and what follows it, blanks trimmed.
QPair<QByteArray, QByteArray> splitWord(const QByteArray &text)
{
    qsizetype start = 0;
    while (start < text.size() && text[start] == ' ')
        ++start;
    qsizetype end = text.indexOf(' ', start);
    if (end < 0)
        end = text.size();
    qsizetype rest = end;
    while (rest < text.size() && text[rest] == ' ')
        ++rest;
    return {text.mid(start, end - start), text.mid(rest)};
}

QByteArray pingField(const SimPlayer &p)
{
    switch (p.state) {
    case SimPlayer::State::Connecting:
        return QByteArrayLiteral("CNCT");
    case SimPlayer::State::Zombie:
        return QByteArrayLiteral("ZMBI");
    case SimPlayer::State::Active:
        break;
    }
    return SimText::rightAligned(p.ping, 4);
}

} // namespace

SimServer::SimServer(QObject *parent)
    : QObject(parent)
{
    connect(&m_socket, &QUdpSocket::readyRead, this, &SimServer::readPending);
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &SimServer::onTimer);
}

bool SimServer::listen(const QHostAddress &address, quint16 port)
{
    // Without DontShareAddress Linux lets a second UDP socket take the same port.
    return m_socket.bind(address, port, QAbstractSocket::DontShareAddress);
}

void SimServer::close()
{
    m_socket.close();
}

quint16 SimServer::port() const
{
    return m_socket.localPort();
}

QHostAddress SimServer::address() const
{
    return m_socket.localAddress();
}

void SimServer::setMap(const QByteArray &map)
{
    if (map == m_map)
        return;
    m_map = map;
    Q_EMIT mapChanged(m_map);
}

int SimServer::addPlayer(SimPlayer player)
{
    const int capacity = std::clamp(m_maxClients, 1, kSlots);
    if (player.slot < 0) {
        for (int slot = 0; slot < capacity && player.slot < 0; ++slot) {
            if (!m_players.contains(slot))
                player.slot = slot;
        }
    }
    if (player.slot < 0 || player.slot >= kSlots || m_players.contains(player.slot))
        return -1;
    m_players.insert(player.slot, player);
    Q_EMIT playersChanged();
    return player.slot;
}

bool SimServer::removePlayer(int slot)
{
    if (m_players.remove(slot) == 0)
        return false;
    Q_EMIT playersChanged();
    return true;
}

bool SimServer::updatePlayer(const SimPlayer &player)
{
    const auto it = m_players.find(player.slot);
    if (it == m_players.end())
        return false;
    *it = player;
    Q_EMIT playersChanged();
    return true;
}

void SimServer::clearPlayers()
{
    m_players.clear();
    Q_EMIT playersChanged();
}

const SimPlayer *SimServer::player(int slot) const
{
    const auto it = m_players.constFind(slot);
    return it == m_players.cend() ? nullptr : &*it;
}

const SimPlayer *SimServer::playerNamed(const QByteArray &name) const
{
    for (const SimPlayer &p : m_players) {
        if (p.name == name)
            return &p;
    }
    return nullptr;
}

bool SimServer::setRecordFile(const QString &path, QString *error)
{
    m_record.close();
    if (path.isEmpty())
        return true;
    m_record.setFileName(path);
    if (m_record.open(QIODevice::WriteOnly | QIODevice::Append))
        return true;
    if (error)
        *error = QStringLiteral("%1: %2").arg(path, m_record.errorString());
    return false;
}

void SimServer::readPending()
{
    while (m_socket.hasPendingDatagrams())
        handle(m_socket.receiveDatagram());
}

void SimServer::record(const QNetworkDatagram &datagram)
{
    if (m_keepReceived)
        m_received.append({datagram.data(), datagram.senderAddress(), static_cast<quint16>(datagram.senderPort())});
    if (!m_record.isOpen())
        return;
    const QHostAddress from = datagram.senderAddress();
    QByteArray host = from.toString().toLatin1();
    if (from.protocol() == QAbstractSocket::IPv6Protocol)
        host = '[' + host + ']';
    m_record.write(host + ':' + QByteArray::number(datagram.senderPort()) + ' ' + SimText::escape(datagram.data()) + '\n');
    m_record.flush();
}

void SimServer::handle(const QNetworkDatagram &datagram)
{
    record(datagram);
    const QByteArray bytes = datagram.data();
    Q_EMIT datagramReceived(bytes);

    // Four FF, then a direction byte whose value does not matter, then the text.
    if (bytes.size() < kOutOfBand.size() + 1 || !bytes.startsWith(kOutOfBand))
        return;
    const QByteArray text = bytes.mid(kOutOfBand.size() + 1);
    if (text.startsWith("rcon ")) {
        sendPrint(datagram, rconReply(text.mid(5)));
        return;
    }
    if (SimText::equalsIgnoringCase(splitWord(text).first, "getstatus"))
        answer(statusResponse(), datagram);
}

void SimServer::sendPrint(const QNetworkDatagram &to, const QByteArray &text)
{
    // Even a reply with nothing to say goes out, so the client knows it was heard.
    qsizetype at = 0;
    do {
        const QByteArray part = text.mid(at, kMaxTextPerDatagram);
        answer(kPrintHead + part, to);
        at += kMaxTextPerDatagram;
    } while (at < text.size());
}

void SimServer::answer(const QByteArray &bytes, const QNetworkDatagram &to)
{
    const QHostAddress address = to.senderAddress();
    const quint16 port = static_cast<quint16>(to.senderPort());
    if (m_replyDelayMs <= 0) {
        m_socket.writeDatagram(bytes, address, port);
        return;
    }
    QTimer::singleShot(m_replyDelayMs, Qt::PreciseTimer, this,
                       [this, bytes, address, port] { m_socket.writeDatagram(bytes, address, port); });
}

QByteArray SimServer::rconReply(const QByteArray &afterRcon)
{
    const qsizetype blank = afterRcon.indexOf(' ');
    const QByteArray password = blank < 0 ? afterRcon : afterRcon.left(blank);
    const QByteArray command = blank < 0 ? QByteArray() : afterRcon.mid(blank + 1);
    if (m_password.isEmpty())
        return QByteArrayLiteral("No rconpassword set on the server.\n");
    if (password != m_password)
        return QByteArrayLiteral("Bad rconpassword.\n");
    return runCommand(command);
}

QByteArray SimServer::runCommand(const QByteArray &command)
{
    const auto [word, args] = splitWord(command);
    const QByteArray verb = SimText::asciiLower(word);
    if (verb.isEmpty())
        return {};
    if (verb == "status")
        return statusText();
    if (verb == "serverinfo")
        return serverInfoText();
    if (verb == "say") {
        m_said.append(args);
        return "console: " + args + '\n';
    }
    if (verb == "kick")
        return kick(args);
    if (verb == "clientkick")
        return clientKick(args);
    return "Unknown command \"" + word + "\"\n";
}

QByteArray SimServer::kick(const QByteArray &args)
{
    if (args.isEmpty())
        return QByteArrayLiteral("Usage: kick <player name>\n");
    QByteArray name;
    if (args.startsWith('"')) {
        const qsizetype close = args.indexOf('"', 1);
        name = close < 0 ? args.mid(1) : args.mid(1, close - 1);
    } else {
        name = splitWord(args).first;
    }
    // A name as the client shows it matches too: that is all a client has to go by.
    for (const SimPlayer &p : std::as_const(m_players)) {
        if (SimText::equalsIgnoringCase(p.name, name) || SimText::equalsIgnoringCase(SimText::withoutColours(p.name), name)) {
            const SimPlayer gone = p;
            kicked(gone);
            return {};
        }
    }
    return "User " + name + " is not on the server\n";
}

void SimServer::kicked(const SimPlayer &gone)
{
    m_kicked.insert(gone.name);
    m_kicked.insert(QByteArray::number(gone.slot));
    removePlayer(gone.slot);
    Q_EMIT playerKicked(gone.slot, gone.name);
}

QByteArray SimServer::clientKick(const QByteArray &args)
{
    if (args.isEmpty())
        return QByteArrayLiteral("Usage: clientkick <clientnum>\n");
    const QByteArray token = splitWord(args).first;
    const bool digits = std::all_of(token.begin(), token.end(), [](char c) { return c >= '0' && c <= '9'; });
    bool ok = false;
    const int slot = token.toInt(&ok);
    if (!digits || !ok || slot >= kSlots)
        return "Bad client slot: " + token + '\n';
    const SimPlayer *p = player(slot);
    if (!p)
        return "Client " + QByteArray::number(slot) + " is not active\n";
    kicked(SimPlayer(*p));
    return {};
}

QByteArray SimServer::statusText() const
{
    QByteArray text = "map: " + m_map + '\n';
    text += "num score ping name            lastmsg address               qport rate\n";
    text += "--- ----- ---- --------------- ------- --------------------- ----- -----\n";
    for (const SimPlayer &p : m_players) {
        const QByteArray address = p.ip + ':' + QByteArray::number(p.port);
        text += SimText::rightAligned(p.slot, 3) + ' ' + SimText::rightAligned(p.score, 5) + ' ' + pingField(p) + ' '
            + p.name.leftJustified(16, ' ') + SimText::rightAligned(p.lastmsg, 7) + ' ' + address.leftJustified(22, ' ')
            + SimText::rightAligned(p.qport, 5) + ' ' + SimText::rightAligned(p.rate, 5) + '\n';
    }
    return text + '\n';
}

QByteArray SimServer::serverInfoText() const
{
    const QList<QPair<QByteArray, QByteArray>> info = {
        {"sv_hostname", m_hostname},
        {"g_gametype", m_gametype},
        {"mapname", m_map},
        {"sv_maxclients", QByteArray::number(m_maxClients)},
    };
    QByteArray text = "Server info settings:\n";
    for (const auto &[key, value] : info)
        text += key.leftJustified(20, ' ') + value + '\n';
    return text;
}

QByteArray SimServer::statusResponse() const
{
    QByteArray reply = kStatusHead;
    reply += "\\sv_hostname\\" + m_hostname + "\\g_gametype\\" + m_gametype + "\\mapname\\" + m_map + "\\sv_maxclients\\"
        + QByteArray::number(m_maxClients) + '\n';
    // A client that is not playing has no ping to give here; 999 is what it reads as.
    for (const SimPlayer &p : m_players)
        reply += QByteArray::number(p.state == SimPlayer::State::Active ? p.ping : 999) + " \"" + p.name + "\"\n";
    return reply;
}

void SimServer::setScript(const SimScript &script)
{
    m_script = script;
    m_next = 0;
    m_time = 0;
    m_runFrom = 0;
    m_runClock.restart();
    if (m_running)
        advanceTo(0);
}

void SimServer::advanceTo(double seconds)
{
    m_time = std::max(m_time, seconds);
    const QList<SimScript::Event> &events = m_script.events();
    while (m_next < events.size() && events[m_next].time <= m_time)
        apply(events[m_next++]);
    if (!m_running)
        return;
    // Moved on by hand past the real time: real time goes on from here.
    if (m_time > runningTime()) {
        m_runFrom = m_time;
        m_runClock.restart();
    }
    scheduleNext();
}

void SimServer::run()
{
    m_running = true;
    m_runFrom = m_time;
    m_runClock.start();
    advanceTo(m_time);
}

void SimServer::stop()
{
    m_running = false;
    m_timer.stop();
}

double SimServer::runningTime() const
{
    return m_runFrom + static_cast<double>(m_runClock.elapsed()) / 1000.0;
}

void SimServer::scheduleNext()
{
    if (scriptDone()) {
        m_timer.stop();
        return;
    }
    const double wait = m_script.events()[m_next].time - runningTime();
    // An hour at most, so the milliseconds fit; the timer just looks again then.
    const double ms = std::clamp(std::ceil(wait * 1000.0), 0.0, 3600.0 * 1000.0);
    m_timer.start(static_cast<int>(ms));
}

void SimServer::onTimer()
{
    advanceTo(runningTime());
}

SimPlayer *SimServer::target(const SimScript::Event &event)
{
    if (event.slot >= 0) {
        const auto it = m_players.find(event.slot);
        return it == m_players.end() ? nullptr : &*it;
    }
    for (SimPlayer &p : m_players) {
        if (p.name == event.who)
            return &p;
    }
    return nullptr;
}

void SimServer::apply(const SimScript::Event &event)
{
    using Kind = SimScript::Event::Kind;
    if (event.kind == Kind::Map) {
        setMap(event.text);
        return;
    }
    if (event.kind == Kind::Join) {
        m_kicked.remove(event.player.name);
        if (addPlayer(event.player) < 0)
            qWarning("quorvane-sim: script line %d: no free slot for the join", event.line);
        return;
    }
    SimPlayer *p = target(event);
    if (!p) {
        // A player kicked in the meantime misses his later events without a word.
        if (!m_kicked.contains(event.slot >= 0 ? QByteArray::number(event.slot) : event.who))
            qWarning("quorvane-sim: script line %d: no such player", event.line);
        return;
    }
    switch (event.kind) {
    case Kind::Leave:
        removePlayer(p->slot);
        return;
    case Kind::Ping:
        p->state = event.state;
        if (event.state == SimPlayer::State::Active)
            p->ping = event.number;
        break;
    case Kind::Name:
        p->name = event.text;
        break;
    case Kind::Score:
        p->score = event.number;
        break;
    case Kind::Map:
    case Kind::Join:
        return;
    }
    Q_EMIT playersChanged();
}
