// SPDX-License-Identifier: MIT
#include "EngineWorld.h"

#include "core/SettingsStore.h"
#include "link/RconLink.h"

#include <QNetworkDatagram>
#include <QTest>

EngineWorld::EngineWorld(double clockSpeed)
    : clock(QDateTime(QDate(2026, 11, 22), QTime(12, 0, 0)), clockSpeed)
    , engine(clock, view)
{
    SettingsStore::setProgramDirectoryForTesting(env.workDir());
    engine.settings.FileLoc = env.workDir();
    engine.errors().setTerminate([] { throw FatalExit{QStringLiteral("fatal")}; });
    view.fields[View::Field::txtHost] = QStringLiteral("127.0.0.1");
}

void EngineWorld::connectTo(quint16 serverPort, const QString &password)
{
    engine.link().bind(0);
    pointAt(serverPort, password);
}

void EngineWorld::pointAt(quint16 serverPort, const QString &password)
{
    view.fields[View::Field::txtPort] = QString::number(serverPort);
    view.fields[View::Field::txtPwd] = password;
}

Peer::Peer()
{
    socket.bind(QHostAddress::LocalHost, 0);
}

QByteArray Peer::next()
{
    if (!socket.hasPendingDatagrams())
        socket.waitForReadyRead(3000);
    if (!socket.hasPendingDatagrams())
        return QByteArray("<nothing>");
    const QNetworkDatagram d = socket.receiveDatagram();
    lastFrom = d.senderAddress();
    lastPort = static_cast<quint16>(d.senderPort());
    return d.data();
}

void Peer::reply(const QByteArray &bytes)
{
    socket.writeDatagram(bytes, lastFrom, lastPort);
}

void Peer::answerWith(std::function<QList<QByteArray>(const QByteArray &)> answer)
{
    QObject::connect(&socket, &QUdpSocket::readyRead, &socket, [this, answer] {
        while (socket.hasPendingDatagrams()) {
            const QNetworkDatagram d = socket.receiveDatagram();
            lastFrom = d.senderAddress();
            lastPort = static_cast<quint16>(d.senderPort());
            received.append(d.data());
            for (const QByteArray &out : answer(d.data()))
                reply(out);
        }
    });
}
