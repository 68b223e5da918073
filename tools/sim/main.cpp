// SPDX-License-Identifier: MIT
// quorvane-sim: the simulated game server as a program of its own, for the demo and
// for trying the tool by hand.
#include "SimScript.h"
#include "SimServer.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QSocketNotifier>

#include <csignal>
#include <cstdio>
#include <sys/socket.h>
#include <unistd.h>

namespace {

int g_signalPipe[2] = {-1, -1};

// Only writes a byte: the event loop reads the other end and quits from there.
void onSignal(int)
{
    const char byte = 1;
    [[maybe_unused]] const auto written = ::write(g_signalPipe[1], &byte, 1);
}

bool quitOnSignals(QCoreApplication *app)
{
    if (::socketpair(AF_UNIX, SOCK_STREAM, 0, g_signalPipe) != 0)
        return false;
    auto *notifier = new QSocketNotifier(g_signalPipe[0], QSocketNotifier::Read, app);
    QObject::connect(notifier, &QSocketNotifier::activated, app, &QCoreApplication::quit);
    struct sigaction action = {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    return ::sigaction(SIGTERM, &action, nullptr) == 0 && ::sigaction(SIGINT, &action, nullptr) == 0;
}

int fail(const QString &message)
{
    std::fprintf(stderr, "quorvane-sim: %s\n", qPrintable(message));
    return 1;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("quorvane-sim"));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("A simulated game server answering the remote console over UDP."));
    parser.addHelpOption();
    const QCommandLineOption portOption(QStringLiteral("port"), QStringLiteral("UDP port (0: any free one)."),
                                        QStringLiteral("port"), QStringLiteral("12203"));
    const QCommandLineOption passwordOption(QStringLiteral("password"),
                                            QStringLiteral("Remote console password (empty: none set)."),
                                            QStringLiteral("password"));
    const QCommandLineOption scriptOption(QStringLiteral("script"), QStringLiteral("Player events over time."),
                                          QStringLiteral("file"));
    const QCommandLineOption recordOption(QStringLiteral("record"),
                                          QStringLiteral("Append each received datagram, escaped, as a line."),
                                          QStringLiteral("file"));
    const QCommandLineOption bindOption(QStringLiteral("bind"), QStringLiteral("Address to listen on."),
                                        QStringLiteral("address"), QStringLiteral("127.0.0.1"));
    const QCommandLineOption delayOption(QStringLiteral("delay"),
                                         QStringLiteral("Milliseconds before each answer goes out (default 0)."),
                                         QStringLiteral("ms"), QStringLiteral("0"));
    parser.addOptions({portOption, passwordOption, scriptOption, recordOption, bindOption, delayOption});
    parser.process(app);
    if (!parser.positionalArguments().isEmpty())
        return fail(QStringLiteral("unexpected argument \"%1\"").arg(parser.positionalArguments().first()));

    bool ok = false;
    const uint port = parser.value(portOption).toUInt(&ok);
    if (!ok || port > 65535)
        return fail(QStringLiteral("bad port \"%1\"").arg(parser.value(portOption)));
    const QHostAddress address(parser.value(bindOption));
    if (address.isNull())
        return fail(QStringLiteral("bad address \"%1\"").arg(parser.value(bindOption)));

    const int delay = parser.value(delayOption).toInt(&ok);
    if (!ok || delay < 0)
        return fail(QStringLiteral("bad delay \"%1\"").arg(parser.value(delayOption)));

    SimServer server;
    server.setKeepReceived(false);
    server.setReplyDelay(delay);
    server.setPassword(parser.value(passwordOption).toLatin1());
    if (parser.isSet(scriptOption)) {
        SimScript script;
        QString error;
        if (!script.load(parser.value(scriptOption), &error))
            return fail(error);
        server.setScript(script);
    }
    if (parser.isSet(recordOption)) {
        QString error;
        if (!server.setRecordFile(parser.value(recordOption), &error))
            return fail(error);
    }
    if (!quitOnSignals(&app))
        return fail(QStringLiteral("cannot catch signals"));
    if (!server.listen(address, static_cast<quint16>(port))) {
        return fail(QStringLiteral("cannot listen on %1:%2: %3")
                        .arg(address.toString())
                        .arg(port)
                        .arg(server.errorString()));
    }

    std::printf("quorvane-sim listening on %s:%u\n", qPrintable(address.toString()), unsigned(server.port()));
    std::fflush(stdout);
    server.run();
    return app.exec();
}
