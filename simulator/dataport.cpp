#include "simulator/dataport.h"

#include "link/protocol/messagetypes.h"
#include "simulator/faults.h"
#include "simulator/listening.h"

#include <QTcpSocket>

namespace simulator {

DataPort::DataPort(LoggerState &state, FaultSet &faults, QObject *parent)
    : QObject(parent)
    , m_state(state)
    , m_faults(faults)
    , m_server(this)
{
    connect(&m_server, &QTcpServer::newConnection, this, &DataPort::acceptConnections);
}

DataPort::~DataPort()
{
    close();
}

bool DataPort::listen(const QHostAddress &address, QString *error)
{
    return listenOn(m_server, address, protocol::dataPort, error);
}

void DataPort::close()
{
    m_server.close();
    const auto sockets = m_server.findChildren<QTcpSocket *>();
    for (QTcpSocket *socket : sockets)
        socket->abort();
}

void DataPort::acceptConnections()
{
    while (QTcpSocket *socket = m_server.nextPendingConnection()) {
        connect(socket, &QTcpSocket::disconnected, socket, &QTcpSocket::deleteLater);
        if (m_faults.happens(Fault::RefuseDataConnection))
            socket->abort();
    }
}

} // namespace simulator
