#include "tests/simulator/rawclient.h"

#include "link/protocol/messagetypes.h"

#include <QDeadlineTimer>
#include <QNetworkProxy>

namespace {

constexpr int patience_ms = 10'000;

} // namespace

RawClient::RawClient(const QHostAddress &address, quint16 port)
{
    m_socket.setProxy(QNetworkProxy::NoProxy);
    m_socket.connectToHost(address, port);
    m_socket.waitForConnected(patience_ms);
}

bool RawClient::isConnected() const
{
    return m_socket.state() == QAbstractSocket::ConnectedState;
}

void RawClient::send(const QByteArray &bytes)
{
    m_socket.write(bytes);
    while (m_socket.bytesToWrite() > 0 && m_socket.waitForBytesWritten(patience_ms)) {
    }
}

QByteArray RawClient::receive()
{
    if (m_socket.bytesAvailable() == 0)
        m_socket.waitForReadyRead(patience_ms);
    return m_socket.readAll();
}

QByteArray RawClient::receiveUntil(int bytes)
{
    const QDeadlineTimer deadline(patience_ms);
    QByteArray all;
    while (all.size() < bytes && !deadline.hasExpired()) {
        const QByteArray piece = receive();
        if (piece.isEmpty())
            break;
        all += piece;
    }
    return all;
}

protocol::Message RawClient::message()
{
    while (m_messages.isEmpty()) {
        const QByteArray bytes = receive();
        if (bytes.isEmpty())
            return {};
        m_reader.feed(bytes, [this](const protocol::Message &found) { m_messages += found; });
    }
    return m_messages.takeFirst();
}

QByteArray RawClient::ask(const QByteArray &command)
{
    send({protocol::TextCommand, ++m_sequence, command});
    const protocol::Message reply = message();
    if (reply.type != protocol::TextCommand || reply.sequence != m_sequence
        || !reply.payload.endsWith("\r\n"))
        return {};
    return reply.payload.chopped(2);
}

bool RawClient::waitForEnd()
{
    const QDeadlineTimer deadline(patience_ms);
    while (isConnected() && !deadline.hasExpired()) {
        if (!m_socket.waitForReadyRead(patience_ms))
            break;
        m_socket.readAll();
    }
    return !isConnected();
}
