#pragma once

#include "link/protocol/envelope.h"

#include <QByteArray>
#include <QHostAddress>
#include <QTcpSocket>

// A client of the logger's ports that knows bytes only. Every wait ends after some seconds.
class RawClient
{
public:
    RawClient(const QHostAddress &address, quint16 port);

    [[nodiscard]] bool isConnected() const;
    [[nodiscard]] QTcpSocket &socket() { return m_socket; }

    void send(const QByteArray &bytes);
    void send(const protocol::Message &message) { send(protocol::envelopeBytes(message)); }

    // The next bytes; empty when the connection ends or nothing comes.
    [[nodiscard]] QByteArray receive();
    // Everything until the connection ends, or until so many bytes have come.
    [[nodiscard]] QByteArray receiveUntil(int bytes);
    [[nodiscard]] QByteArray receiveAll() { return receiveUntil(0x7FFFFFFF); }

    // The next message; of type 0 when none comes.
    [[nodiscard]] protocol::Message message();
    // The text that answers this command, without its line end.
    [[nodiscard]] QByteArray ask(const QByteArray &command);
    [[nodiscard]] QByteArray ask(const char *command) { return ask(QByteArray(command)); }

    // Whether the other side ends the connection.
    [[nodiscard]] bool waitForEnd();

private:
    QTcpSocket m_socket;
    protocol::EnvelopeReader m_reader;
    QVector<protocol::Message> m_messages; // received, not given yet
    quint16 m_sequence = 100;
};
