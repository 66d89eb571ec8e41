#pragma once

#include "can/bitextraction.h"

#include <QtGlobal>

// A value as it was taken from an entry: its bits in host form and how to read them.
struct ExtractedValue
{
    enum Kind : quint8 { Unsigned, Signed, Float, Double };

    quint64 bits = 0;
    Kind kind = Unsigned;

    [[nodiscard]] double toDouble() const
    {
        switch (kind) {
        case Unsigned:
            return double(bits);
        case Signed:
            return double(static_cast<qint64>(bits));
        case Float:
            return double(can::floatFromBits(bits));
        case Double:
            return can::doubleFromBits(bits);
        }
        return 0;
    }
};
