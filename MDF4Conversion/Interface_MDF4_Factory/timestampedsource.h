#pragma once

#include "MDF4Conversion/extractingchannel.h"
#include "MDF4Conversion/rawlog/stdlogentry.h"
#include "can/extractedvalue.h"

#include <QtEndian>

#include <vector>

// Helpers of the sources whose values stand at fixed places of the payload.
namespace payload {

// A little-endian field; the caller knows that the payload holds it.
template <class T>
[[nodiscard]] T at(const std::vector<quint8> &data, std::size_t offset)
{
    return qFromLittleEndian<T>(data.data() + offset);
}

[[nodiscard]] inline ExtractedValue ofUnsigned(quint64 value)
{
    return {value, ExtractedValue::Unsigned};
}

[[nodiscard]] inline ExtractedValue ofSigned(qint64 value)
{
    return {static_cast<quint64>(value), ExtractedValue::Signed};
}

[[nodiscard]] inline ExtractedValue ofDouble(double value)
{
    ExtractedValue result{0, ExtractedValue::Double};
    std::memcpy(&result.bits, &value, sizeof value);
    return result;
}

} // namespace payload
