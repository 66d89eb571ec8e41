#include "tests/support/loopbackaddress.h"

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
