#pragma once

#include "a2l/records/streamingclass_a2l_odt_element.h"
#include "config/record/record.h"

// One object descriptor table: the content of one DTO.
struct StreamingClass_A2L_ODT
{
    quint8 pid = 0;       // packet identifier of the DTO
    quint8 odt_index = 0; // position in the DAQ list
    OwnedList<StreamingClass_A2L_ODT_ELEMENT> elements;

    static constexpr qint32 streamVersion = 1;
    static constexpr auto fields()
    {
        using record::field;
        using R = StreamingClass_A2L_ODT;
        return std::make_tuple(field("pid", &R::pid), field("odt_index", &R::odt_index),
                               field("elements", &R::elements));
    }
};

RECORD_CODE_ELSEWHERE(StreamingClass_A2L_ODT)
