#include "simulator/loggersimulator.h"

namespace simulator {

LoggerSimulator::LoggerSimulator(QObject *parent)
    : QObject(parent)
{
    m_restartTimer.setSingleShot(true);
    connect(&m_commandPort, &CommandPort::restartWanted, this, &LoggerSimulator::restart);
    connect(&m_commandPort, &CommandPort::configurationChanged, &m_dataPort,
            &DataPort::configurationChanged);
    connect(&m_commandPort, &CommandPort::configurationChanged, &m_recorder,
            &LogRecorder::configurationChanged);
    connect(&m_commandPort, &CommandPort::loggingSwitched, this, &LoggerSimulator::record);
    m_recordTimer.setInterval(LogRecorder::period_ms);
    connect(&m_recordTimer, &QTimer::timeout, this, &LoggerSimulator::record);
    connect(&m_restartTimer, &QTimer::timeout, this, [this] {
        QString error;
        if (!listen(m_address, &error))
            close();
        emit restarted(error);
    });
}

LoggerSimulator::~LoggerSimulator()
{
    close();
}

bool LoggerSimulator::listen(const QHostAddress &address, QString *error)
{
    m_address = address;
    if (m_commandPort.listen(address, error) && m_dataPort.listen(address, error)
        && m_filePort.listen(address, error)) {
        m_recordTimer.start();
        return true;
    }
    close();
    return false;
}

void LoggerSimulator::close()
{
    stopRecording(); // first: connections that end would have it go on
    m_restartTimer.stop();
    m_commandPort.close();
    m_dataPort.close();
    m_filePort.close();
}

void LoggerSimulator::record()
{
    if (m_recordTimer.isActive())
        m_recorder.advance(m_state.uptime_us(), m_state.utc());
}

void LoggerSimulator::stopRecording()
{
    m_recordTimer.stop();
    m_recorder.finish();
}

void LoggerSimulator::push(int type)
{
    m_commandPort.push(type);
    m_dataPort.configurationChanged();
    m_recorder.configurationChanged();
}

void LoggerSimulator::restart()
{
    stopRecording();
    m_dataPort.close();
    m_filePort.close();
    m_restartTimer.start(m_state.restartDelay_ms);
}

} // namespace simulator
