#pragma once

#include "link/protocol/envelope.h"

#include <QByteArray>
#include <QObject>
#include <QTimer>

#include <list>

class QTcpSocket;

namespace simulator {

class FaultSet;

// One connection to the command port: finds the messages that come in, and sends messages as well
// or as badly as the faults say. Lives on the simulator's thread.
class CommandSession : public QObject
{
    Q_OBJECT

public:
    // Takes the socket over. The faults outlive the session.
    CommandSession(QTcpSocket *socket, FaultSet &faults, QObject *parent);

    // Sends the messages in one envelope. `word` is that of the command that they answer, or the
    // message type; `push` may go along with them.
    void send(QVector<protocol::Message> messages, const QString &word,
              const protocol::Message &push);
    // Ends the connection without sending what is left.
    void drop();
    // Ends the connection once all is sent.
    void finish();

signals:
    void received(const protocol::Message &message);
    void closed();

private:
    void read();
    void enqueue(const QByteArray &bytes, bool endsInside);
    void sendPiece();
    void write(const QByteArray &bytes);

    QTcpSocket *m_socket; // child of this
    FaultSet &m_faults;
    protocol::EnvelopeReader m_reader;
    std::list<QByteArray> m_pieces; // still to be sent; an empty one ends the connection
    QTimer m_pieceTimer;
    qint64 m_sentBytes = 0;
};

} // namespace simulator
