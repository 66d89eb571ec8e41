#include "simulator/listening.h"

#include <QHostAddress>
#include <QNetworkProxy>
#include <QTcpServer>

namespace simulator {

bool listenOn(QTcpServer &server, const QHostAddress &address, quint16 port, QString *error)
{
    server.setProxy(QNetworkProxy::NoProxy);
    if (server.listen(address, port))
        return true;
    if (error) {
        *error = QStringLiteral("Port %1 of %2: %3")
                     .arg(port)
                     .arg(address.toString(), server.errorString());
    }
    return false;
}

} // namespace simulator
