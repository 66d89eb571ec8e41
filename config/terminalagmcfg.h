#pragma once

#include "config/record/record.h"

// The block of accelerometer, gyroscope and magnetometer.
struct TerminalAgmCfg
{
    quint8 enabled = 0;
    qint16 mag_scale_x = 4096;
    qint16 mag_scale_y = 4096;
    qint16 mag_scale_z = 4096;
    qint16 mag_offset_x = 0;
    qint16 mag_offset_y = 0;
    qint16 mag_offset_z = 0;
    qint16 mag_skew_0 = 0; // handed through to the logger, as the next five
    qint16 mag_skew_1 = 0;
    qint16 mag_skew_2 = 0;
    qint16 mag_skew_3 = 0;
    qint16 mag_skew_4 = 0;
    qint16 mag_skew_5 = 0;
    quint16 acc_scale = 0;  // of valuenames::accScales
    quint16 gyro_scale = 3; // 32 degrees per second times 2 to this power
    quint8 rate = 3;        // of valuenames::agmRates
    quint8 acc_lp = 0;      // low-pass
    quint8 acc_hp = 0;      // high-pass
    quint8 gyro_lp = 1;
    quint8 gyro_hp = 1;

    static constexpr qint32 streamVersion = 1;
    static constexpr auto fields()
    {
        using record::field;
        using R = TerminalAgmCfg;
        return std::make_tuple(
            field("enabled", &R::enabled), field("mag_scale_x", &R::mag_scale_x),
            field("mag_scale_y", &R::mag_scale_y), field("mag_scale_z", &R::mag_scale_z),
            field("mag_offset_x", &R::mag_offset_x), field("mag_offset_y", &R::mag_offset_y),
            field("mag_offset_z", &R::mag_offset_z), field("mag_skew_0", &R::mag_skew_0),
            field("mag_skew_1", &R::mag_skew_1), field("mag_skew_2", &R::mag_skew_2),
            field("mag_skew_3", &R::mag_skew_3), field("mag_skew_4", &R::mag_skew_4),
            field("mag_skew_5", &R::mag_skew_5), field("acc_scale", &R::acc_scale),
            field("gyro_scale", &R::gyro_scale), field("rate", &R::rate),
            field("acc_lp", &R::acc_lp), field("acc_hp", &R::acc_hp), field("gyro_lp", &R::gyro_lp),
            field("gyro_hp", &R::gyro_hp));
    }
};

RECORD_CODE_ELSEWHERE(TerminalAgmCfg)
