#pragma once

#include "config/record/record.h"

#include <QStringList>

// One entry of an ODT: what the slave copies from one address.
struct StreamingClass_A2L_ODT_ELEMENT
{
    quint8 element_index = 0; // position in the ODT
    quint8 size = 0;          // bytes, 1 to 8
    quint8 address_extension = 0;
    quint32 address = 0;      // in the ECU
    QStringList names;        // measurements that the element carries
    quint8 split = 0;         // 1: one byte of a larger value
    quint8 byte_position = 0; // index of that byte in the value
    bool splitKnown = true;   // not streamed: false when the stream was older than `split`

    static constexpr qint32 streamVersion = 2;
    static constexpr qint32 splitSince = 2;
    static constexpr auto fields()
    {
        using record::field;
        using R = StreamingClass_A2L_ODT_ELEMENT;
        return std::make_tuple(field("element_index", &R::element_index), field("size", &R::size),
                               field("address_extension", &R::address_extension),
                               field("address", &R::address), field("names", &R::names),
                               field("split", &R::split, splitSince),
                               field("byte_position", &R::byte_position, splitSince));
    }

    void versionRead(qint32 version) { splitKnown = version >= splitSince; }
};

RECORD_CODE_ELSEWHERE(StreamingClass_A2L_ODT_ELEMENT)
