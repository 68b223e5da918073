#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# Writes the seed corpus: realistic replies in the fuzzer's input form (pieces cut at 0x00;
# 0x01/0x02 echo "status"/"getStatus", 0x03 runs GetScores and the policies, 0x05 sets the
# policies' settings, 0x06 moves the clock, 0x07 is a datagram from a stranger, anything else
# is a datagram from the server).
import os

HERE = os.path.dirname(os.path.abspath(__file__))
PRINT = b"\xff\xff\xff\xff\x01print\n"
HEAD = b"num score ping name            lastmsg address               qport rate\n"
DASH = b"--- ----- ---- --------------- ------- --------------------- ----- -----\n"
S, G, RUN = b"\x01", b"\x02", b"\x03"
STRANGER_PORT, STRANGER_HOST = b"\x07\x01\x05\x05", b"\x07\x02\x63\x05"  # the server's address elsewhere, its port elsewhere
ALL = b"\x05\xff\xbc\x01\x7d\x04\x08\x19\xfa\x03\x03\x03"  # every policy and Ban on, tight limits


def row(num, score, ping, name, address, lastmsg=0, qport=12345, rate=25000):
    ping = ping if isinstance(ping, bytes) else b"%4i" % ping
    return b"%3i %5i %s %s%7i %s%5i %5i\n" % (num, score, ping, name.ljust(16), lastmsg, address.ljust(22), qport, rate)


def status(rows, mapname=b"obj/obj_team2"):
    return PRINT + b"map: " + mapname + b"\n" + HEAD + DASH + b"".join(rows) + b"\n"


def info_reply(players, mapname=b"dm/mohdm6"):
    info = b"\\sv_hostname\\Quorvane test\\g_gametype\\1\\mapname\\" + mapname + b"\\sv_maxclients\\32\n"
    return b"\xff\xff\xff\xffstatusResponse\n" + info + b"".join(b'%i "%s"\n' % p for p in players)


def seed(name, *pieces):
    with open(os.path.join(HERE, "corpus", name), "wb") as f:
        f.write(b"\0".join(pieces))


three = [row(0, 12, 48, b"Some Player", b"192.0.2.7:12203"),
         row(1, -3, 999, b"^1Red ^7Baron", b"192.0.2.8:12204", lastmsg=50),
         row(2, 0, b"ZMBI", b"A Name Longer Than Sixteen", b"fe80::1:28960")]
seed("status-three", S, status(three), RUN)
seed("status-split", S, status(three)[:90], status(three)[90:], RUN)
seed("status-empty", S, status([]), RUN)
seed("status-then-getstatus", S, status(three), RUN, G, info_reply([(48, b"Some Player"), (999, b"Red Baron")]), RUN)
seed("getstatus-twins", G, info_reply([(48, b"Twin"), (60, b"Twin")]), RUN, S, status(three), RUN)
seed("getstatus-only", G, info_reply([(50, b"New ^3Guy"), (70, b"")]), RUN)
seed("pane-limit", S, b"\xff\xff\xff\xff\x01print\n" + b"x" * 250 + b"\n", b"\x04\x60", status(three), RUN)
seed("no-connection", S, b"\xff", RUN)
seed("policies-every-one", ALL, S, status(three + [row(3, -9, 800, b"Player", b"127.0.0.1:1"),
                                                     row(4, 5, 60, b"some player", b"192.0.2.1:5")]), RUN,
     b"\x06\x07", S, status(three), RUN, b"\x06\x50", RUN)
# A forged table with a short row between the echo and the reply, a flood, a minute on.
seed("strangers", ALL, S, STRANGER_HOST + status([row(2, 0, 50, b"evil one", b"203.0.113.99:12203")])[:-1] + b"  9 short\n\n",
     STRANGER_PORT, status(three), RUN, *([STRANGER_PORT] * 40), b"\x06\x3c", STRANGER_HOST, RUN)
