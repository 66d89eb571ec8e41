#pragma once

#include "tests/support/conversionharness.h"
#include "tests/support/logconfigurations.h"

// A log of one message: channel 0 has its two signals A and B.
class FrameLog : public ConversionHarness
{
public:
    static constexpr quint32 messageId = 0x123;

    FrameLog()
    {
        testlog::addSignal(configuration.can[0], QStringLiteral("A"), messageId, 0, 8);
        testlog::addSignal(configuration.can[0], QStringLiteral("B"), messageId, 8, 8);
    }

    // One each millisecond.
    void addFrames(int count)
    {
        QByteArray frames;
        for (int i = 0; i < count; ++i)
            frames += testlog::can(quint32(i) * 1000U, 0, messageId, "0102030405060708");
        add(frames);
    }
};
