#pragma once

#include "config/terminalstruct.h"

#include <QByteArray>
#include <QString>

// Short ways to what the configurations and logs of the conversion tests have in common.
namespace testlog {

// A recorded Intel signal of a standard message of 8 bytes, with factor 1.
StreamingClass_DBC_Signal &addSignal(TerminalCanCfg &can, const QString &name, quint32 id,
                                     quint16 startBit, quint16 bitLength);

// An unsigned little-endian measurement with all bits and without computation method.
A2lMeasurement &addMeasurement(StreamingClass_A2L_Module &module, const QString &name,
                               quint8 dataType);

StreamingClass_A2L_DAQ &addDaq(StreamingClass_A2L_Module &module, quint32 canId);
StreamingClass_A2L_ODT &addOdt(StreamingClass_A2L_DAQ &daq, quint8 pid);
// An element that carries the measurement whole.
StreamingClass_A2L_ODT_ELEMENT &addElement(StreamingClass_A2L_ODT &odt, const QString &name,
                                           quint8 size);
// An element that carries `size` bytes of the measurement's value from `bytePosition` on.
StreamingClass_A2L_ODT_ELEMENT &addSplitElement(StreamingClass_A2L_ODT &odt, const QString &name,
                                                quint8 size, quint8 bytePosition);

// A CAN entry; `hex` are its data bytes, `id` is extended above 0x7FF.
[[nodiscard]] QByteArray can(quint32 timestamp_us, quint8 channel, quint32 id, const char *hex);
// An XCP frame from ethernet.
[[nodiscard]] QByteArray eth(quint32 timestamp_us, const char *hex);

} // namespace testlog
