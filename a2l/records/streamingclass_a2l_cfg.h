#pragma once

#include "a2l/records/streamingclass_a2l_daq.h"
#include "a2l/records/streamingclass_a2l_raster_event.h"
#include "config/record/record.h"

#include <QString>

// The CCP or XCP parameters of one channel with its events and DAQ lists.
struct StreamingClass_A2L_CFG
{
    quint16 protocol_version = 0;
    quint16 blob_version = 0;
    quint32 can_id_send = 0;     // master to slave; bit 31: 29-bit identifier
    quint32 can_id_recv = 0;     // slave to master; bit 31: 29-bit identifier
    quint16 station_address = 0; // CCP
    quint16 byte_order = 0;
    quint32 baudrate = 0;    // bit/s
    quint8 sample_point = 0; // %
    quint8 sample_rate = 0;
    quint8 btl_cycles = 0;
    quint8 sjw = 0;
    quint8 daq_flags = 0; // bit 0: alternating, bit 1: dynamic lists, bit 3: PIDs run across lists
    quint8 consistency_flags = 0;   // 4: ODT, 2: DAQ, 10: DAQ, no guarantee; bit 1: may be split
    quint8 misc_byte = 0;           // handed through to the logger
    quint8 assignment_strategy = 0; // how measurements are packed into ODTs
    QList<qint32> optional_commands;
    OwnedList<StreamingClass_A2L_RASTER_EVENT> rasters;
    OwnedList<StreamingClass_A2L_DAQ> daq_lists;
    quint16 port = 0;           // XCP slave on ethernet
    QString ip_address;         // XCP slave on ethernet
    QString version_text;       // protocol version of the transport
    quint32 flag_word = 0;      // bit 0: skip checks, bit 4: expanded PID range
    quint8 max_odt_index = 191; // highest ODT number of the expanded range

    static constexpr qint32 streamVersion = 3;
    static constexpr auto fields()
    {
        using record::field;
        using R = StreamingClass_A2L_CFG;
        return std::make_tuple(
            field("protocol_version", &R::protocol_version),
            field("blob_version", &R::blob_version), field("can_id_send", &R::can_id_send),
            field("can_id_recv", &R::can_id_recv), field("station_address", &R::station_address),
            field("byte_order", &R::byte_order), field("baudrate", &R::baudrate),
            field("sample_point", &R::sample_point), field("sample_rate", &R::sample_rate),
            field("btl_cycles", &R::btl_cycles), field("sjw", &R::sjw),
            field("daq_flags", &R::daq_flags), field("consistency_flags", &R::consistency_flags),
            field("misc_byte", &R::misc_byte),
            field("assignment_strategy", &R::assignment_strategy),
            field("optional_commands", &R::optional_commands), field("rasters", &R::rasters),
            field("daq_lists", &R::daq_lists), field("port", &R::port),
            field("ip_address", &R::ip_address), field("version_text", &R::version_text),
            field("flag_word", &R::flag_word, 3), field("max_odt_index", &R::max_odt_index, 3));
    }
};

RECORD_CODE_ELSEWHERE(StreamingClass_A2L_CFG)
