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
    int named_value_tables = 0;      // VAL_TABLE_
    int signals_of_no_message = 0;   // of VECTOR__INDEPENDENT_SIG_MSG, read with the message before
    int oversized_signals = 0;       // of more than 64 bits, or beyond the DLC of their message
    int comments_without_signal = 0; // CM_ SG_ that no signal took
    int other_comments = 0;          // CM_ of messages, nodes or the bus
    int ignored_signals = 0;         // SG_ lines outside of a message
};

namespace dbc {

// One count of a summary: its name in machine-readable output, and what it counts.
struct SummaryCount
{
    int DbcSummary::*count;
    const char *key;
    const char *one;
    const char *many;
};

inline constexpr SummaryCount readCounts[] = {
    {&DbcSummary::messages, "messages", "message", "messages"},
    {&DbcSummary::signal_count, "signals", "signal", "signals"},
};

inline constexpr SummaryCount passedOverCounts[] = {
    {&DbcSummary::ignored_signals, "ignored_signals", "signal outside of a message",
     "signals outside of a message"},
    {&DbcSummary::signals_of_no_message, "signals_of_no_message",
     "signal of no message (read with the message before it)",
     "signals of no message (read with the message before them)"},
    {&DbcSummary::oversized_signals, "oversized_signals",
     "signal of more than 64 bits or beyond its message",
     "signals of more than 64 bits or beyond their message"},
    {&DbcSummary::float_types, "float_types", "float type (read as a whole number)",
     "float types (read as whole numbers)"},
    {&DbcSummary::multiplexor_ranges, "multiplexor_ranges",
     "signal at several multiplexor values (read at one)",
     "signals at several multiplexor values (read at one)"},
    {&DbcSummary::value_tables, "value_tables", "value table", "value tables"},
    {&DbcSummary::named_value_tables, "named_value_tables", "named value table",
     "named value tables"},
    {&DbcSummary::comments_without_signal, "comments_without_signal", "comment without a signal",
     "comments without a signal"},
    {&DbcSummary::other_comments, "other_comments", "comment of a message, node or bus",
     "comments of messages, nodes or the bus"},
};

// One line for the user: what was read, and what was passed over if anything was.
[[nodiscard]] QString summaryText(const DbcSummary &summary);

// What was passed over: "2 value tables, 1 comment without a signal"; empty for nothing.
[[nodiscard]] QString passedOverText(const DbcSummary &summary);

} // namespace dbc
