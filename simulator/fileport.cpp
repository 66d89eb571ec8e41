#include "simulator/fileport.h"

#include "link/protocol/messagetypes.h"
#include "simulator/faults.h"
#include "simulator/filesession.h"
#include "simulator/listening.h"

#include <QTcpSocket>

namespace simulator {

FilePort::FilePort(LoggerState &state, FaultSet &faults, QObject *parent)
    : QObject(parent)
    , m_state(state)
    , m_faults(faults)
    , m_server(this)
{
    connect(&m_server, &QTcpServer::newConnection, this, &FilePort::acceptConnections);
}

FilePort::~FilePort()
{
    close();
}

bool FilePort::listen(const QHostAddress &address, QString *error)
{
    return listenOn(m_server, address, protocol::filePort, error);
}

void FilePort::close()
{
    m_server.close();
    const auto sessions = findChildren<FileSession *>(QString(), Qt::FindDirectChildrenOnly);
    for (FileSession *session : sessions)
        session->drop();
}

void FilePort::acceptConnections()
{
    while (QTcpSocket *socket = m_server.nextPendingConnection()) {
        auto *session = new FileSession(socket, m_state, m_faults, this);
        if (m_faults.happens(Fault::RefuseFileConnection))
            session->drop();
    }
}

} // namespace simulator
