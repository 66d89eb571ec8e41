#pragma once

#include "MDF4Conversion/rawlog/drive/daqlayout.h"
#include "MDF4Conversion/rawlog/drive/vehicle.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <vector>

struct StreamingClass_A2L_Module;

namespace drive {

class Schedule;
struct Moment;

// One measurement of an ECU, with what stands in its memory.
struct EcuValue
{
    A2lMeasurement measurement;
    int list = 0; // index of its DAQ list
    // The internal value; of a measurement with a bit mask the whole word in memory.
    std::function<double(const VehicleState &)> internal;
};

// What the description of a measurement says beside its conversion.
struct EcuCell
{
    const char *name;
    quint8 type; // A2lDataType
    quint32 address;
    struct
    {
        double lower;
        double upper;
    } limits; // physical
    quint64 mask = 0xFFFFFFFF;
    quint8 operation = 0; // A2lBitOperation
    quint64 shift = 0;
};

// A value of list 0, with the conversion of this name.
[[nodiscard]] EcuValue ecuValue(const EcuCell &cell, const QString &conversion,
                                std::function<double(const VehicleState &)> internal);

// A DAQ list with the time between two of its rounds.
struct EcuRaster
{
    QString name;
    quint8 event = 0;
    int period_ms = 10;
};

enum class PidNumbering {
    PerList, // each list has its own range, as a file with static lists says
    Running  // from 0 across all lists, as for dynamic ones
};

// Fills the module: rasters, DAQ lists and measurements.
void describeEcu(StreamingClass_A2L_Module &module, const std::vector<EcuRaster> &rasters,
                 const std::vector<EcuValue> &values, Splitting splitting, PidNumbering numbering);

// Makes a log entry of a DTO, which begins with its PID.
using DtoEntryMaker = std::function<QByteArray(const Moment &, const QByteArray &dto)>;

// Schedules every ODT of the module, those of a list in a row. All values of one round are taken at
// one moment. The vehicle outlives the schedule; the rest is copied.
void recordEcu(const StreamingClass_A2L_Module &module, const std::vector<EcuRaster> &rasters,
               const std::vector<EcuValue> &values, Schedule &schedule, const Vehicle &vehicle,
               const DtoEntryMaker &makeEntry);

} // namespace drive
