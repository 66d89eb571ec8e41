#include "link/cmd_handler_class.h"

#include "link/protocol/messagetypes.h"
#include "link/protocol/reply.h"
#include "link/socketconnect.h"

#include <QDebug>
#include <QMetaMethod>
#include <QNetworkProxy>
#include <QScopeGuard>
#include <QTcpSocket>
#include <QTimer>

#include <memory>
#include <utility>

namespace {

constexpr int keepAliveInterval_ms = 5000;
constexpr qint64 readBufferBytes = 1 << 20;

} // namespace

CMD_Handler_Class::CMD_Handler_Class()
{
    moveToThread(this);
}

CMD_Handler_Class::~CMD_Handler_Class()
{
    quit();
    wait();
    m_end.waitedFor();
}

void CMD_Handler_Class::run()
{
    const auto atEnd = qScopeGuard([this] { m_end.reached(); });
    QTcpSocket socket(this);
    QTimer responseTimer;
    QTimer keepAliveTimer;
    socket.setProxy(QNetworkProxy::NoProxy);
    socket.setReadBufferSize(readBufferBytes);
    responseTimer.setSingleShot(true);
    m_socket = &socket;
    m_responseTimer = &responseTimer;
    m_keepAliveTimer = &keepAliveTimer;
    connect(&socket, &QTcpSocket::errorOccurred, this, &CMD_Handler_Class::tcp_socket_error);
    connect(&socket, &QTcpSocket::disconnected, this, &CMD_Handler_Class::socket_disconnected);
    connect(&socket, &QTcpSocket::readyRead, this, &CMD_Handler_Class::read_cmd);
    connect(&responseTimer, &QTimer::timeout, this,
            &CMD_Handler_Class::cmd_response_timeout_occured);
    connect(&keepAliveTimer, &QTimer::timeout, this, &CMD_Handler_Class::keep_alive_expired);

    qDebug() << "CMD_Handler_Class executing event-looop: thread id - " << currentThreadId();
    exec();
    qDebug() << "CMD_Handler_Class leaved event-looop: thread id - " << currentThreadId();
    socket.disconnect(this);
    socket.close();
    m_isConnected = false;
    m_wait.giveUp();
    m_socket = nullptr;
}

QByteArray CMD_Handler_Class::sendCommand(const QByteArray &command, int timeout_ms)
{
    if (!m_isConnected)
        return protocol::errorReply(protocol::loggerNotConnected);
    const quint16 sequence = m_commandSequence.next();
    m_wait.open(ReplyWait::Kind::Text, sequence);
    send({protocol::TextCommand, sequence, command}, timeout_ms);
    (void)m_wait.wait();
    return m_wait.takeReply().payload;
}

bool CMD_Handler_Class::sendStreamingMessage(int type, const QByteArray &payload, int timeout_ms)
{
    const quint16 sequence = m_streamingSequence.next();
    m_wait.open(ReplyWait::Kind::Streaming, sequence);
    send({quint8(type), sequence, payload}, timeout_ms);
    if (m_wait.wait())
        return true;
    emit signal_cmd_timeout_error(type);
    return false;
}

// On the caller's thread. The timer runs before the bytes go out, so that a wait always ends.
void CMD_Handler_Class::send(const protocol::Message &message, int timeout_ms)
{
    auto bytes = std::make_unique<QByteArray>(protocol::envelopeBytes(message));
    threadcall::run(this, [this, timeout_ms, data = bytes.release()] {
        m_keepAliveIsAsked = false;
        m_responseTimer->start(timeout_ms);
        if (m_isConnected)
            m_keepAliveTimer->start(keepAliveInterval_ms);
        write_data(data);
    });
}

