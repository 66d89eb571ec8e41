#include "tests/support/peerlogger.h"

#include "link/protocol/messagetypes.h"

#include <QTcpServer>
#include <QTcpSocket>

PeerLogger::PeerLogger(Answer answer)
    : m_address(freeLoopbackAddress())
    , m_answer(std::move(answer))
{
    m_context = new QObject;
    m_context->moveToThread(this);
    start();
    onThread([this] { listen(); });
}

void PeerLogger::listen()
{
    m_commandServer = new QTcpServer(m_context);
    m_dataServer = new QTcpServer(m_context);
    connect(m_commandServer, &QTcpServer::newConnection, m_context, [this] {
        m_commandSocket = m_commandServer->nextPendingConnection();
        m_reader.reset();
        connect(m_commandSocket, &QTcpSocket::readyRead, m_context, [this] { readCommands(); });
    });
    connect(m_dataServer, &QTcpServer::newConnection, m_context,
            [this] { m_dataSocket = m_dataServer->nextPendingConnection(); });
    if (!m_commandServer->listen(m_address, protocol::commandPort)
        || !m_dataServer->listen(m_address, protocol::dataPort))
        qFatal("cannot listen on %s", qPrintable(m_address.toString()));
}

PeerLogger::~PeerLogger()
{
    quit();
    wait();
    m_end.waitedFor();
}

void PeerLogger::run()
{
    exec();
    delete m_context;
    m_end.reached();
}

void PeerLogger::onThread(const std::function<void()> &function)
{
    threadcall::run(m_context, function);
}

void PeerLogger::readCommands()
{
    m_reader.feed(m_commandSocket->readAll(), [this](const protocol::Message &message) {
        {
            const std::lock_guard lock(m_mutex);
            m_received.append(message);
        }
        if (m_answer)
            m_commandSocket->write(m_answer(message));
    });
}

QVector<protocol::Message> PeerLogger::received() const
{
    const std::lock_guard lock(m_mutex);
    return m_received;
}

// The tool may know of its connection before this thread has seen it.
QTcpSocket *PeerLogger::accepted(QTcpServer *server, QTcpSocket *const &socket)
{
    constexpr int timeout_ms = 5000;
    if (!socket)
        server->waitForNewConnection(timeout_ms);
    if (!socket)
        qFatal("nobody has connected");
    return socket;
}

void PeerLogger::sendCommandBytes(const QByteArray &bytes)
{
    onThread([&] { accepted(m_commandServer, m_commandSocket)->write(bytes); });
}

void PeerLogger::sendDataBytes(const QByteArray &bytes)
{
    onThread([&] { accepted(m_dataServer, m_dataSocket)->write(bytes); });
}

void PeerLogger::closeCommandSocket()
{
    onThread([&] { accepted(m_commandServer, m_commandSocket)->close(); });
}

void PeerLogger::closeDataSocket()
{
    onThread([&] { accepted(m_dataServer, m_dataSocket)->close(); });
}

void PeerLogger::stopListening(quint16 port)
{
    onThread([&] {
        for (QTcpServer *server : {m_commandServer, m_dataServer})
            if (server->serverPort() == port)
                server->close();
    });
}

QByteArray echo(const protocol::Message &message)
{
    return protocol::envelopeBytes(message);
}

QByteArray textReply(const protocol::Message &message, const QByteArray &text)
{
    return protocol::envelopeBytes({protocol::TextCommand, message.sequence, text});
}
