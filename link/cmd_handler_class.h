#pragma once

#include "config/threadcall.h"
#include "link/messagerate.h"
#include "link/protocol/envelope.h"
#include "link/protocol/sequencenumber.h"
#include "link/replywait.h"

#include <QAbstractSocket>
#include <QHostAddress>
#include <QThread>

#include <atomic>

class QTcpSocket;
class QTimer;

// Owns the command socket. The object lives on its own thread, where all slots run; sendCommand and
// sendStreamingMessage are called by one other thread, which waits in them. Both threads use the
// reply wait and the atomic, nothing else.
class CMD_Handler_Class : public QThread
{
    Q_OBJECT

public:
    CMD_Handler_Class();
    ~CMD_Handler_Class() override;

    // Sends a text command and waits for its reply: empty when none came in time, "ERROR=-1001"
    // when there is no connection.
    [[nodiscard]] QByteArray sendCommand(const QByteArray &command, int timeout_ms);
    // Sends a record or an image and waits for the echo or acknowledgement. False, with
    // signal_cmd_timeout_error, when none came in time.
    [[nodiscard]] bool sendStreamingMessage(int type, const QByteArray &payload, int timeout_ms);
    // What came as echo or acknowledgement, behind a sendStreamingMessage that has succeeded.
    [[nodiscard]] protocol::Message takeAnswer() { return m_wait.takeReply(); }

    // From any thread.
    [[nodiscard]] bool isConnected() const { return m_isConnected; }

public slots:
    bool socket_connect(QHostAddress tcp_address, ushort tcp_port);
    void socket_disconnect();
    bool is_socket_connected();
    void write_data(QByteArray *data); // takes the bytes over
    QString get_last_error();
    void read_cmd();
    void socket_disconnected();
    void tcp_socket_error(QAbstractSocket::SocketError socketError);
    void cmd_response_timeout_occured();
    void keep_alive_expired();

signals:
    void signal_disconnected();
    // The one receiver owns the bytes. It takes them on this thread: what waits in the queue of
    // another one is bounded there.
    void signal_streaming_prot_received(int type, QByteArray *data);
    void signal_socket_error(QString error_txt);
    void signal_cmd_timeout_error(int cmd_type);
    void signal_keep_alive_needed();

protected:
    void run() override;

private:
    void send(const protocol::Message &message, int timeout_ms);
    void process(const protocol::Message &message);
    void passOn(const protocol::Message &message);
    void fail(const QString &text);
    void endWait();

    QTcpSocket *m_socket = nullptr;
    QTimer *m_responseTimer = nullptr;
    QTimer *m_keepAliveTimer = nullptr;
    protocol::EnvelopeReader m_reader;
    QString m_lastError;
    MessageRate m_warnings;
    MessageRate m_recordLines{100};
    bool m_keepAliveIsAsked = false; // and no command has gone out since

    // Of the calling thread.
    protocol::SequenceNumber m_streamingSequence;
    protocol::SequenceNumber m_commandSequence;

    ReplyWait m_wait;
    std::atomic<bool> m_isConnected{false};
    threadcall::End m_end;
};
