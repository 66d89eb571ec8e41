#pragma once

#include "can/dbcsignals.h"

#include <QHash>

namespace can {

// Which signals of a DBC file a channel has already, found by an index. It keeps copies, so the
// channel's records may go away.
class LoadedSignals
{
public:
    enum class State {
        New,
        Loaded,            // with the same parameters
        LoadedDifferently, // or the channel has another signal at the same place of the message
    };

    LoadedSignals() = default;
    explicit LoadedSignals(const QList<StreamingClass_DBC_Signal *> &channelSignals);

    // Of all signals of the channel that concern this one, the first decides.
    [[nodiscard]] State stateOf(const StreamingClass_DBC_Signal &signal) const;

private:
    struct Entry
    {
        int position; // in the channel's list
        StreamingClass_DBC_Signal signal;
    };

    QHash<SignalKey, Entry> m_bySignal; // the first record of each signal
    QHash<quint64, int> m_byPlace;      // the first position for each place in a message
};

} // namespace can
