#pragma once

#include "simulator/commandport.h"
#include "simulator/dataport.h"
#include "simulator/faults.h"
#include "simulator/fileport.h"
#include "simulator/loggerstate.h"
#include "simulator/logrecorder.h"

#include <QHostAddress>
#include <QObject>
#include <QTimer>

namespace simulator {

// A logger on the network, without the device: it answers on the command, data and file ports of
// one address, from a state that may be changed, and as badly as its faults say.
//
// All of it runs on the thread that it lives on, which needs an event loop. Other threads reach it
// by queued calls only.
class LoggerSimulator : public QObject
{
    Q_OBJECT

public:
    explicit LoggerSimulator(QObject *parent = nullptr);
    ~LoggerSimulator() override;

    // Listens on all three ports of the address, or on none.
    [[nodiscard]] bool listen(const QHostAddress &address, QString *error = nullptr);
    void close();
    [[nodiscard]] const QHostAddress &address() const { return m_address; }

    // What is changed here shows in the next answers. The live data follow a changed configuration
    // after the push of a record, or once the tool connects to the data port again.
    [[nodiscard]] LoggerState &state() { return m_state; }
    [[nodiscard]] FaultSet &faults() { return m_faults; }
    [[nodiscard]] CommandPort &commandPort() { return m_commandPort; }
    [[nodiscard]] DataPort &dataPort() { return m_dataPort; }
    [[nodiscard]] LogRecorder &recorder() { return m_recorder; }

    // Tells every connected tool the record of this message type, as the logger does when it has
    // changed it itself.
    void push(int type);

signals:
    // Up again after an update or another restart; `error` tells why not.
    void restarted(const QString &error);

private:
    void restart();
    // While it listens.
    void record();
    void stopRecording();

    LoggerState m_state;
    FaultSet m_faults;
    CommandPort m_commandPort{m_state, m_faults, this};
    DataPort m_dataPort{m_state, m_faults, this};
    FilePort m_filePort{m_state, m_faults, this};
    LogRecorder m_recorder{m_state, this};
    QTimer m_recordTimer{this};
    QHostAddress m_address;
    QTimer m_restartTimer{this};
};

} // namespace simulator
