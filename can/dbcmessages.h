#pragma once

#include "can/bitfield.h"
#include "can/canframe.h"
#include "config/streamingclass_dbc_signal.h"

#include <QList>

#include <map>
#include <utility>
#include <vector>

// What decoders of DBC signals share: which frames carry a signal and how its bits read.
namespace can {

// The chosen signals of one message and what tells its frames apart, in list order.
struct DbcMessage
{
    // Without multiplexors where there are multiplexed signals: there they only select.
    std::vector<StreamingClass_DBC_Signal *> chosen;
    std::vector<StreamingClass_DBC_Signal *> multiplexors; // chosen or not; the first one counts

    [[nodiscard]] bool hasMultiplexed() const;
};

// The identifier of the frames that carry the signal. A DBC file may give a number above 29 bits, of
// which a bus has no more than these.
[[nodiscard]] inline quint32 frameIdentifier(const StreamingClass_DBC_Signal &signal)
{
    return signal.msg_id & maxExtendedId;
}

// Number and whether it has 29 bits: sorts by number, standard before extended.
using DbcMessageKey = std::pair<quint32, bool>;
using DbcMessages = std::map<DbcMessageKey, DbcMessage>;

// The messages of the signals, chosen those with the flag (StreamingClass_DBC_Signal::recordFlag or
// liveFlag). The records stay the caller's.
[[nodiscard]] DbcMessages dbcMessages(const QList<StreamingClass_DBC_Signal *> &signalList,
                                      quint8 flag);

// The bits of the value; more than 64 count as 64.
[[nodiscard]] BitField valueField(const StreamingClass_DBC_Signal &signal);

// How the bits of the value read: "unsigned", "signed", "float" or "double".
[[nodiscard]] QString valueKindText(const StreamingClass_DBC_Signal &signal);

// False where bits of the value are cut or lie beyond the frames of the signal's DLC, in bytes.
[[nodiscard]] bool fitsItsMessage(const StreamingClass_DBC_Signal &signal);

// The bits that select; they read as an unsigned number.
[[nodiscard]] BitField multiplexorField(const StreamingClass_DBC_Signal &multiplexor);

// What the bits of the multiplexor read when a signal of this mux_value is in the frame.
[[nodiscard]] constexpr quint64 multiplexorBits(qint32 mux_value)
{
    return static_cast<quint32>(mux_value);
}

} // namespace can
