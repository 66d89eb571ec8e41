#pragma once

#include <QObject>
#include <QTcpServer>

class QHostAddress;

namespace simulator {

class FaultSet;
struct LoggerState;

// The logger's side of the file port: a connection asks for one file of the storage folder, gets
// its bytes and is closed. Lives on the simulator's thread.
class FilePort : public QObject
{
    Q_OBJECT

public:
    // State and faults outlive the port.
    FilePort(LoggerState &state, FaultSet &faults, QObject *parent = nullptr);
    ~FilePort() override;

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
