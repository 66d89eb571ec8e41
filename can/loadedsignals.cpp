#include "can/loadedsignals.h"

using Signal = StreamingClass_DBC_Signal;

namespace {

// Message and place in it, as one number.
quint64 placeOf(const Signal &signal)
{
    return (quint64(signal.msg_id) << 32) | (quint64(signal.start_bit) << 16) | signal.bit_length;
}

} // namespace

can::LoadedSignals::LoadedSignals(const QList<Signal *> &channelSignals)
{
    for (int i = 0; i < channelSignals.size(); ++i) {
        const Signal &signal = *channelSignals.at(i);
        const SignalKey key = keyOf(signal);
        if (!m_bySignal.contains(key))
            m_bySignal.insert(key, {i, signal});
        if (!m_byPlace.contains(placeOf(signal)))
            m_byPlace.insert(placeOf(signal), i);
    }
}

can::LoadedSignals::State can::LoadedSignals::stateOf(const Signal &signal) const
{
    const auto same = m_bySignal.constFind(keyOf(signal));
    const auto place = m_byPlace.constFind(placeOf(signal));
    const bool isThere = same != m_bySignal.constEnd();
    const bool isPlaceTaken = place != m_byPlace.constEnd();
    if (isThere && !(isPlaceTaken && *place < same->position)
        && isIdenticalSignal(same->signal, signal))
        return State::Loaded;
    return isThere || isPlaceTaken ? State::LoadedDifferently : State::New;
}
