#pragma once

#include "a2l/records/a2lmeasurement.h"
#include "a2l/records/streamingclass_a2l_daq.h"

namespace drive {

// Bytes of a value of an A2lDataType.
[[nodiscard]] int valueBytes(quint8 dataType);

enum class Splitting {
    Never,  // an element holds a whole value
    ToFill, // values are split into bytes where that fills an ODT
    Always  // every element is one byte
};

// Gives the measurement a place in the list: in the element that has its address already, else in
// the first ODT with room, else in a new one.
void placeMeasurement(StreamingClass_A2L_DAQ &daq, const A2lMeasurement &measurement,
                      Splitting splitting);

} // namespace drive
