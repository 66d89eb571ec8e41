#include "link/socketconnect.h"
#include "tests/support/loopbackaddress.h"
#include "tests/support/silentport.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <QTimer>

class tst_SocketConnect : public QObject
{
    Q_OBJECT

private slots:
    void aListeningPortIsConnected();
    void aRefusedConnectionHasItsCause();
    void aPortThatDoesNotAnswerFailsInTime();
    void closingTheSocketEndsTheWait();
};

void tst_SocketConnect::aListeningPortIsConnected()
{
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    QTcpSocket socket;
    QVERIFY(connectInTime(socket, server.serverAddress(), server.serverPort()));
    QCOMPARE(socket.state(), QAbstractSocket::ConnectedState);
}

void tst_SocketConnect::aRefusedConnectionHasItsCause()
{
    QTcpSocket socket;
    QVERIFY(!connectInTime(socket, freeLoopbackAddress(), 1));
    QCOMPARE(socket.errorString(), QStringLiteral("Connection refused"));
}

void tst_SocketConnect::aPortThatDoesNotAnswerFailsInTime()
{
    const QHostAddress address = freeLoopbackAddress();
    const SilentPort silent(address, 19867);
    if (!silent.isSilent())
        QSKIP("no silent port on this system");
    QTcpSocket socket;
    QVERIFY(!connectInTime(socket, address, 19867, 50));
    QCOMPARE(socket.errorString(), QStringLiteral("Socket operation timed out"));
    QCOMPARE(socket.state(), QAbstractSocket::UnconnectedState);
}

void tst_SocketConnect::closingTheSocketEndsTheWait()
{
    constexpr int patience_ms = 60'000;
    const QHostAddress address = freeLoopbackAddress();
    const SilentPort silent(address, 19867);
    if (!silent.isSilent())
        QSKIP("no silent port on this system");
    QTcpSocket socket;
    QTimer limit;
    limit.start(patience_ms);
    QTimer::singleShot(0, &socket, [&socket] { socket.abort(); });
    QVERIFY(!connectInTime(socket, address, 19867, patience_ms));
    QVERIFY(limit.remainingTime() > patience_ms / 2);
}

QTEST_GUILESS_MAIN(tst_SocketConnect)
#include "tst_socketconnect.moc"
