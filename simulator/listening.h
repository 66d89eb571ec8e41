#pragma once

#include <QString>

class QHostAddress;
class QTcpServer;

namespace simulator {

// Listens without a proxy. On a failure `error` gets a text that names address and port.
[[nodiscard]] bool listenOn(QTcpServer &server, const QHostAddress &address, quint16 port,
                            QString *error);

} // namespace simulator
