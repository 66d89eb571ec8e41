#include "link/logtrigger.h"

#include "can/dbcsignals.h"

#include <QHash>

#include <algorithm>

namespace logtrigger {

namespace {

using Signal = StreamingClass_DBC_Signal;
using MessageKey = std::pair<quint32, quint8>; // identifier and whether it is one of 29 bits

MessageKey messageOf(const Signal &signal)
{
    return {signal.msg_id, signal.extended_id};
}

bool isSame(const Choice &a, const Choice &b)
{
    return can::isIdenticalSignal(a.signal, b.signal)
           && can::isIdenticalSignal(a.multiplexor, b.multiplexor);
}

std::optional<Choice> found(const QVector<Choice> &choices, const Choice &wanted)
{
    const auto same = std::find_if(choices.begin(), choices.end(),
                                   [&](const Choice &choice) { return isSame(choice, wanted); });
    return same == choices.end() ? std::nullopt : std::optional(*same);
}

} // namespace

QVector<Choice> choicesOf(const TerminalStruct &configuration, int can_nr)
{
    if (can_nr < 0 || can_nr >= int(TerminalStruct::canChannels))
        return {};
    const auto &channelSignals = configuration.can[std::size_t(can_nr)].dbc_signals;
    QHash<MessageKey, const Signal *> multiplexors; // the first one of each message
    for (const Signal *signal : channelSignals)
        if (signal->mux_kind == MultiplexorSignal && !multiplexors.contains(messageOf(*signal)))
            multiplexors.insert(messageOf(*signal), signal);

    QVector<Choice> choices;
    for (const Signal *signal : channelSignals) {
        if ((signal->selection_flags & Signal::recordFlag) == 0)
            continue;
        if (signal->mux_kind != MultiplexedSignal)
            choices.append({*signal, {}});
        else if (const Signal *multiplexor = multiplexors.value(messageOf(*signal)))
            choices.append({*signal, *multiplexor});
    }
    return choices;
}

std::optional<Choice> validChoice(const TerminalStruct &configuration, const LogTriggerCfg &record)
{
    return found(choicesOf(configuration, record.signal_can), {record.signal, record.multiplexor});
}

LogTriggerCfg edited(const TerminalStruct &configuration, const Input &shown, const Input &now,
                     const std::optional<Choice> &choice)
{
    LogTriggerCfg record = configuration.trigger;
    if (now.by_signal != shown.by_signal)
        record.mode = now.by_signal ? 1 : 0;
    if (now.delay_s != shown.delay_s)
        record.delay = now.delay_s;
    if (now.value < shown.value || now.value > shown.value)
        record.signal_value = now.value;
    if (now.stop_if_lower != shown.stop_if_lower)
        record.stop_if_lower = now.stop_if_lower ? 1 : 0;

    // The choice comes from the channel that is shown. The record may hold one that doesn't exist.
    const std::optional<Choice> valid =
        choice ? found(choicesOf(configuration, now.can_nr), *choice) : std::nullopt;
    if (valid || now.can_nr != shown.can_nr)
        record.signal_can = quint8(now.can_nr);
    record.signal = valid ? valid->signal : Signal();
    record.multiplexor = valid ? valid->multiplexor : Signal();
    return record;
}

} // namespace logtrigger
