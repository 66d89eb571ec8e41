#pragma once

#include <QByteArray>

#include <array>

// What the views get of the live stream. Objects are deleted behind the signal that hands them out:
// a view copies what it keeps. Timestamps are 32-bit microseconds on the logger's clock.

// A frame of a bus or network.
class RawMessageBaseClass
{
public:
    virtual ~RawMessageBaseClass() = default;

    quint32 timestamp_us = 0;
    QByteArray data;
};

class CAN_Msg_Class : public RawMessageBaseClass
{
public:
    quint32 id = 0; // without flags
    bool extended = false;
    bool rtr = false;
};

class ETH_Frame_Class : public RawMessageBaseClass
{};

struct AGM_DataContainer
{
    // Timestamp, three accelerations, three rates, three further words, as they stand in the entry.
    std::array<quint32, 10> words{};
};

struct D4Mod_Msg_Class
{
    quint32 timestamp_us = 0;
    quint8 channel = 0; // from 0
    quint16 value = 0;  // raw ADC value
};

struct GPS_DataContainer
{
    quint32 timestamp_us = 0;
    bool valid = false;
    bool second_flag = false;
    quint8 hour = 0; // UTC
    quint8 minute = 0;
    quint8 second = 0;
    quint16 year = 0;
    quint8 month = 0;
    quint8 day = 0;
    quint16 course = 0;   // 0.1 degrees
    quint16 speed = 0;    // 0.01 km/h
    double latitude = 0;  // degrees, north is positive
    double longitude = 0; // degrees, east is positive
    qint16 altitude = 0;  // 0.1 m
};

struct LTE_DataContainer
{
    quint8 registration = 0;
    quint8 network_kind = 0;
    quint8 signal = 0;
    quint32 band = 0;
};

// State of the logger, as it last reported it.
struct SystemInfos
{
    quint16 word_high = 0;
    quint16 word_low = 0;
    quint32 flags = 0;
    quint32 further = 0;
    bool received = false;
};
