#include "cli/signalcells.h"

#include "can/dbcmessages.h"
#include "cli/textsections.h"
#include "config/streamingclass_dbc_signal.h"

namespace {

QString multiplexText(const StreamingClass_DBC_Signal &signal)
{
    switch (signal.mux_kind) {
    case PlainSignal:
        return {};
    case MultiplexorSignal:
        return QStringLiteral("multiplexor");
    default:
        return QStringLiteral("at %1").arg(signal.mux_value);
    }
}

} // namespace

void addSignalColumns(TextTable &table)
{
    table.addColumns({"Signal", ">Start bit", ">Bits", "Order", "Sign", ">Factor", ">Offset",
                      ">Minimum", ">Maximum", "Unit", "Multiplex"});
}

QStringList signalCells(const StreamingClass_DBC_Signal &signal)
{
    return {signal.name,
            QString::number(signal.start_bit),
            QString::number(signal.bit_length),
            orderText(signal.little_endian == 0),
            can::valueKindText(signal),
            realText(signal.factor),
            realText(signal.offset),
            realText(signal.minimum),
            realText(signal.maximum),
            signal.unit,
            multiplexText(signal)};
}
