#include "simulator/loggersimulator.h"

namespace simulator {

LoggerSimulator::LoggerSimulator(QObject *parent)
    : QObject(parent)
{
    m_restartTimer.setSingleShot(true);
    connect(&m_commandPort, &CommandPort::restartWanted, this, &LoggerSimulator::restart);
    connect(&m_commandPort, &CommandPort::configurationChanged, &m_dataPort,
            &DataPort::configurationChanged);
    connect(&m_restartTimer, &QTimer::timeout, this, [this] {
        QString error;
        if (!listen(m_address, &error))
            close();
        emit restarted(error);
    });
}

bool LoggerSimulator::listen(const QHostAddress &address, QString *error)
{
    m_address = address;
    if (m_commandPort.listen(address, error) && m_dataPort.listen(address, error)
        && m_filePort.listen(address, error))
        return true;
    close();
    return false;
}

void LoggerSimulator::close()
{
    m_restartTimer.stop();
    m_commandPort.close();
    m_dataPort.close();
    m_filePort.close();
}

void LoggerSimulator::push(int type)
{
    m_commandPort.push(type);
    m_dataPort.configurationChanged();
}

void LoggerSimulator::restart()
{
    m_dataPort.close();
    m_filePort.close();
    m_restartTimer.start(m_state.restartDelay_ms);
}

} // namespace simulator
