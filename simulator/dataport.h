#pragma once

#include <QObject>
#include <QTcpServer>

class QHostAddress;

namespace simulator {

class DataSession;
class FaultSet;
struct LoggerState;

// The logger's side of the data port. Lives on the simulator's thread.
class DataPort : public QObject
{
    Q_OBJECT

public:
    DataPort(LoggerState &state, FaultSet &faults, QObject *parent = nullptr);
    ~DataPort() override;

    [[nodiscard]] bool listen(const QHostAddress &address, QString *error);
    // Drops every connection and takes no new one.
    void close();

private:
    void acceptConnections();

    LoggerState &m_state;
    FaultSet &m_faults;
    QTcpServer m_server;
};

} // namespace simulator
