#include "cli/cantext.h"

#include "cli/daqtext.h"
#include "cli/portsinuse.h"
#include "cli/signalcells.h"
#include "cli/textsections.h"
#include "config/terminalstruct.h"
#include "config/valuenames.h"

using namespace valuenames;

namespace {

constexpr double canClock_kHz = 120000;

QString channelName(std::size_t channel)
{
    return QStringLiteral("CAN %1").arg(channel);
}

// Nothing for 0: what a channel hasn't got isn't worth a look.
QString countText(int count)
{
    return count == 0 ? QString() : QString::number(count);
}

// One phase: "500 kbit/s, 75 %".
QString timingText(unsigned clk_div, unsigned tseg1, unsigned tseg2)
{
    if (clk_div == 0)
        return QStringLiteral("-");
    const unsigned quanta = tseg1 + tseg2 + 1;
    return QStringLiteral("%1 kbit/s, %2 %")
        .arg(canClock_kHz / clk_div / quanta, 0, 'g', 6)
        .arg((tseg1 + 1) * 100.0 / quanta, 0, 'g', 4);
}

QString optionsText(const TerminalCanCfg &can)
{
    QStringList options;
    if (can.listen_only != 0)
        options.append(QStringLiteral("listen only"));
    if (can.single_shot != 0)
        options.append(QStringLiteral("single shot"));
    if (can.termination != 0)
        options.append(QStringLiteral("120 ohm"));
    if (can.remote_11 != 0)
        options.append(QStringLiteral("no 11-bit remote"));
    if (can.remote_29 != 0)
        options.append(QStringLiteral("no 29-bit remote"));
    return options.join(QStringLiteral(", "));
}

QString exportNameText(const TerminalCanCfg &can)
{
    constexpr unsigned useCustomName = 3; // bit 0: appended, bit 1: alone
    return (can.export_name_mode & useCustomName) != 0 ? can.export_custom_name : QString();
}

QString channelsText(const TerminalStruct &configuration)
{
    TextTable table({"Channel", "State", "Mode", "Bit rate", "Data phase", ">Filters", ">Signals",
                     ">DAQ lists", ">AIM", "Options", "Export name"});
    for (std::size_t i = 0; i < configuration.can.size(); ++i) {
        const TerminalCanCfg &can = configuration.can[i];
        if (!isInUse(can))
            continue;
        const bool hasDataPhase = can.can_mode != 0;
        table.addRow({channelName(i), onOff(can.enabled != 0), nameOf(canModes, can.can_mode),
                      timingText(can.clk_div, can.tseg1, can.tseg2),
                      hasDataPhase ? timingText(can.fast_clk_div, can.fast_tseg1, can.fast_tseg2)
                                   : QString(),
                      countText(can.filters.size()), countText(can.dbc_signals.size()),
                      countText(can.a2l.config.cfg.daq_lists.size()),
                      countText(can.aim_modules.size()), optionsText(can), exportNameText(can)});
    }
    return section(QStringLiteral("CAN"), table);
}

QString filtersText(const TerminalStruct &configuration)
{
    TextTable table({"Channel", "Type", "On match", ">Bits", ">ID 1", ">ID 2"});
    for (std::size_t i = 0; i < configuration.can.size(); ++i) {
        for (const CanIdFilterElement *filter : configuration.can[i].filters)
            table.addRow([&] {
                return QStringList{
                    channelName(i),
                    nameOf(canFilterTypes, filter->filter_type),
                    filter->reject != 0 ? QStringLiteral("reject") : QStringLiteral("accept"),
                    filter->extended != 0 ? QStringLiteral("29") : QStringLiteral("11"),
                    hexText(filter->id1),
                    hexText(filter->id2)};
            });
    }
    return section(QStringLiteral("CAN filters"), table);
}

QString useText(const StreamingClass_DBC_Signal &signal)
{
    QStringList uses;
    if ((signal.selection_flags & StreamingClass_DBC_Signal::recordFlag) != 0)
        uses.append(QStringLiteral("record"));
    if ((signal.selection_flags & StreamingClass_DBC_Signal::liveFlag) != 0)
        uses.append(QStringLiteral("live"));
    return uses.join(QStringLiteral(", "));
}

QString signalsText(const TerminalStruct &configuration)
{
    TextTable table({"Channel", ">Message", ">DLC"});
    addSignalColumns(table);
    table.addColumns({"Use"});
    for (std::size_t i = 0; i < configuration.can.size(); ++i) {
        for (const StreamingClass_DBC_Signal *signal : configuration.can[i].dbc_signals)
            table.addRow([&] {
                return QStringList{channelName(i),
                                   identifierText(signal->msg_id, signal->extended_id != 0),
                                   QString::number(signal->dlc)}
                       + signalCells(*signal) + QStringList{useText(*signal)};
            });
    }
    return section(QStringLiteral("DBC signals"), table);
}

QString aimText(const TerminalStruct &configuration)
{
    TextTable table({"Channel", ">Message", "Module", ">Bytes", ">Channels", ">Samples",
                     ">Sample bytes", ">Gap bytes", "Order", "Sign", "Unit"});
    for (std::size_t i = 0; i < configuration.can.size(); ++i) {
        for (const AimMsgMeta *module : configuration.can[i].aim_modules)
            table.addRow([&] {
                return QStringList{channelName(i),
                                   hexText(module->MsgId),
                                   module->name,
                                   QString::number(module->msgLength),
                                   QString::number(module->channelsInMsg),
                                   QString::number(module->samplesInMsg),
                                   QString::number(module->sampleSizeInBytes),
                                   QString::number(module->gapBetweenChannelsInBytes),
                                   orderText(module->isMsbFirst),
                                   signText(module->isSigned),
                                   module->unit};
            });
    }
    return section(QStringLiteral("AIM modules"), table);
}

} // namespace

QString canText(const TerminalStruct &configuration)
{
    QString text = channelsText(configuration) + filtersText(configuration)
                   + signalsText(configuration) + aimText(configuration);
    for (std::size_t i = 0; i < configuration.can.size(); ++i)
        text += daqText(channelName(i), configuration.can[i].a2l);
    return text;
}
