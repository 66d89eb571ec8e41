#pragma once

#include "MDF4Conversion/rawlog/drive/ecu.h"

#include <array>
#include <vector>

struct TerminalStruct;

namespace drive {

// An ECU that answers with DTOs on CAN.
struct CanEcu
{
    quint8 channel = 0;
    quint32 dataId = 0; // of its DTOs
    bool extended = false;
    // Two keys for the same order; the measurements take them by turns.
    std::array<quint8, 2> byteOrders{};
    std::vector<EcuRaster> rasters;
    Splitting splitting = Splitting::ToFill;
    PidNumbering numbering = PidNumbering::PerList;
};

// Makes the measurements of a list, and the computation methods that they need.
using EcuValuesMaker = std::vector<EcuValue> (*)(StreamingClass_A2L_Module &);

// Configures the channel and schedules the DTOs. The vehicle outlives the schedule.
void addCanEcu(const CanEcu &ecu, EcuValuesMaker fastValues, EcuValuesMaker slowValues,
               TerminalStruct &configuration, Schedule &schedule, const Vehicle &vehicle);

} // namespace drive
