// SPDX-License-Identifier: MIT
#pragma once

#include "SimPlayer.h"
#include "SimScript.h"

#include <QByteArray>
#include <QElapsedTimer>
#include <QFile>
#include <QHostAddress>
#include <QList>
#include <QMap>
#include <QSet>
#include <QObject>
#include <QTimer>
#include <QUdpSocket>

class QNetworkDatagram;

// A game server as the remote console sees it, on a real UDP socket. It answers
// "rcon <password> <command>" (status, say, kick, clientkick, serverinfo) and the
// connectionless getStatus, from a player list that tests set directly or a script
// moves over time. It shares no code with the engine on purpose: it checks the
// engine's wire handling from outside.
//
// Everything received is kept, raw, for tests to look at; setRecordFile() also writes
// each datagram as one escaped line "<address>:<port> <bytes>" (see SimText::escape).
//
// The script (SimScript) has one event a line: <seconds> <verb> <arguments>. Seconds
// count from the start of the sim and may have a fraction (12.5). Events at the same
// second apply in file order; the file need not be sorted. Blank lines are skipped,
// and # outside quotes starts a comment up to the line end.
//
//   <t> map <mapname>
//   <t> join <name> [slot=N] [score=N] [ping=N|CNCT|ZMBI] [lastmsg=N]
//                   [ip=A.B.C.D] [port=N] [qport=N] [rate=N]
//   <t> leave <who>
//   <t> ping <who> N|CNCT|ZMBI
//   <t> name <who> <new name>
//   <t> score <who> N
//
// A join leaves out what SimPlayer's defaults give; without slot= it takes the first
// free slot (0-63). "kick" takes the name with or without its colour codes. A kicked
// player's later events are dropped quietly; a join brings him back. <who> is a slot
// number, or a player's current name (exact). A name with blanks goes in double quotes,
// where \" is a quote, \\ a backslash and \xHH any byte; unquoted, a number is a slot
// and anything else a name. Verbs and CNCT/ZMBI are case-insensitive. After the last
// event the server stays as it is.
class SimServer : public QObject
{
    Q_OBJECT
public:
    struct Datagram
    {
        QByteArray bytes;
        QHostAddress sender;
        quint16 senderPort = 0;
    };

    static constexpr int kMaxTextPerDatagram = 1007;
    static constexpr int kSlots = 64;

    explicit SimServer(QObject *parent = nullptr);

    // Port 0 takes any free port; port() then tells which.
    bool listen(const QHostAddress &address = QHostAddress::LocalHost, quint16 port = 0);
    void close();
    quint16 port() const;
    QHostAddress address() const;
    QString errorString() const { return m_socket.errorString(); }

    // Every answer leaves this many real milliseconds after its command came in, as from a
    // server far away.
    void setReplyDelay(int ms) { m_replyDelayMs = ms; }
    // Empty: rcon answers that no password is set.
    void setPassword(const QByteArray &password) { m_password = password; }
    QByteArray password() const { return m_password; }
    void setHostname(const QByteArray &hostname) { m_hostname = hostname; }
    void setGametype(const QByteArray &gametype) { m_gametype = gametype; }
    void setMaxClients(int count) { m_maxClients = count; }
    void setMap(const QByteArray &map);
    QByteArray map() const { return m_map; }

    // Puts the player in player.slot, or the first free slot when that is -1. Returns
    // the slot, or -1 when the slot is taken or out of 0-63 or the server is full.
    int addPlayer(SimPlayer player);
    bool removePlayer(int slot);
    // Replaces the player in player.slot; false when no one is there.
    bool updatePlayer(const SimPlayer &player);
    void clearPlayers();
    const SimPlayer *player(int slot) const;
    const SimPlayer *playerNamed(const QByteArray &name) const; // exact bytes
    QList<SimPlayer> players() const { return m_players.values(); } // by slot

    // What "say" was given, in order.
    QList<QByteArray> said() const { return m_said; }
    void clearSaid() { m_said.clear(); }

    QList<Datagram> received() const { return m_received; }
    void clearReceived() { m_received.clear(); }
    // Off for a long-running server that nobody reads the list of.
    void setKeepReceived(bool keep) { m_keepReceived = keep; }
    // Appends one line per datagram to the file from now on; empty path stops it.
    bool setRecordFile(const QString &path, QString *error = nullptr);

    // Starts the script at time 0; players and map are left as they are.
    void setScript(const SimScript &script);
    // Applies, in order, every script event due up to `seconds`. Time never goes back.
    void advanceTo(double seconds);
    double scriptTime() const { return m_time; }
    bool scriptDone() const { return m_next >= m_script.events().size(); }
    // Script time then follows real time on from where it is, woken by a timer at
    // each next event.
    void run();
    void stop();
    bool isRunning() const { return m_running; }

    // The texts as they go out, for tests and tools.
    QByteArray statusText() const;
    QByteArray serverInfoText() const;
    // Players who are connecting or zombies show ping 999 here.
    QByteArray statusResponse() const;
    // The text of an "rcon" datagram's reply, for the part after "rcon ".
    QByteArray rconReply(const QByteArray &afterRcon);

Q_SIGNALS:
    void datagramReceived(const QByteArray &bytes);
    void playersChanged();
    void mapChanged(const QByteArray &map);
    void playerKicked(int slot, const QByteArray &name);

private:
    void readPending();
    void handle(const QNetworkDatagram &datagram);
    void record(const QNetworkDatagram &datagram);
    void sendPrint(const QNetworkDatagram &to, const QByteArray &text);
    void answer(const QByteArray &bytes, const QNetworkDatagram &to);
    QByteArray runCommand(const QByteArray &command);
    QByteArray kick(const QByteArray &args);
    QByteArray clientKick(const QByteArray &args);
    void kicked(const SimPlayer &gone);
    void apply(const SimScript::Event &event);
    SimPlayer *target(const SimScript::Event &event);
    void scheduleNext();
    void onTimer();
    double runningTime() const;

    QUdpSocket m_socket;
    QByteArray m_password;
    int m_replyDelayMs = 0;
    QByteArray m_hostname = QByteArrayLiteral("Sim Server");
    QByteArray m_gametype = QByteArrayLiteral("2");
    QByteArray m_map = QByteArrayLiteral("obj/obj_team1");
    int m_maxClients = kSlots;
    QMap<int, SimPlayer> m_players;
    QList<QByteArray> m_said;
    QSet<QByteArray> m_kicked; // names and slots of kicked players, until they join again
    QList<Datagram> m_received;
    bool m_keepReceived = true;
    QFile m_record;

    SimScript m_script;
    qsizetype m_next = 0;
    double m_time = 0;
    bool m_running = false;
    double m_runFrom = 0;
    QElapsedTimer m_runClock;
    QTimer m_timer;
};
