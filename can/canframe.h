#pragma once

#include "can/bitextraction.h"

namespace can {

inline constexpr quint32 maxStandardId = 0x7FF;
inline constexpr quint32 maxExtendedId = 0x1FFFFFFF;

[[nodiscard]] constexpr quint32 maxId(bool extended)
{
    return extended ? maxExtendedId : maxStandardId;
}

// A received frame; its bytes belong to somebody else.
struct ReceivedFrame
{
    quint32 timestamp_us = 0; // of the logger's clock, wraps
    quint32 id = 0;
    bool extended = false;
    bool remote = false;
    Bytes data;
};

// One number for an identifier: sorts by number, standard before extended.
[[nodiscard]] constexpr quint64 identifierKey(quint32 id, bool extended)
{
    return quint64(id) << 1 | quint64(extended);
}

} // namespace can
