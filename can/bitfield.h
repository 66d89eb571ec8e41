#pragma once

#include "can/bitextraction.h"
#include "can/extractedvalue.h"

#include <tuple>

namespace can {

// The bits of a value in a frame, and how they read.
struct BitField
{
    quint32 startBit = 0;
    quint8 bitLength = 0; // at most 64
    BitOrder order = BitOrder::Intel;
    ExtractedValue::Kind kind = ExtractedValue::Unsigned;

    // Bytes that a frame needs to hold all bits.
    [[nodiscard]] quint32 frameBytes() const
    {
        if (order != BitOrder::Motorola)
            return (startBit + bitLength + 7) / 8;
        const quint32 bitsAhead = 7 - startBit % 8; // of the first byte
        return startBit / 8 + (bitsAhead + bitLength + 7) / 8;
    }

    [[nodiscard]] quint64 bitsIn(Bytes frame) const
    {
        const quint64 bits = extractBits(frame, startBit, bitLength, order);
        return kind == ExtractedValue::Signed ? signExtended(bits, bitLength) : bits;
    }

    [[nodiscard]] ExtractedValue valueIn(Bytes frame) const { return {bitsIn(frame), kind}; }

    friend bool operator==(const BitField &a, const BitField &b)
    {
        return std::tie(a.startBit, a.bitLength, a.order, a.kind)
               == std::tie(b.startBit, b.bitLength, b.order, b.kind);
    }
};

} // namespace can
