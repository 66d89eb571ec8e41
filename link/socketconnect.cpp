#include "link/socketconnect.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QHostAddress>
#include <QTcpSocket>
#include <QTimer>

bool connectInTime(QTcpSocket &socket, const QHostAddress &address, quint16 port, int timeout_ms)
{
    QEventLoop untilDecided;
    const auto watch = [&untilDecided](QAbstractSocket::SocketState state) {
        if (state == QAbstractSocket::ConnectedState || state == QAbstractSocket::UnconnectedState)
            untilDecided.quit();
    };
    QTimer limit;
    limit.setSingleShot(true);
    QObject::connect(&limit, &QTimer::timeout, &untilDecided, &QEventLoop::quit);

    QObject::connect(&socket, &QTcpSocket::stateChanged, &untilDecided, watch);
    socket.connectToHost(address, port);
    // Calls that were queued before the loop runs don't wake it: the socket may be closed in one.
    QCoreApplication::sendPostedEvents();
    if (socket.state() == QAbstractSocket::ConnectingState) {
        limit.start(timeout_ms);
        untilDecided.exec();
    }
    // No time left: the socket gives up and says so in its own words.
    if (socket.state() != QAbstractSocket::UnconnectedState)
        return socket.waitForConnected(0);
    return false;
}
