#pragma once

#include "config/logtriggercfg.h"
#include "config/terminalstruct.h"

#include <QVector>

#include <optional>

// What the user sets of the log trigger, and the record that follows from it.
namespace logtrigger {

// A signal that can start logging. Copies, so that they hold when the channel changes.
struct Choice
{
    StreamingClass_DBC_Signal signal;
    StreamingClass_DBC_Signal multiplexor; // of a multiplexed signal, else a default one
};

// The recorded signals of a CAN channel in its order; none for a channel that doesn't exist. A
// multiplexed signal without its multiplexor can't be decoded, so it can't start anything.
[[nodiscard]] QVector<Choice> choicesOf(const TerminalStruct &configuration, int can_nr);

// The record's signal, if it is one of its channel's choices. The record holds a copy, which
// outlives a signal that the channel has lost, or has with other parameters by now.
[[nodiscard]] std::optional<Choice> validChoice(const TerminalStruct &configuration,
                                                const LogTriggerCfg &record);

// What the widgets hold.
struct Input
{
    bool by_signal = false;
    int delay_s = 0;
    double value = 0.0; // physical
    bool stop_if_lower = false;
    int can_nr = 0;
};

// The held record with what the user has changed: where a widget holds what it has shown, the record
// stays as it is, since a widget may not be able to hold all that a record can. A choice brings its
// channel, which is the one shown; one that is none of that channel's doesn't count.
[[nodiscard]] LogTriggerCfg edited(const TerminalStruct &configuration, const Input &shown,
                                   const Input &now, const std::optional<Choice> &choice);

} // namespace logtrigger
