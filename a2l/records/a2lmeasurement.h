#pragma once

#include "config/record/record.h"

#include <QString>

// A measurement chosen for recording.
struct A2lMeasurement
{
    QString name;
    QString long_identifier;
    quint8 data_type = 0; // A2lDataType
    QString conversion;   // name of a computation method, or NO_COMPU_METHOD
    double lower_limit = 0.0;
    double upper_limit = 0.0;
    quint64 bit_mask = 0;
    quint8 bit_operation = 0; // A2lBitOperation
    quint64 shift_count = 0;  // of the bit operation
    quint8 byte_order = 0;    // A2lByteOrder
    quint32 ecu_address = 0;
    qint16 ecu_address_extension = 0;
    quint8 selection_flags = 0; // ticks of the selection table, values 2 and 4

    static constexpr qint32 streamVersion = 1;
    static constexpr auto fields()
    {
        using record::field;
        using R = A2lMeasurement;
        return std::make_tuple(
            field("name", &R::name), field("long_identifier", &R::long_identifier),
            field("data_type", &R::data_type), field("conversion", &R::conversion),
            field("lower_limit", &R::lower_limit), field("upper_limit", &R::upper_limit),
            field("bit_mask", &R::bit_mask), field("bit_operation", &R::bit_operation),
            field("shift_count", &R::shift_count), field("byte_order", &R::byte_order),
            field("ecu_address", &R::ecu_address),
            field("ecu_address_extension", &R::ecu_address_extension),
            field("selection_flags", &R::selection_flags));
    }
};

RECORD_CODE_ELSEWHERE(A2lMeasurement)
