#pragma once

#include <QByteArray>
#include <QFile>
#include <QObject>

class QTcpSocket;

namespace simulator {

class FaultSet;
struct LoggerState;

// One connection to the file port. Deletes itself when it has ended. Lives on the simulator's
// thread.
class FileSession : public QObject
{
    Q_OBJECT

public:
    // Takes the socket over. State and faults outlive the session.
    FileSession(QTcpSocket *socket, const LoggerState &state, const FaultSet &faults,
                QObject *parent);

    // Ends the connection without sending what is left.
    void drop();

private:
    void read();
    void begin(const QByteArray &request);
    void sendMore();

    QTcpSocket *m_socket; // child of this
    const LoggerState &m_state;
    const FaultSet &m_faults;
    QByteArray m_request;
    QFile m_file;
    qint64 m_left = 0; // bytes still to be sent; behind the end of the file they are zeros
    bool m_isStalled = false;
};

} // namespace simulator
