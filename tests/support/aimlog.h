#pragma once

#include "tests/support/conversionharness.h"

// A log of one CAN bus with a message of an AIM module.
class AimLog : public ConversionHarness
{
public:
    static constexpr quint8 bus = 1;
    static constexpr quint32 messageId = 0x200;

    // Two channels of two unsigned Intel words in a message of eight bytes.
    AimMsgMeta &addModule();
    void addMessage(quint32 timestamp_us, const char *hex);
};