bool CMD_Handler_Class::socket_connect(QHostAddress tcp_address, ushort tcp_port)
{
    qDebug() << "CONNECT " << tcp_address.toString() << tcp_port;
    m_lastError.clear();
    m_reader.reset();
    m_keepAliveIsAsked = false;
    m_socket->abort();
    m_isConnected = connectInTime(*m_socket, tcp_address, tcp_port);
    if (m_isConnected)
        m_keepAliveTimer->start(keepAliveInterval_ms);
    else if (m_lastError.isEmpty())
        m_lastError = m_socket->errorString();
    return m_isConnected;
}

// A peer that doesn't read must not keep the connection closing: unsent bytes are given up.
void CMD_Handler_Class::socket_disconnect()
{
    m_socket->close();
    if (m_socket->state() != QAbstractSocket::UnconnectedState)
        m_socket->abort();
}

bool CMD_Handler_Class::is_socket_connected()
{
    return m_isConnected;
}

QString CMD_Handler_Class::get_last_error()
{
    return m_lastError;
}

void CMD_Handler_Class::write_data(QByteArray *data)
{
    const std::unique_ptr<QByteArray> owned(data);
    if (m_socket->state() == QAbstractSocket::ConnectedState && !owned->isEmpty())
        m_socket->write(*owned);
    else
        endWait();
}

void CMD_Handler_Class::read_cmd()
{
    while (m_socket->bytesAvailable() > 0) {
        m_reader.feed(m_socket->readAll(),
                      [this](const protocol::Message &message) { process(message); });
        if (!m_reader.isBroken())
            continue;
        fail(QStringLiteral("The logger announced an envelope of an impossible length."));
        return;
    }
}

void CMD_Handler_Class::process(const protocol::Message &message)
{
    if (message.type == protocol::TextCommand) {
        if (!message.payload.isEmpty() && m_wait.answer(ReplyWait::Kind::Text, message))
            m_responseTimer->stop();
        return;
    }
    const bool isRecord = protocol::isRecordType(message.type);
    if (!isRecord && message.type != protocol::Acknowledgement) {
        if (m_warnings.allows())
            qWarning() << "Something Went Wrong - Landed in DEFAULT";
        return;
    }
    if (isRecord)
        passOn(message); // ahead of the caller, who goes on with what the logger holds now
    if (m_wait.answer(ReplyWait::Kind::Streaming, message))
        m_responseTimer->stop();
}

void CMD_Handler_Class::passOn(const protocol::Message &message)
{
    if (m_recordLines.allows())
        qDebug() << "CMD_TYPE:" << message.type
                 << " serialized data lenth:" << message.payload.size();
    static const QMetaMethod received =
        QMetaMethod::fromSignal(&CMD_Handler_Class::signal_streaming_prot_received);
    if (!isSignalConnected(received)) // the receiver owns the copy
        return;
    emit signal_streaming_prot_received(message.type,
                                        std::make_unique<QByteArray>(message.payload).release());
}

void CMD_Handler_Class::socket_disconnected()
{
    m_isConnected = false;
    m_keepAliveTimer->stop();
    emit signal_disconnected(); // ahead of what the caller, who goes on then, has to tell
    endWait();
}

void CMD_Handler_Class::tcp_socket_error(QAbstractSocket::SocketError)
{
    fail(m_socket->errorString());
}

void CMD_Handler_Class::fail(const QString &text)
{
    qWarning("Warning TCP-Cmd-Socket-Error %s", text.toLatin1().constData());
    m_lastError = text; // closing forgets it
    m_isConnected = false;
    emit signal_socket_error(text);
    m_socket->close();
    m_socket->abort();
}

void CMD_Handler_Class::cmd_response_timeout_occured()
{
    qDebug() << "std_cmd_response_timeout_occured";
    endWait();
}

// The caller may be waiting in a long command: one request is enough for when it is back.
void CMD_Handler_Class::keep_alive_expired()
{
    if (!std::exchange(m_keepAliveIsAsked, true))
        emit signal_keep_alive_needed();
}

// A timer that went on could end the wait of a later command.
void CMD_Handler_Class::endWait()
{
    m_responseTimer->stop();
    m_wait.giveUp();
}
