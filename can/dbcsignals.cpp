#include "can/dbcsignals.h"

#include <QHash>

#include <memory>
#include <set>
#include <utility>
#include <vector>

using Signal = StreamingClass_DBC_Signal;

can::SignalKey can::keyOf(const Signal &signal)
{
    return {signal.msg_id, signal.extended_id != 0, signal.name};
}

bool can::isSameSignal(const Signal &a, const Signal &b)
{
    return keyOf(a) == keyOf(b);
}

bool can::isIdenticalSignal(const Signal &a, const Signal &b)
{
    Signal withFlagsOfB = a;
    withFlagsOfB.selection_flags = b.selection_flags;
    return withFlagsOfB == b;
}

can::SignalsToLoad can::signalsToLoad(const QList<Signal *> &signalList)
{
    SignalsToLoad load;
    std::set<quint32> multiplexedMessages; // ascending, so that the result is always the same
    QHash<quint32, Signal *> multiplexors; // the first one of each message
    for (Signal *signal : signalList) {
        if (signal->mux_kind == MultiplexorSignal && !multiplexors.contains(signal->msg_id))
            multiplexors.insert(signal->msg_id, signal);
        if ((signal->selection_flags & Signal::recordFlag) == 0)
            continue;
        ++load.selected;
        load.records.append(signal);
        if (signal->mux_kind == MultiplexedSignal)
            multiplexedMessages.insert(signal->msg_id);
    }
    for (const quint32 message : multiplexedMessages) {
        Signal *multiplexor = multiplexors.value(message);
        if (!multiplexor) {
            load.error = QString::asprintf("No Multiplexor found within Msg.ID %08X.", message);
            break;
        }
        if ((multiplexor->selection_flags & Signal::recordFlag) == 0) // else it is in the list
            load.records.append(multiplexor);
    }
    return load;
}

void can::insertSignals(OwnedList<Signal> &channel, const QList<Signal *> &fresh)
{
    std::vector<std::unique_ptr<Signal>> records;
    records.reserve(std::size_t(channel.size() + fresh.size()));
    QHash<SignalKey, QVector<std::size_t>> places; // of each signal in the records, ascending
    const auto append = [&records, &places](std::unique_ptr<Signal> signal) {
        places[keyOf(*signal)].append(records.size());
        records.push_back(std::move(signal));
    };

    while (!channel.isEmpty())
        append(channel.takeAt(0));
    for (Signal *signal : fresh) {
        const QVector<std::size_t> replaced = places.take(keyOf(*signal));
        if (!replaced.isEmpty()) // of several the first counts
            signal->selection_flags = records[replaced.first()]->selection_flags;
        for (const std::size_t place : replaced)
            records[place].reset();
        append(std::unique_ptr<Signal>(signal));
    }

    for (std::unique_ptr<Signal> &signal : records) {
        if (signal)
            channel.append(std::move(signal));
    }
}

void can::removeSignals(OwnedList<Signal> &channel, const QList<Signal *> &unwanted)
{
    using Message = std::pair<quint32, quint8>;
    const auto messageOf = [](const Signal &signal) {
        return Message(signal.msg_id, signal.extended_id);
    };
    const std::set<const Signal *> gone(unwanted.begin(), unwanted.end());
    std::set<Message> touched;
    std::set<Message> multiplexed; // messages that still have multiplexed signals
    for (const Signal *signal : channel) {
        if (gone.count(signal) > 0)
            touched.insert(messageOf(*signal));
        else if (signal->mux_kind == MultiplexedSignal)
            multiplexed.insert(messageOf(*signal));
    }
    OwnedList<Signal> kept;
    while (!channel.isEmpty()) {
        std::unique_ptr<Signal> signal = channel.takeAt(0);
        const Message message = messageOf(*signal);
        const bool isIdle = signal->mux_kind == MultiplexorSignal && touched.count(message) > 0
                            && multiplexed.count(message) == 0;
        if (!isIdle && gone.count(signal.get()) == 0)
            kept.append(std::move(signal));
    }
    channel.swap(kept);
}
