#include "tests/support/simulatedlogger.h"

#include <QCoreApplication>

#include <atomic>

// Addresses differ within a process by a count, between processes by their id.
QHostAddress freeLoopbackAddress()
{
    constexpr quint32 loopback = 127U << 24;
    constexpr quint32 stride = 7919; // prime: the processes' runs of addresses stay apart
    static std::atomic<quint32> count{0};
    const quint32 number = quint32(QCoreApplication::applicationPid()) * stride + count++;
    return QHostAddress(loopback | (number % 0xFFFFFE + 1));
}

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
