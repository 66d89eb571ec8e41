#pragma once

#include <QtGlobal>

// Numbers of the streamed A2L records. The names are those of ASAM MCD-2 MC (ASAP2), whose keywords
// can't be used as they are: some are macros of system headers.

namespace A2lDataType {
enum : quint8 {
    UByte = 0,
    SByte = 1,
    UWord = 2,
    SWord = 3,
    ULong = 4,
    SLong = 5,
    UInt64 = 6,
    SInt64 = 7,
    Float32 = 8,
    Float64 = 9,
};
}

namespace A2lByteOrder {
enum : quint8 {
    LittleEndian = 0,
    BigEndian = 1,
    MsbLast = 2,
    MsbFirst = 3,
    MsbFirstMswLast = 4,
    MsbLastMswFirst = 5,
};
}

namespace A2lBitOperation {
enum : quint8 {
    None = 0,
    Invert = 1,
    LeftShift = 2,
    RightShift = 3,
    LeftShiftAndInvert = 4,
    RightShiftAndInvert = 5,
};
}

namespace A2lConversionType {
enum : quint8 {
    Identical = 0,
    Form = 1,
    Linear = 2,
    RatFunc = 3,
    TabIntp = 4,
    TabNoIntp = 5,
    TabVerb = 6,
};
}

enum ActiveA2lInterface : quint8 {
    ACTIVE_A2L_IF_NONE = 0,
    ACTIVE_A2L_IF_CCP_XCP_O_CAN = 1,
    ACTIVE_A2L_IF_XCP_O_UDP = 2,
    ACTIVE_A2L_IF_XCP_O_TCP = 3,
};
