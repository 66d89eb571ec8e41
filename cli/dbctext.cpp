#include "cli/dbctext.h"

#include "can/canfilters.h"
#include "can/dbcfileparser.h"
#include "cli/signalcells.h"
#include "cli/textsections.h"
#include "config/shorttext.h"

namespace {

QString filterText(const DbcFileParser &parser)
{
    const std::size_t needed =
        can::filtersFromSignals(parser.signalList(), can::SelectedOnly::No).size();
    return QStringLiteral("%1 for a selection of all signals, the hardware has %2")
        .arg(needed)
        .arg(can::maxFilters);
}

QString summaryText(const DbcFileParser &parser)
{
    const DbcSummary &summary = parser.summary();
    TextTable table;
    table.addRow({QStringLiteral("Messages"), QString::number(summary.messages)});
    table.addRow({QStringLiteral("Signals"), QString::number(summary.signal_count)});
    table.addRow({QStringLiteral("Filters"), filterText(parser)});
    const QString passedOver = dbc::passedOverText(summary);
    if (!passedOver.isEmpty())
        table.addRow({QStringLiteral("Passed over"), passedOver});
    return section(QStringLiteral("Database"), table);
}

bool areOfOneMessage(const StreamingClass_DBC_Signal &a, const StreamingClass_DBC_Signal &b)
{
    return a.msg_id == b.msg_id && a.extended_id == b.extended_id && a.dlc == b.dlc;
}

// Spaces go before the table cuts the text, but not those of megabytes that it would cut anyway.
QString descriptionCell(const StreamingClass_DBC_Signal &signal)
{
    return shortText(signal.description, 2 * TextTable::maxCellLength).simplified();
}

// A message stands at the first of its signals.
QStringList messageCells(const StreamingClass_DBC_Signal &signal,
                         const StreamingClass_DBC_Signal *previous)
{
    if (previous && areOfOneMessage(signal, *previous))
        return {QString(), QString()};
    return {identifierText(signal.msg_id, signal.extended_id != 0), QString::number(signal.dlc)};
}

QString signalsText(const DbcFileParser &parser)
{
    TextTable table({">Message", ">DLC"});
    addSignalColumns(table);
    table.addColumns({"Description"});
    const StreamingClass_DBC_Signal *previous = nullptr;
    for (const StreamingClass_DBC_Signal *signal : parser.signalList()) {
        table.addRow([&] {
            return messageCells(*signal, previous) + signalCells(*signal)
                   + QStringList{descriptionCell(*signal)};
        });
        previous = signal;
    }
    return section(QStringLiteral("Signals"), table);
}

} // namespace

QString dbcText(const DbcFileParser &parser)
{
    return summaryText(parser) + signalsText(parser);
}
