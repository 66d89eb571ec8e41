#pragma once

#include "config/record/record.h"

#include <QString>

// One message of an AIM measuring module. Stands in its list without a frame.
struct AimMsgMeta
{
    quint32 MsgId = 0;    // CAN identifier
    qint32 msgLength = 0; // bytes
    qint32 channelsInMsg = 0;
    qint32 samplesInMsg = 0; // of each channel
    quint8 sampleSizeInBytes = 0;
    quint8 gapBetweenChannelsInBytes = 0;
    bool isSigned = false;
    bool isMsbFirst = false;
    QString name;
    QString unit;

    static constexpr auto fields()
    {
        using record::field;
        using R = AimMsgMeta;
        return std::make_tuple(field("MsgId", &R::MsgId), field("msgLength", &R::msgLength),
                               field("channelsInMsg", &R::channelsInMsg),
                               field("samplesInMsg", &R::samplesInMsg),
                               field("sampleSizeInBytes", &R::sampleSizeInBytes),
                               field("gapBetweenChannelsInBytes", &R::gapBetweenChannelsInBytes),
                               field("isSigned", &R::isSigned), field("isMsbFirst", &R::isMsbFirst),
                               field("isSigned", &R::isSigned).again(), field("name", &R::name),
                               field("unit", &R::unit));
    }
};

RECORD_CODE_ELSEWHERE(AimMsgMeta)
