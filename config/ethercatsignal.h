#pragma once

#include "config/record/record.h"

#include <QString>

// One signal in the process image of an EtherCAT slave.
struct EtherCatSignal
{
    QString name; // from the PDO entry
    QString unit;
    QString description;
    quint16 start_bit = 0; // in the slave's process image
    quint16 bit_length = 0;
    quint8 data_type = 0;     // CANopen data type code
    quint16 further_word = 0; // handed through to the logger
    quint8 further_byte = 0;  // handed through to the logger
    double multiplier = 1.0;
    double offset = 0.0;
    double further_value_1 = 0.0;  // handed through to the logger
    double further_value_2 = 0.0;  // handed through to the logger
    quint8 mdf4_flags = 0;         // bit 0: goes into the MDF4 file
    quint16 raw_value = 0;         // last value, for views only
    double calculated_value = 0.0; // last value, for views only

    static constexpr qint32 streamVersion = 1;
    static constexpr auto fields()
    {
        using record::field;
        using R = EtherCatSignal;
        return std::make_tuple(
            field("name", &R::name), field("unit", &R::unit), field("description", &R::description),
            field("start_bit", &R::start_bit), field("bit_length", &R::bit_length),
            field("data_type", &R::data_type), field("further_word", &R::further_word),
            field("further_byte", &R::further_byte), field("multiplier", &R::multiplier),
            field("offset", &R::offset), field("further_value_1", &R::further_value_1),
            field("further_value_2", &R::further_value_2), field("mdf4_flags", &R::mdf4_flags));
    }
};

RECORD_CODE_ELSEWHERE(EtherCatSignal)
