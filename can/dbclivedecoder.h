#pragma once

#include "can/canframe.h"
#include "can/dbcmessages.h"
#include "can/dbcsignals.h"

#include <optional>
#include <unordered_map>
#include <vector>

namespace can {

// Sets live_value and live_seen of a channel's signals that have the live flag, from the frames of
// the channel. A value is taken from the frames that the conversion takes it from, and by the same
// bits; but a frame that doesn't hold all bits of a value gives none. Used by one thread.
class DbcLiveDecoder
{
public:
    // The records of the channel; they must outlive the next call. A signal that was live before and
    // is decoded in the same way keeps its value, also when its record was replaced; any other one
    // counts as not seen.
    void setSignals(const QList<StreamingClass_DBC_Signal *> &signalList);

    // True if a value was set. Remote frames carry none.
    bool take(const ReceivedFrame &frame);

    // All signals count as not seen.
    void forgetValues();

    [[nodiscard]] int liveSignals() const { return int(m_signals.size()); }

private:
    struct LiveSignal
    {
        StreamingClass_DBC_Signal *record;
        SignalKey key; // the record may be gone when values are carried over
        quint8 dlc;    // bytes of its frames
        BitField field;
        std::optional<quint64> multiplexorBits; // multiplexed signals only
        double factor;
        double offset;
        std::optional<double> value;
    };
    // The signals of a message lie side by side.
    struct Message
    {
        std::size_t first = 0;
        std::size_t count = 0;
        std::optional<BitField> multiplexor;
    };

    static bool isDecodedAlike(const LiveSignal &a, const LiveSignal &b);
    void add(const DbcMessageKey &key, const DbcMessage &message);
    void carryOver(const std::vector<LiveSignal> &before);

    std::vector<LiveSignal> m_signals;
    std::unordered_map<quint64, Message> m_messages; // by identifierKey()
};

} // namespace can
