#include "cli/configurationtext.h"

#include "cli/cantext.h"
#include "cli/daqtext.h"
#include "cli/portsinuse.h"
#include "cli/textsections.h"
#include "config/terminalstruct.h"
#include "config/valuenames.h"

using namespace valuenames;

namespace {

QString triggerText(const LogTriggerCfg &trigger)
{
    QString text = QStringLiteral("after %1 s").arg(trigger.delay);
    if (trigger.mode != 0)
        text = QStringLiteral("when %1 on CAN %2 reaches %3")
                   .arg(trigger.signal.name, QString::number(trigger.signal_can),
                        realText(trigger.signal_value));
    if (trigger.stop_if_lower != 0)
        text += QStringLiteral(", stops when lower");
    if (trigger.digital_option != 0)
        text += QStringLiteral(", digital input %1").arg(trigger.digital_number);
    return text;
}

QString agmText(const TerminalAgmCfg &agm)
{
    return QStringLiteral("%1, %2, %3, %4")
        .arg(onOff(agm.enabled != 0), nameOf(agmRates, agm.rate), nameOf(accScales, agm.acc_scale),
             nameOf(gyroScales, agm.gyro_scale));
}

QString generalText(const TerminalStruct &configuration)
{
    TextTable table;
    if (!configuration.event.event_name.isEmpty())
        table.addRow({QStringLiteral("Event measurement"), configuration.event.event_name});
    table.addRow(
        {QStringLiteral("Auxiliary supply"), nameOf(auxModes, configuration.event.aux_mode)});
    table.addRow({QStringLiteral("Logging starts"), triggerText(configuration.trigger)});
    if (isInUse(configuration.agm))
        table.addRow({QStringLiteral("Accelerometer"), agmText(configuration.agm)});
    if (isInUse(configuration.gps))
        table.addRow({QStringLiteral("GPS"), onOff(configuration.gps.gps_enabled != 0)});
    if (isInUse(configuration.lte))
        table.addRow({QStringLiteral("LTE"), onOff(configuration.lte.lte_switch != 0)});
    return section(QStringLiteral("Configuration"), table);
}

QString rs485Text(const TerminalStruct &configuration)
{
    TextTable table({"Port", "Supply", ">Level", "D4MOD", "Mode", ">Rate", ">Value"});
    for (std::size_t i = 0; i < configuration.rs485.size(); ++i) {
        const TerminalRs485Cfg &port = configuration.rs485[i];
        if (isInUse(port))
            table.addRow({QStringLiteral("RS485 %1").arg(i), onOff(port.supply_out != 0),
                          QStringLiteral("%1 mV").arg(port.voltage), onOff(port.d4mod.enabled != 0),
                          nameOf(d4modModes, port.d4mod.mode), nameOf(d4modRates, port.d4mod.rate),
                          QString::number(port.d4mod.mode_value)});
    }
    return section(QStringLiteral("RS485"), table);
}

TextTable etherCatSignalTable(const TerminalEtherCatCfg &master)
{
    TextTable table({">Slave", "Name", "Signal", ">Start bit", ">Bits", ">Type code", ">Multiplier",
                     ">Offset", "Unit", "MDF4"});
    for (const EtherCatSlave *slave : master.slaves) {
        if (slave->slave_signals.isEmpty())
            table.addRow({QString::number(slave->slave_number), slave->name});
        for (const EtherCatSignal *signal : slave->slave_signals)
            table.addRow([&] {
                return QStringList{QString::number(slave->slave_number),
                                   slave->name,
                                   signal->name,
                                   QString::number(signal->start_bit),
                                   QString::number(signal->bit_length),
                                   QString::number(signal->data_type),
                                   realText(signal->multiplier),
                                   realText(signal->offset),
                                   signal->unit,
                                   (signal->mdf4_flags & 1) != 0 ? QStringLiteral("yes")
                                                                 : QStringLiteral("no")};
            });
    }
    return table;
}

QString etherCatText(const TerminalStruct &configuration)
{
    TextTable masters({"Master", "State", ">Sample rate", ">Slaves"});
    QString signalTexts;
    for (std::size_t i = 0; i < configuration.ethercat.size(); ++i) {
        const TerminalEtherCatCfg &master = configuration.ethercat[i];
        if (!isInUse(master))
            continue;
        const QString name = QStringLiteral("EtherCAT %1").arg(i);
        masters.addRow({name, onOff(master.enabled != 0), QString::number(master.sample_rate),
                        QString::number(master.slaves.size())});
        signalTexts += section(name + QStringLiteral(": signals"), etherCatSignalTable(master));
    }
    return section(QStringLiteral("EtherCAT"), masters) + signalTexts;
}

TextTable tunnelingFilterTable(const EthTunnelingCfg &tunneling)
{
    TextTable table({">Channel", ">From ID", ">To ID"});
    for (const TunnelingFilter *filter : tunneling.filters)
        table.addRow([&] {
            return QStringList{QString::number(filter->channel), hexText(filter->from_id),
                               hexText(filter->to_id)};
        });
    return table;
}

QString modulesText(quint8 selection)
{
    QStringList modules;
    if ((selection & 1) != 0)
        modules.append(QStringLiteral("XCP"));
    if ((selection & 2) != 0)
        modules.append(QStringLiteral("HSFZ"));
    return modules.isEmpty() ? QStringLiteral("none") : modules.join(QStringLiteral(", "));
}

QString ethernetText(const StreamingClass_Cfg_Ethernet &eth)
{
    if (!isInUse(eth))
        return {};
    const EthTunnelingCfg &tunneling = eth.tunneling;
    TextTable table;
    if (!eth.custom_name.isEmpty())
        table.addRow({QStringLiteral("Name"), eth.custom_name});
    table.addRow({QStringLiteral("Modules"), modulesText(eth.module_selection)});
    table.addRow(
        {QStringLiteral("Tunneling"), QStringLiteral("%1, port %2, local %3, fallback %4, flags %5")
                                          .arg(onOff(tunneling.tunneling_enabled != 0))
                                          .arg(tunneling.daq_port)
                                          .arg(tunneling.local_link_ip, tunneling.fallback_ip,
                                               hexText(tunneling.tunneling_flags))});
    table.addRow({QStringLiteral("Mirroring"), QStringLiteral("%1, ingress %2, egress %3")
                                                   .arg(onOff(tunneling.mirroring_enabled != 0),
                                                        hexText(tunneling.mirror_ingress_mask),
                                                        hexText(tunneling.mirror_egress_mask))});
    const QString name = QStringLiteral("Ethernet");
    return section(name, table)
           + section(name + QStringLiteral(": tunneling filters"), tunnelingFilterTable(tunneling))
           + daqText(name, eth.xcp.module);
}

// The ports of one kind that aren't in use, as "CAN 1, 3 to 11".
template <class Ports>
QString unusedText(const QString &kind, const Ports &ports)
{
    QStringList ranges;
    for (std::size_t first = 0; first < ports.size(); ++first) {
        if (isInUse(ports[first]))
            continue;
        std::size_t last = first;
        while (last + 1 < ports.size() && !isInUse(ports[last + 1]))
            ++last;
        const QString join =
            last == first + 1 ? QStringLiteral("%1, %2") : QStringLiteral("%1 to %2");
        ranges.append(first == last ? QString::number(first) : join.arg(first).arg(last));
        first = last;
    }
    return ranges.isEmpty() ? QString()
                            : kind + QLatin1Char(' ') + ranges.join(QStringLiteral(", "));
}

QString notInUseText(const TerminalStruct &configuration)
{
    QStringList ports{unusedText(QStringLiteral("CAN"), configuration.can),
                      unusedText(QStringLiteral("RS485"), configuration.rs485),
                      unusedText(QStringLiteral("EtherCAT"), configuration.ethercat)};
    if (!isInUse(configuration.eth))
        ports.append(QStringLiteral("Ethernet"));
    if (!isInUse(configuration.agm))
        ports.append(QStringLiteral("Accelerometer"));
    if (!isInUse(configuration.gps))
        ports.append(QStringLiteral("GPS"));
    if (!isInUse(configuration.lte))
        ports.append(QStringLiteral("LTE"));
    ports.removeAll({});
    TextTable table;
    if (!ports.isEmpty())
        table.addRow({ports.join(QStringLiteral("; "))});
    return section(QStringLiteral("Not in use"), table);
}

} // namespace

QString configurationText(const TerminalStruct &configuration)
{
    return generalText(configuration) + canText(configuration) + rs485Text(configuration)
           + etherCatText(configuration) + ethernetText(configuration.eth)
           + notInUseText(configuration);
}
