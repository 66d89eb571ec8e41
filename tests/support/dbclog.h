#pragma once

#include "tests/support/conversionharness.h"

// A log of one CAN bus with DBC signals, all of one message unless told otherwise.
class DbcLog : public ConversionHarness
{
public:
    static constexpr quint8 bus = 2;
    static constexpr quint32 messageId = 0x123;

    TerminalCanCfg &can() { return configuration.can[bus]; }

    // A recorded Intel signal of a message of 8 bytes, with factor 1.
    StreamingClass_DBC_Signal &addSignal(const QByteArray &name, quint16 startBit,
                                         quint16 bitLength, quint32 id = messageId);
    StreamingClass_DBC_Signal &addMultiplexor(const QByteArray &name, quint16 startBit,
                                              quint16 bitLength, quint32 id = messageId);
    // Of 8 bits.
    StreamingClass_DBC_Signal &addMultiplexed(const QByteArray &name, qint32 value,
                                              quint16 startBit, quint32 id = messageId);

    void addFrame(quint32 timestamp_us, const char *hex, quint32 id = messageId);
};
