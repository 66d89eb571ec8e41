#pragma once

#include "link/protocol/envelope.h"

#include <QObject>
#include <QTcpServer>

class QHostAddress;

namespace simulator {

class CommandSession;
class FaultSet;
struct LoggerState;

// The logger's side of the command port: answers text commands, and takes and gives records.
// Several tools may be connected. Lives on the simulator's thread.
class CommandPort : public QObject
{
    Q_OBJECT

public:
    // State and faults outlive the port.
    CommandPort(LoggerState &state, FaultSet &faults, QObject *parent = nullptr);
    ~CommandPort() override;

    [[nodiscard]] bool listen(const QHostAddress &address, QString *error);
    // Drops every connection and takes no new one.
    void close();
    // Drops every connection; the next may come.
    void dropConnections();

    // Sends the record of this message type to every connected tool without being asked.
    void push(int type);
    [[nodiscard]] int connections() const { return m_sessions.size(); }

signals:
    void received(const protocol::Message &message);
    void sent(const protocol::Message &message);
    // The configuration that the live data follow has changed.
    void configurationChanged();
    // Logging was stopped or goes on.
    void loggingSwitched();
    // All is answered; now the logger restarts.
    void restartWanted();

private:
    void acceptConnections();
    void removeSession(CommandSession *session);
    void handle(CommandSession *session, const protocol::Message &message);
    void handleText(CommandSession *session, const protocol::Message &message);
    void handleRecord(CommandSession *session, const protocol::Message &message);
    void handleUpdate(CommandSession *session, const protocol::Message &message);
    [[nodiscard]] QByteArray textAnswer(const QByteArray &line, const QString &word,
                                        bool &restarts);
    void send(CommandSession *session, const protocol::Message &message, const QString &word);
    void restart();

    LoggerState &m_state;
    FaultSet &m_faults;
    QTcpServer m_server;
    QList<CommandSession *> m_sessions; // children of this
};

} // namespace simulator
