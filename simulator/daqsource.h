#pragma once

#include "MDF4Conversion/rawlog/drive/ecu.h"

#include <functional>

struct StreamingClass_A2L_Module;

namespace drive {
class Schedule;
class Vehicle;
} // namespace drive

namespace simulator {

// Makes a log entry of a DTO of the list with this index. Empty: the DTO doesn't reach the logger.
using ListedDtoEntryMaker =
    std::function<QByteArray(int list, const drive::Moment &, const QByteArray &dto)>;

// Schedules what an ECU answers to the DAQ lists of the module: every ODT in the period of its
// list, with values within the measurements' limits.
void addDaqLists(const StreamingClass_A2L_Module &module, drive::Schedule &schedule,
                 const drive::Vehicle &vehicle, const ListedDtoEntryMaker &makeEntry);

} // namespace simulator
