#pragma once

#include <QString>

// What a DBC file holds, and what of it was passed over.
struct DbcSummary
{
    int messages = 0;
    int signal_count = 0;
    int float_types = 0;             // SIG_VALTYPE_ of a float or double, read as a whole number
    int multiplexor_ranges = 0;      // SG_MUL_VAL_ of signals that are sent at several values
    int value_tables = 0;            // VAL_
    int comments_without_signal = 0; // CM_ SG_ that no signal took
    int other_comments = 0;          // CM_ of messages, nodes or the bus
    int ignored_signals = 0;         // SG_ lines outside of a message
};

namespace dbc {

// One line for the user: what was read, and what was passed over if anything was.
[[nodiscard]] QString summaryText(const DbcSummary &summary);

// What was passed over: "2 value tables, 1 comment without a signal"; empty for nothing.
[[nodiscard]] QString passedOverText(const DbcSummary &summary);

} // namespace dbc
