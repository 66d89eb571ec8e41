#include "can/dbclivedecoder.h"

#include <QHash>

#include <tuple>
#include <utility>

namespace can {

using Signal = StreamingClass_DBC_Signal;

bool DbcLiveDecoder::isDecodedAlike(const LiveSignal &a, const LiveSignal &b)
{
    return std::tie(a.dlc, a.field, a.multiplexorBits, a.factor, a.offset)
           == std::tie(b.dlc, b.field, b.multiplexorBits, b.factor, b.offset);
}

void DbcLiveDecoder::setSignals(const QList<Signal *> &signalList)
{
    const std::vector<LiveSignal> before = std::exchange(m_signals, {});
    m_messages.clear();
    for (Signal *signal : signalList)
        signal->live_seen = false;
    for (const auto &[key, message] : dbcMessages(signalList, Signal::liveFlag)) {
        if (!message.chosen.empty())
            add(key, message);
    }
    carryOver(before);
}

void DbcLiveDecoder::add(const DbcMessageKey &key, const DbcMessage &message)
{
    Message entry{m_signals.size(), message.chosen.size(), {}};
    if (message.hasMultiplexed() && !message.multiplexors.empty())
        entry.multiplexor = multiplexorField(*message.multiplexors.front());
    for (Signal *signal : message.chosen) {
        LiveSignal live{signal, keyOf(*signal), signal->dlc,    valueField(*signal),
                        {},     signal->factor, signal->offset, {}};
        if (entry.multiplexor && signal->mux_kind == MultiplexedSignal)
            live.multiplexorBits = multiplexorBits(signal->mux_value);
        m_signals.push_back(std::move(live));
    }
    m_messages.emplace(identifierKey(key.first, key.second), entry);
}

void DbcLiveDecoder::carryOver(const std::vector<LiveSignal> &before)
{
    QHash<SignalKey, const LiveSignal *> known;
    for (const LiveSignal &old : before) {
        if (old.value)
            known.insert(old.key, &old);
    }
    for (LiveSignal &live : m_signals) {
        const LiveSignal *old = known.value(live.key);
        if (!old || !isDecodedAlike(live, *old))
            continue;
        live.value = old->value;
        live.record->live_value = *live.value;
        live.record->live_seen = true;
    }
}

bool DbcLiveDecoder::take(const ReceivedFrame &frame)
{
    if (frame.remote)
        return false;
    const auto found = m_messages.find(identifierKey(frame.id, frame.extended));
    if (found == m_messages.end())
        return false;
    const Message &message = found->second;
    std::optional<quint64> selected;
    if (message.multiplexor && message.multiplexor->frameBytes() <= frame.data.size)
        selected = message.multiplexor->bitsIn(frame.data);
    bool isAnySet = false;
    for (std::size_t i = message.first; i < message.first + message.count; ++i) {
        LiveSignal &live = m_signals[i];
        if (live.dlc != frame.data.size || live.field.frameBytes() > frame.data.size
            || (live.multiplexorBits && live.multiplexorBits != selected))
            continue;
        const double value = live.field.valueIn(frame.data).toDouble() * live.factor + live.offset;
        live.value = value;
        live.record->live_value = value;
        live.record->live_seen = true;
        isAnySet = true;
    }
    return isAnySet;
}

void DbcLiveDecoder::forgetValues()
{
    for (LiveSignal &live : m_signals) {
        live.value.reset();
        live.record->live_seen = false;
    }
}

} // namespace can
