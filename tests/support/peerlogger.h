#pragma once

#include "config/threadcall.h"
#include "link/protocol/envelope.h"
#include "tests/support/loopbackaddress.h"

#include <QHostAddress>
#include <QThread>

#include <functional>
#include <mutex>

class QTcpServer;
class QTcpSocket;

// The logger's end of the command and data sockets for one test: it answers each message with the
// bytes that the test gives. Lives on a thread of its own, for the tool's thread blocks while it
// waits. Each object listens on a loopback address of its own.
class PeerLogger : public QThread
{
    Q_OBJECT

public:
    // Called on the peer's thread for each message; what it gives is sent back as it is.
    using Answer = std::function<QByteArray(const protocol::Message &)>;

    explicit PeerLogger(Answer answer = {});
    ~PeerLogger() override;

    [[nodiscard]] QHostAddress address() const { return m_address; }

    // From the test's thread; each returns when it is done.
    void sendCommandBytes(const QByteArray &bytes);
    void sendDataBytes(const QByteArray &bytes);
    void closeCommandSocket();
    void closeDataSocket();
    void stopListening(quint16 port);

    // All messages so far.
    [[nodiscard]] QVector<protocol::Message> received() const;

protected:
    void run() override;

private:
    void listen();
    void readCommands();
    void onThread(const std::function<void()> &function);
    static QTcpSocket *accepted(QTcpServer *server, QTcpSocket *const &socket);

    const QHostAddress m_address;
    const Answer m_answer;
    QObject *m_context = nullptr; // lives on the thread
    QTcpServer *m_commandServer = nullptr;
    QTcpServer *m_dataServer = nullptr;
    QTcpSocket *m_commandSocket = nullptr;
    QTcpSocket *m_dataSocket = nullptr;
    protocol::EnvelopeReader m_reader;
    threadcall::End m_end;
    mutable std::mutex m_mutex; // guards what was received
    QVector<protocol::Message> m_received;
};

// The answer of a logger that echoes what it gets.
[[nodiscard]] QByteArray echo(const protocol::Message &message);
// The answer to a text command.
[[nodiscard]] QByteArray textReply(const protocol::Message &message, const QByteArray &text);
