#include "MDF4Conversion/rawlog/drive/ecu.h"

#include "MDF4Conversion/rawlog/drive/schedule.h"
#include "a2l/records/a2lconstants.h"
#include "a2l/records/streamingclass_a2l_module.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>

namespace drive {
namespace {

constexpr quint16 dtoPayload = 7; // eight bytes less the PID
constexpr qint64 odtGap_us = 260; // a frame of eight bytes at 500 kbit/s
constexpr qint64 jitter_us = 40;
constexpr quint8 pidsOfList = 16;
constexpr quint16 unitMillisecond = 3; // ASAP2 scaling unit

// The nearest integer that the type holds, as two's complement.
quint64 integerWord(quint8 dataType, double value)
{
    const bool isSigned = dataType % 2 != 0;
    const double count = std::ldexp(1.0, 8 * valueBytes(dataType));
    const double low = isSigned ? -count / 2 : 0;
    return static_cast<quint64>(std::llround(std::clamp(value, low, low + count - 1)));
}

// What stands in the memory, least significant byte lowest.
quint64 memoryWord(quint8 dataType, double value)
{
    if (dataType != A2lDataType::Float32)
        return integerWord(dataType, value);
    const auto single = static_cast<float>(value);
    quint32 bits = 0;
    std::memcpy(&bits, &single, sizeof bits);
    return bits;
}

// The bytes in the order of their addresses.
QByteArray memoryBytes(const A2lMeasurement &measurement, double value)
{
    const quint64 word = memoryWord(measurement.data_type, value);
    const int size = valueBytes(measurement.data_type);
    const bool bigEndian = measurement.byte_order == A2lByteOrder::BigEndian
                           || measurement.byte_order == A2lByteOrder::MsbFirst;
    QByteArray bytes(size, '\0');
    for (int i = 0; i < size; ++i) {
        const int significance = bigEndian ? size - 1 - i : i;
        bytes[i] = static_cast<char>(word >> 8 * significance);
    }
    return bytes;
}

// A piece of a DTO, copied out of the memory of a value.
struct Piece
{
    EcuValue value;
    int from;
    int size;
};

class DtoMaker
{
public:
    DtoMaker(const StreamingClass_A2L_ODT &odt, const std::vector<EcuValue> &values)
        : m_pid(static_cast<char>(odt.pid))
    {
        for (const auto *element : odt.elements) {
            // All values of a shared element have the same memory.
            for (const EcuValue &value : values) {
                if (value.measurement.name == element->names.first())
                    m_pieces.push_back({value, element->byte_position, element->size});
            }
        }
    }

    QByteArray dto(const VehicleState &state) const
    {
        QByteArray bytes(1, m_pid);
        for (const Piece &piece : m_pieces) {
            const double internal = piece.value.internal(state);
            bytes += memoryBytes(piece.value.measurement, internal).mid(piece.from, piece.size);
        }
        return bytes;
    }

private:
    char m_pid;
    std::vector<Piece> m_pieces;
};

void describeRaster(StreamingClass_A2L_Module &module, const EcuRaster &raster)
{
    StreamingClass_A2L_CFG &cfg = module.config.cfg;
    StreamingClass_A2L_RASTER_EVENT &event = cfg.rasters.add();
    event.name = raster.name;
    event.short_name = raster.name;
    event.channel_no = raster.event;
    event.period_cse = unitMillisecond;
    event.period_rate = quint32(raster.period_ms);

    StreamingClass_A2L_DAQ &daq = cfg.daq_lists.add();
    daq.name = QStringLiteral("DAQ - %1").arg(raster.name);
    daq.period_cse = unitMillisecond;
    daq.period_rate = quint32(raster.period_ms);
    daq.daq_number = static_cast<quint16>(cfg.daq_lists.size() - 1);
    daq.max_odt = pidsOfList;
    daq.can_id = cfg.can_id_recv;
    daq.event_channel = raster.event;
    daq.odt_capacity = dtoPayload;
}

void numberOdts(StreamingClass_A2L_CFG &cfg, PidNumbering numbering)
{
    constexpr quint8 dynamicLists = 2;
    constexpr quint8 pidsAcrossLists = 8;
    if (numbering == PidNumbering::Running)
        cfg.daq_flags = dynamicLists | pidsAcrossLists;
    quint8 next = 0;
    for (auto *daq : cfg.daq_lists) {
        if (numbering == PidNumbering::PerList)
            next = static_cast<quint8>(daq->daq_number * pidsOfList);
        daq->first_pid = next;
        for (auto *odt : daq->odts)
            odt->pid = next++;
    }
}

} // namespace

EcuValue ecuValue(const EcuCell &cell, const QString &conversion,
                  std::function<double(const VehicleState &)> internal)
{
    constexpr quint8 selected = 2;
    EcuValue value;
    A2lMeasurement &measurement = value.measurement;
    measurement.name = QLatin1String(cell.name);
    measurement.data_type = cell.type;
    measurement.conversion = conversion;
    measurement.lower_limit = cell.limits.lower;
    measurement.upper_limit = cell.limits.upper;
    measurement.bit_mask = cell.mask;
    measurement.bit_operation = cell.operation;
    measurement.shift_count = cell.shift;
    measurement.ecu_address = cell.address;
    measurement.selection_flags = selected;
    value.internal = std::move(internal);
    return value;
}

void describeEcu(StreamingClass_A2L_Module &module, const std::vector<EcuRaster> &rasters,
                 const std::vector<EcuValue> &values, Splitting splitting, PidNumbering numbering)
{
    for (const EcuRaster &raster : rasters)
        describeRaster(module, raster);
    StreamingClass_A2L_CFG &cfg = module.config.cfg;
    cfg.assignment_strategy = splitting == Splitting::Never    ? 0
                              : splitting == Splitting::Always ? 1
                                                               : 2;
    for (const EcuValue &value : values) {
        module.measurements.add() = value.measurement;
        placeMeasurement(*cfg.daq_lists.at(value.list), value.measurement, splitting);
    }
    numberOdts(cfg, numbering);
}

void recordEcu(const StreamingClass_A2L_Module &module, const std::vector<EcuRaster> &rasters,
               const std::vector<EcuValue> &values, Schedule &schedule, const Vehicle &vehicle,
               const DtoEntryMaker &makeEntry)
{
    qint64 first_us = 700;
    for (int list = 0; list < int(rasters.size()); ++list) {
        const qint64 period_us = rasters[std::size_t(list)].period_ms * 1000;
        const qint64 round_us = first_us;
        for (const auto *odt : module.config.cfg.daq_lists.at(list)->odts) {
            const auto maker = std::make_shared<DtoMaker>(*odt, values);
            const qint64 late_us = first_us - round_us;
            schedule.every(period_us, first_us, jitter_us, [=, &vehicle](const Moment &moment) {
                const VehicleState state = vehicle.at(double(moment.due_us - late_us) * 1e-6);
                return makeEntry(moment, maker->dto(state));
            });
            first_us += odtGap_us;
        }
    }
}

} // namespace drive
