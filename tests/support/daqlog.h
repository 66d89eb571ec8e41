#pragma once

#include "a2l/records/a2lconstants.h"
#include "tests/support/conversionharness.h"
#include "tests/support/logconfigurations.h"

// A log of an ECU whose measurements come in DTOs, on a CAN bus and on ethernet.
class DaqLog : public ConversionHarness
{
public:
    static constexpr quint8 bus = 5;
    static constexpr quint32 dtoId = 0x400;

    StreamingClass_A2L_Module &module() { return configuration.can[bus].a2l; }
    StreamingClass_A2L_Module &ethModule() { return configuration.eth.xcp.module; }

    // These are of the module on CAN.
    StreamingClass_A2L_DAQ &addDaq(quint32 canId = dtoId);
    // The first ODT of a DAQ list of its own.
    StreamingClass_A2L_ODT &addOdt();
    A2lMeasurement &addMeasurement(const char *name, quint8 type);
    void addDto(quint32 timestamp_us, const char *hex);

    // Lets the element stand in the log's configuration as a logger wrote it that didn't know of
    // split values.
    void makeOld(StreamingClass_A2L_ODT_ELEMENT &element);
};

// The status about DAQ lists whose elements don't make up their measurements.
[[nodiscard]] QString oldLogText();
