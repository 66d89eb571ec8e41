#pragma once

#include "a2l/records/a2lcompumethod.h"
#include "a2l/records/a2lcomputab.h"
#include "a2l/records/a2lcompuvtab.h"
#include "a2l/records/a2lmeasurement.h"
#include "a2l/records/a2lmoduleconfig.h"
#include "config/record/record.h"

#include <QString>

// The CCP or XCP side of one channel, with all that decoding its log needs.
struct StreamingClass_A2L_Module
{
    QString a2l_file_name;
    OwnedList<A2lMeasurement> measurements;
    OwnedList<A2lCompuMethod> compu_methods;
    OwnedList<A2lCompuTab> compu_tabs;
    OwnedList<A2lCompuVTab> compu_vtabs;
    A2lModuleConfig config;
    quint8 hsfz_activation = 0; // ethernet only; 0: off, 1: activate, 2: wait for activation
    quint32 further_word = 0;   // handed through to the logger

    static constexpr qint32 streamVersion = 3;
    static constexpr auto fields()
    {
        using record::field;
        using R = StreamingClass_A2L_Module;
        return std::make_tuple(
            field("a2l_file_name", &R::a2l_file_name), field("measurements", &R::measurements),
            field("compu_methods", &R::compu_methods), field("compu_tabs", &R::compu_tabs),
            field("compu_vtabs", &R::compu_vtabs), field("config", &R::config),
            field("hsfz_activation", &R::hsfz_activation), field("further_word", &R::further_word));
    }
};

RECORD_CODE_ELSEWHERE(StreamingClass_A2L_Module)
