#include "simulator/daqsource.h"

#include "MDF4Conversion/rawlog/drive/schedule.h"
#include "MDF4Conversion/rawlog/drive/vehicle.h"
#include "a2l/records/a2lconstants.h"
#include "a2l/records/streamingclass_a2l_module.h"
#include "simulator/plausiblevalues.h"

#include <QSet>

#include <cmath>

namespace simulator {
namespace {

constexpr int maxLists = 64;
constexpr int maxOdts = 1024; // of the module
constexpr int maxElementBytes = 8;

bool isSupported(quint8 dataType)
{
    return dataType <= A2lDataType::SLong || dataType == A2lDataType::Float32;
}

// Units of a raster (ASAP2 scaling units): powers of ten from 1 us to 100 s.
int period_ms(const StreamingClass_A2L_DAQ &daq)
{
    constexpr int units = 9;
    constexpr int slowest_ms = 60'000;
    constexpr int ordinary_ms = 10;
    if (daq.period_cse >= units || daq.period_rate == 0)
        return ordinary_ms;
    const double period = std::pow(10.0, int(daq.period_cse) - 3) * double(daq.period_rate);
    return int(qBound(1.0, period, double(slowest_ms)));
}

// A copy whose lists can be run: no more than an ECU has, every element of a known measurement.
void copyRunnable(const StreamingClass_A2L_Module &from, StreamingClass_A2L_Module &to)
{
    record::copy(from, to);
    QSet<QString> known;
    for (const A2lMeasurement *measurement : to.measurements) {
        if (isSupported(measurement->data_type))
            known.insert(measurement->name);
    }
    auto &lists = to.config.cfg.daq_lists;
    while (lists.size() > maxLists)
        lists.removeAt(lists.size() - 1);
    int odtsLeft = maxOdts;
    for (StreamingClass_A2L_DAQ *daq : lists) {
        while (daq->odts.size() > odtsLeft)
            daq->odts.removeAt(daq->odts.size() - 1);
        odtsLeft -= daq->odts.size();
        for (StreamingClass_A2L_ODT *odt : daq->odts) {
            for (int i = odt->elements.size() - 1; i >= 0; --i) {
                const StreamingClass_A2L_ODT_ELEMENT &element = *odt->elements.at(i);
                const bool isRunnable = !element.names.isEmpty()
                                        && known.contains(element.names.first())
                                        && element.size <= maxElementBytes;
                if (!isRunnable)
                    odt->elements.removeAt(i);
            }
        }
    }
}

drive::EcuValue valueOf(const A2lMeasurement &measurement, quint32 seed)
{
    drive::EcuValue value;
    value.measurement = measurement;
    value.internal = plausibleValue({}, measurement.lower_limit, measurement.upper_limit, seed);
    return value;
}

} // namespace

void addDaqLists(const StreamingClass_A2L_Module &module, drive::Schedule &schedule,
                 const drive::Vehicle &vehicle, const ListedDtoEntryMaker &makeEntry)
{
    StreamingClass_A2L_Module runnable;
    copyRunnable(module, runnable);
    std::vector<drive::EcuValue> values;
    quint32 seed = 0;
    for (const A2lMeasurement *measurement : runnable.measurements) {
        if (isSupported(measurement->data_type))
            values.push_back(valueOf(*measurement, ++seed));
    }
    // One list after the other, so that each DTO is known by its list.
    auto &lists = runnable.config.cfg.daq_lists;
    for (int index = 0; !lists.isEmpty(); ++index) {
        StreamingClass_A2L_Module one;
        const auto list = lists.takeAt(0);
        const std::vector<drive::EcuRaster> rasters{
            {list->name, list->event_channel, period_ms(*list)}};
        record::copy(*list, one.config.cfg.daq_lists.add());
        drive::recordEcu(one, rasters, values, schedule, vehicle,
                         [index, makeEntry](const drive::Moment &moment, const QByteArray &dto) {
                             return makeEntry(index, moment, dto);
                         });
    }
}

} // namespace simulator
