#pragma once

#include <QtGlobal>

class QHostAddress;
class QTcpSocket;

// How long a logger has to take a connection.
constexpr int connectTimeout_ms = 10'000;

// Connects the socket, on its own thread, and waits until it is connected or has failed: refused, not
// in time, or closed meanwhile. The thread's events run here, so a slot that closes the socket ends
// the wait. The socket's errorString() tells why it has failed.
[[nodiscard]] bool connectInTime(QTcpSocket &socket, const QHostAddress &address, quint16 port,
                                 int timeout_ms = connectTimeout_ms);
