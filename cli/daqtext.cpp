#include "cli/daqtext.h"

#include "a2l/records/a2lconstants.h"
#include "a2l/records/streamingclass_a2l_module.h"
#include "cli/portsinuse.h"
#include "cli/textsections.h"
#include "config/valuenames.h"

#include <cmath>

using namespace valuenames;

namespace {

constexpr quint32 extendedFlag = 0x80000000;

QString canIdText(quint32 id)
{
    return id == 0 ? QStringLiteral("-")
                   : identifierText(id & ~extendedFlag, (id & extendedFlag) != 0);
}

QString parametersText(const QString &port, const StreamingClass_A2L_Module &module)
{
    const StreamingClass_A2L_CFG &cfg = module.config.cfg;
    TextTable table;
    table.addRow({QStringLiteral("A2L file"), module.a2l_file_name});
    table.addRow({QStringLiteral("State"), onOff(module.config.enabled != 0)});
    table.addRow(
        {QStringLiteral("Interface"), nameOf(a2lInterfaces, module.config.active_interface)});
    if (module.config.active_interface == ACTIVE_A2L_IF_CCP_XCP_O_CAN)
        table.addRow({QStringLiteral("Identifiers"),
                      QStringLiteral("send %1, receive %2, %3 bit/s")
                          .arg(canIdText(cfg.can_id_send), canIdText(cfg.can_id_recv))
                          .arg(cfg.baudrate)});
    if (!cfg.ip_address.isEmpty() || cfg.port != 0)
        table.addRow({QStringLiteral("Slave"),
                      cfg.ip_address + QLatin1Char(':') + QString::number(cfg.port)});
    table.addRow({QStringLiteral("Protocol"),
                  QStringLiteral("%1 %2").arg(hexText(cfg.protocol_version), cfg.version_text)});
    if (module.hsfz_activation != 0)
        table.addRow({QStringLiteral("HSFZ activation"), QString::number(module.hsfz_activation)});
    return section(port + QStringLiteral(": CCP/XCP"), table);
}

TextTable eventTable(const StreamingClass_A2L_CFG &cfg)
{
    TextTable table({">Channel", "Event", "Short name", ">Unit code", ">Period"});
    for (const StreamingClass_A2L_RASTER_EVENT *event : cfg.rasters)
        table.addRow([&] {
            return QStringList{QString::number(event->channel_no), event->name, event->short_name,
                               QString::number(event->period_cse),
                               QString::number(event->period_rate)};
        });
    return table;
}

struct DaqContent
{
    int elements = 0;
    int bytes = 0;
    int names = 0;
};

DaqContent contentOf(const StreamingClass_A2L_DAQ &daq)
{
    DaqContent content;
    for (const StreamingClass_A2L_ODT *odt : daq.odts) {
        for (const StreamingClass_A2L_ODT_ELEMENT *element : odt->elements) {
            ++content.elements;
            content.bytes += element->size;
            content.names += element->names.size();
        }
    }
    return content;
}

TextTable daqTable(const StreamingClass_A2L_CFG &cfg)
{
    TextTable table({">No.", "DAQ list", ">Event", ">Identifier", ">First PID", ">ODTs", ">of",
                     ">ODT bytes", ">Elements", ">Bytes", ">Measurements"});
    for (const StreamingClass_A2L_DAQ *daq : cfg.daq_lists) {
        table.addRow([&] {
            const DaqContent content = contentOf(*daq);
            return QStringList{
                QString::number(daq->daq_number),    daq->name,
                QString::number(daq->event_channel), canIdText(daq->can_id),
                QString::number(daq->first_pid),     QString::number(daq->odts.size()),
                QString::number(daq->max_odt),       QString::number(daq->odt_capacity),
                QString::number(content.elements),   QString::number(content.bytes),
                QString::number(content.names)};
        });
    }
    return table;
}

TextTable measurementTable(const StreamingClass_A2L_Module &module)
{
    TextTable table({"Measurement", "Type", ">Address", "Conversion", ">Lower limit",
                     ">Upper limit", "Description"});
    for (const A2lMeasurement *measurement : module.measurements)
        table.addRow([&] {
            return QStringList{measurement->name,
                               nameOf(a2lDataTypes, measurement->data_type),
                               hexText(measurement->ecu_address),
                               measurement->conversion,
                               realText(measurement->lower_limit),
                               realText(measurement->upper_limit),
                               measurement->long_identifier};
        });
    return table;
}

QString linearText(double factor, double offset)
{
    const QString product = realText(factor) + QStringLiteral(" x");
    if (offset == 0)
        return product;
    return product + (offset < 0 ? QStringLiteral(" - ") : QStringLiteral(" + "))
           + realText(std::abs(offset));
}

// The six coefficients, in the order of the A2L file.
QString rationalText(const A2lCompuMethod &method)
{
    QStringList coefficients;
    for (const double coefficient : {method.coeff_a, method.coeff_b, method.coeff_c, method.coeff_d,
                                     method.coeff_e, method.coeff_f})
        coefficients.append(realText(coefficient));
    return coefficients.join(QLatin1Char(' '));
}

QString contentText(const A2lCompuMethod &method)
{
    switch (method.conversion_type) {
    case A2lConversionType::Linear:
        return linearText(method.linear_a, method.linear_b);
    case A2lConversionType::RatFunc:
        return rationalText(method);
    case A2lConversionType::Form:
        return method.formula;
    default:
        return method.table_name;
    }
}

TextTable methodTable(const StreamingClass_A2L_Module &module)
{
    TextTable table({"Conversion", "Kind", "Unit", "Content"});
    for (const A2lCompuMethod *method : module.compu_methods)
        table.addRow([&] {
            return QStringList{method->name, nameOf(a2lConversionTypes, method->conversion_type),
                               method->unit, contentText(*method)};
        });
    return table;
}

} // namespace

QString daqText(const QString &port, const StreamingClass_A2L_Module &module)
{
    if (!isInUse(module))
        return {};
    return parametersText(port, module)
           + section(port + QStringLiteral(": events"), eventTable(module.config.cfg))
           + section(port + QStringLiteral(": DAQ lists"), daqTable(module.config.cfg))
           + section(port + QStringLiteral(": measurements"), measurementTable(module))
           + section(port + QStringLiteral(": conversions"), methodTable(module));
}
