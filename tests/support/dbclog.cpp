#include "tests/support/dbclog.h"

#include "tests/support/logconfigurations.h"

StreamingClass_DBC_Signal &DbcLog::addSignal(const QByteArray &name, quint16 startBit,
                                             quint16 bitLength, quint32 id)
{
    return testlog::addSignal(can(), QString::fromLatin1(name), id, startBit, bitLength);
}

StreamingClass_DBC_Signal &DbcLog::addMultiplexor(const QByteArray &name, quint16 startBit,
                                                  quint16 bitLength, quint32 id)
{
    StreamingClass_DBC_Signal &signal = addSignal(name, startBit, bitLength, id);
    signal.mux_kind = MultiplexorSignal;
    return signal;
}

StreamingClass_DBC_Signal &DbcLog::addMultiplexed(const QByteArray &name, qint32 value,
                                                  quint16 startBit, quint32 id)
{
    StreamingClass_DBC_Signal &signal = addSignal(name, startBit, 8, id);
    signal.mux_kind = MultiplexedSignal;
    signal.mux_value = value;
    return signal;
}

void DbcLog::addFrame(quint32 timestamp_us, const char *hex, quint32 id)
{
    add(testlog::can(timestamp_us, bus, id, hex));
}
