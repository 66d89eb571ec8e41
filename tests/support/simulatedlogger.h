#pragma once

#include "config/threadcall.h"
#include "simulator/loggersimulator.h"
#include "tests/support/loopbackaddress.h"

#include <QHostAddress>
#include <QThread>

#include <type_traits>

// A logger simulator on a thread of its own, for tests whose thread blocks while it waits for the
// logger. It listens on an address of 127.0.0.0/8 that no other test uses.
class SimulatedLogger
{
public:
    SimulatedLogger();
    SimulatedLogger(const SimulatedLogger &) = delete;
    SimulatedLogger &operator=(const SimulatedLogger &) = delete;
    ~SimulatedLogger();

    [[nodiscard]] const QHostAddress &address() const { return m_address; }

    // Reads as on the command line: NAME[@WORD][=VALUE].
    void setFault(const QString &text);
    void clearFaults();

    // Sends the record of this message type without being asked.
    void push(int type);

    // The next connections work again.
    void dropCommandConnections();
    void dropDataConnections();

    // Runs function(LoggerSimulator &) on the simulator's thread and gives what it returns.
    template <class Function>
    auto inspect(Function function)
    {
        using Result = std::invoke_result_t<Function, simulator::LoggerSimulator &>;
        if constexpr (std::is_void_v<Result>) {
            call([&] { function(*m_simulator); });
        } else {
            Result result{};
            call([&] { result = function(*m_simulator); });
            return result;
        }
    }

private:
    template <class Function>
    void call(Function function)
    {
        threadcall::run(m_simulator, function);
    }

    QThread m_thread;
    threadcall::End m_end;
    simulator::LoggerSimulator *m_simulator; // lives on the thread and is deleted there
    QHostAddress m_address;
};
