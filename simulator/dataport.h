#pragma once

#include "simulator/livestream.h"
#include "simulator/logreplay.h"

#include <QList>
#include <QObject>
#include <QTcpServer>
#include <QTimer>

#include <memory>

class QHostAddress;
class QTcpSocket;

namespace simulator {

class FaultSet;
struct LoggerState;

// The logger's side of the data port: streams to whoever is connected, in real time and in batches.
// A tool that doesn't read loses entries, whole ones, and costs the simulator bounded memory. Lives
// on the simulator's thread.
class DataPort : public QObject
{
    Q_OBJECT

public:
    static constexpr int batchPeriod_ms = 20;
    static constexpr qint64 maxUnsentBytes = 8 * 1024 * 1024; // for each connection

    // State and faults outlive the port.
    DataPort(LoggerState &state, FaultSet &faults, QObject *parent = nullptr);
    ~DataPort() override;

    [[nodiscard]] bool listen(const QHostAddress &address, QString *error);
    // Drops every connection and takes no new one.
    void close();
    // Drops every connection; the next may come.
    void dropConnections();

    // The stream follows the configuration anew.
    void configurationChanged() { m_isOutdated = true; }

    // CAN frames a second on top of the configured sources, and their messages: see LiveStream.
    void setLoad(quint32 framesPerSecond, int messages = LiveStream::usualLoadMessages)
    {
        m_load = framesPerSecond;
        m_loadMessages = messages;
    }

    // Streams this log instead of the configured sources; null ends that.
    void setReplay(std::unique_ptr<LogReplay> replay);

    // Sends these bytes to every connected tool at once.
    void send(const QByteArray &entries);

    [[nodiscard]] int connections() const { return m_sessions.size(); }
    // Bytes of entries that a tool lost because it didn't read.
    [[nodiscard]] qint64 droppedBytes() const { return m_droppedBytes; }

private:
    struct Session
    {
        QTcpSocket *socket; // child of the server
        qint64 sentBytes = 0;
    };

    void acceptConnections();
    void removeSession(QTcpSocket *socket);
    void sendBatch();
    [[nodiscard]] QByteArray nextBatch();
    void spoil(QByteArray &batch);
    void write(Session &session, const QByteArray &entries);

    LoggerState &m_state;
    FaultSet &m_faults;
    QTcpServer m_server;
    QTimer m_timer;
    QList<Session> m_sessions;
    LiveStream m_stream;
    std::unique_ptr<LogReplay> m_replay;
    bool m_isOutdated = true;
    quint32 m_load = 0;
    int m_loadMessages = LiveStream::usualLoadMessages;
    quint64 m_noise = 0; // how many random words have been used
    qint64 m_droppedBytes = 0;
};

} // namespace simulator
