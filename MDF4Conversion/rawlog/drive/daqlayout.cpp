#include "MDF4Conversion/rawlog/drive/daqlayout.h"

#include "a2l/records/a2lconstants.h"

#include <algorithm>

namespace drive {
namespace {

int freeBytes(const StreamingClass_A2L_DAQ &daq, const StreamingClass_A2L_ODT &odt)
{
    int used = 0;
    for (const auto *element : odt.elements)
        used += element->size;
    return daq.odt_capacity - used;
}

int largestFree(const StreamingClass_A2L_DAQ &daq)
{
    int largest = 0;
    for (const auto *odt : daq.odts)
        largest = std::max(largest, freeBytes(daq, *odt));
    return largest;
}

StreamingClass_A2L_ODT &odtWithRoom(StreamingClass_A2L_DAQ &daq, int size)
{
    for (auto *odt : daq.odts) {
        if (freeBytes(daq, *odt) >= size)
            return *odt;
    }
    StreamingClass_A2L_ODT &fresh = daq.odts.add();
    fresh.odt_index = static_cast<quint8>(daq.odts.size() - 1);
    return fresh;
}

bool shareElement(StreamingClass_A2L_DAQ &daq, const A2lMeasurement &measurement)
{
    bool shared = false;
    for (auto *odt : daq.odts) {
        for (auto *element : odt->elements) {
            const quint32 valueAddress = element->address - element->byte_position;
            if (valueAddress == measurement.ecu_address) {
                element->names += measurement.name;
                shared = true;
            }
        }
    }
    return shared;
}

bool isSplit(const StreamingClass_A2L_DAQ &daq, int size, Splitting splitting)
{
    if (size == 1 || splitting == Splitting::Never)
        return false;
    const int room = largestFree(daq);
    return splitting == Splitting::Always || (room > 0 && room < size);
}

} // namespace

int valueBytes(quint8 dataType)
{
    constexpr int bytes[] = {1, 1, 2, 2, 4, 4, 8, 8, 4, 8};
    return bytes[dataType];
}

void placeMeasurement(StreamingClass_A2L_DAQ &daq, const A2lMeasurement &measurement,
                      Splitting splitting)
{
    if (shareElement(daq, measurement))
        return;
    const int size = valueBytes(measurement.data_type);
    const bool split = isSplit(daq, size, splitting);
    const int pieces = split ? size : 1;
    for (int i = 0; i < pieces; ++i) {
        const int bytes = size / pieces;
        StreamingClass_A2L_ODT &odt = odtWithRoom(daq, bytes);
        auto &element = odt.elements.add();
        element.element_index = static_cast<quint8>(odt.elements.size() - 1);
        element.size = static_cast<quint8>(bytes);
        element.address_extension = static_cast<quint8>(measurement.ecu_address_extension);
        element.address = measurement.ecu_address + quint32(i);
        element.names += measurement.name;
        element.split = split ? 1 : 0;
        element.byte_position = static_cast<quint8>(i);
    }
}

} // namespace drive
