#pragma once

#include <QByteArray>
#include <QHostAddress>
#include <QTcpServer>
#include <QTcpSocket>
#include <QVector>

#include <functional>

// The logger's end of a file transfer for one test: what it does with a request is the test's.
// Lives on the test's thread, whose event loop runs.
class FilePeer
{
public:
    // Called once for each connection, when its first line is there.
    using Answer = std::function<void(QTcpSocket &, const QByteArray &request)>;

    explicit FilePeer(Answer answer, const QHostAddress &address = QHostAddress::LocalHost,
                      quint16 port = 0)
        : m_answer(std::move(answer))
    {
        if (!m_server.listen(address, port))
            qFatal("not listening");
        QObject::connect(&m_server, &QTcpServer::newConnection, [this] {
            QTcpSocket *socket = m_server.nextPendingConnection();
            QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
                const QByteArray request = socket->readAll();
                requests += request;
                m_answer(*socket, request);
            });
        });
    }

    // Sends these bytes and closes.
    [[nodiscard]] static Answer sending(const QByteArray &bytes)
    {
        return [bytes](QTcpSocket &socket, const QByteArray &) {
            socket.write(bytes);
            socket.disconnectFromHost();
        };
    }

    [[nodiscard]] QHostAddress address() const { return m_server.serverAddress(); }
    [[nodiscard]] quint16 port() const { return m_server.serverPort(); }

    QVector<QByteArray> requests;

private:
    Answer m_answer;
    QTcpServer m_server;
};
