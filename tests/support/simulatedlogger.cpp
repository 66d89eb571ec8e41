#include "tests/support/simulatedlogger.h"

SimulatedLogger::SimulatedLogger()
    : m_simulator(new simulator::LoggerSimulator)
{
    m_simulator->moveToThread(&m_thread);
    QObject::connect(&m_thread, &QThread::finished, [this] { // still there
        delete m_simulator;
        m_end.reached();
    });
    m_thread.start();
    constexpr int attempts = 100;
    bool isListening = false;
    QString error;
    for (int i = 0; i < attempts && !isListening; ++i) {
        m_address = freeLoopbackAddress();
        call([&] { isListening = m_simulator->listen(m_address, &error); });
    }
    if (!isListening)
        qFatal("%s", qPrintable(error));
}

SimulatedLogger::~SimulatedLogger()
{
    m_thread.quit();
    m_thread.wait();
    m_end.waitedFor();
}

void SimulatedLogger::setFault(const QString &text)
{
    QString error;
    const auto setting = simulator::parseFault(text, &error);
    if (!setting)
        qFatal("%s", qPrintable(error));
    call([&] { m_simulator->faults().set(*setting); });
}

void SimulatedLogger::clearFaults()
{
    call([this] { m_simulator->faults().clear(); });
}

void SimulatedLogger::push(int type)
{
    call([this, type] { m_simulator->push(type); });
}

void SimulatedLogger::dropCommandConnections()
{
    call([this] { m_simulator->commandPort().dropConnections(); });
}

void SimulatedLogger::dropDataConnections()
{
    call([this] { m_simulator->dataPort().dropConnections(); });
}
