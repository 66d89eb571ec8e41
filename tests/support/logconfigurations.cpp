#include "tests/support/logconfigurations.h"

#include "MDF4Conversion/rawlog/entrybuilder.h"

namespace testlog {

StreamingClass_DBC_Signal &addSignal(TerminalCanCfg &can, const QString &name, quint32 id,
                                     quint16 startBit, quint16 bitLength)
{
    StreamingClass_DBC_Signal &signal = can.dbc_signals.add();
    signal.name = name;
    signal.start_bit = startBit;
    signal.bit_length = bitLength;
    signal.little_endian = 1;
    signal.factor = 1;
    signal.selection_flags = StreamingClass_DBC_Signal::recordFlag;
    signal.dlc = 8;
    signal.msg_id = id;
    return signal;
}

A2lMeasurement &addMeasurement(StreamingClass_A2L_Module &module, const QString &name,
                               quint8 dataType)
{
    A2lMeasurement &measurement = module.measurements.add();
    measurement.name = name;
    measurement.data_type = dataType;
    measurement.conversion = QStringLiteral("NO_COMPU_METHOD");
    measurement.bit_mask = ~quint64(0);
    return measurement;
}

StreamingClass_A2L_DAQ &addDaq(StreamingClass_A2L_Module &module, quint32 canId)
{
    StreamingClass_A2L_DAQ &daq = module.config.cfg.daq_lists.add();
    daq.can_id = canId;
    return daq;
}

StreamingClass_A2L_ODT &addOdt(StreamingClass_A2L_DAQ &daq, quint8 pid)
{
    StreamingClass_A2L_ODT &odt = daq.odts.add();
    odt.pid = pid;
    return odt;
}

StreamingClass_A2L_ODT_ELEMENT &addElement(StreamingClass_A2L_ODT &odt, const QString &name,
                                           quint8 size)
{
    StreamingClass_A2L_ODT_ELEMENT &element = odt.elements.add();
    element.size = size;
    element.names.append(name);
    return element;
}

StreamingClass_A2L_ODT_ELEMENT &addSplitElement(StreamingClass_A2L_ODT &odt, const QString &name,
                                                quint8 size, quint8 bytePosition)
{
    StreamingClass_A2L_ODT_ELEMENT &element = addElement(odt, name, size);
    element.split = 1;
    element.byte_position = bytePosition;
    return element;
}

QByteArray can(quint32 timestamp_us, quint8 channel, quint32 id, const char *hex)
{
    return rawlog::canEntry(timestamp_us, channel,
                            {id, id > rawlog::standardIdMask, QByteArray::fromHex(hex)});
}

QByteArray eth(quint32 timestamp_us, const char *hex)
{
    return rawlog::ethXcpEntry(timestamp_us, QByteArray::fromHex(hex));
}

} // namespace testlog
