#pragma once

#include "config/threadcall.h"
#include "link/protocol/framereader.h"

#include <QAbstractSocket>
#include <QHostAddress>
#include <QList>
#include <QThread>

#include <atomic>

class QTcpSocket;
class QTimer;

// Owns the data socket and gathers the entries that the logger streams. The object lives on its own
// thread, where all slots run; the public functions may be called from any thread.
class Data_Handler_Class : public QThread
{
    Q_OBJECT

public:
    Data_Handler_Class();
    ~Data_Handler_Class() override;

    [[nodiscard]] bool isConnected() const { return m_isConnected; }
    // Entries are thrown away until the configuration, which views need to show them, is there.
    void setDataEnabled(bool enabled) { m_dataEnabled = enabled; }

public slots:
    bool socket_connect(QHostAddress tcp_address, ushort tcp_port);
    void socket_disconnect();
    bool is_socket_connected();
    QString get_last_error();
    void read_socket_data();
    void copy_data_to_gui();
    void tcp_socket_error(QAbstractSocket::SocketError socketError);
    void write_debug_output();

signals:
    void signal_disconnected();
    void signal_socket_error(QString error_txt);
    // The receiver owns the entries. It takes the list apart on this thread.
    void signal_data_copy_ONLY_DIRECT_CONNECTION(QList<QByteArray *> data);

protected:
    void run() override;

private:
    void socketDisconnected();
    void gather(const QByteArray &entry);
    void dropGathered();

    QTcpSocket *m_socket = nullptr;
    protocol::FrameReader m_reader;
    QList<QByteArray *> m_gathered; // owned
    qint64 m_gatheredBytes = 0;
    QString m_lastError;
    int m_readCalls = 0; // since the last debug output

    std::atomic<bool> m_isConnected{false};
    std::atomic<bool> m_dataEnabled{false};
    threadcall::End m_end;
};
