#include "MDF4Conversion/rawlog/drive/canecu.h"

#include "MDF4Conversion/rawlog/drive/canbus.h"
#include "MDF4Conversion/rawlog/drive/schedule.h"
#include "MDF4Conversion/rawlog/entrybuilder.h"
#include "config/terminalstruct.h"

namespace drive {
namespace {

constexpr int dtoBytes = 8;

} // namespace

void addCanEcu(const CanEcu &ecu, EcuValuesMaker fastValues, EcuValuesMaker slowValues,
               TerminalStruct &configuration, Schedule &schedule, const Vehicle &vehicle)
{
    TerminalCanCfg &can = configuration.can[ecu.channel];
    can.enabled = 1;
    addExactFilter(can, ecu.dataId, ecu.extended);
    std::vector<EcuValue> values = fastValues(can.a2l);
    const std::vector<EcuValue> slow = slowValues(can.a2l);
    values.insert(values.end(), slow.begin(), slow.end());
    for (EcuValue &value : values) {
        const bool even = value.measurement.ecu_address % 4 == 0;
        value.measurement.byte_order = ecu.byteOrders[even ? 0 : 1];
    }
    describeEcu(can.a2l, ecu.rasters, values, ecu.splitting, ecu.numbering);
    recordEcu(can.a2l, ecu.rasters, values, schedule, vehicle,
              [channel = ecu.channel, id = ecu.dataId,
               extended = ecu.extended](const Moment &moment, const QByteArray &dto) {
                  return rawlog::canEntry(moment.timestamp_us, channel,
                                          {id, extended, dto.leftJustified(dtoBytes, '\0')});
              });
}

} // namespace drive
