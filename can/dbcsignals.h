#pragma once

#include "config/record/ownedlist.h"
#include "config/streamingclass_dbc_signal.h"

#include <QList>
#include <QString>

// What selecting and loading signals of a DBC file means for their records.
namespace can {

// Tells signals apart: two records with equal keys are the same signal.
struct SignalKey
{
    quint32 msg_id = 0;
    bool extended = false;
    QString name;

    friend bool operator==(const SignalKey &a, const SignalKey &b)
    {
        return a.msg_id == b.msg_id && a.extended == b.extended && a.name == b.name;
    }
    friend uint qHash(const SignalKey &key, uint seed = 0)
    {
        return ::qHash(key.name, seed) ^ (key.msg_id * 2 + uint(key.extended));
    }
};
[[nodiscard]] SignalKey keyOf(const StreamingClass_DBC_Signal &signal);

// The same signal of the same message, whatever its parameters.
[[nodiscard]] bool isSameSignal(const StreamingClass_DBC_Signal &a,
                                const StreamingClass_DBC_Signal &b);
// The same in all that is streamed but the selection flags.
[[nodiscard]] bool isIdenticalSignal(const StreamingClass_DBC_Signal &a,
                                     const StreamingClass_DBC_Signal &b);

struct SignalsToLoad
{
    QList<StreamingClass_DBC_Signal *> records; // those of the list that was given, each once
    int selected = 0;                           // how many of them the user has ticked
    QString error;                              // empty: all is well
};
// The signals that are ticked for recording, and the multiplexor of each message of which a
// multiplexed signal is ticked: it can't be decoded otherwise. With an error the list is not whole.
[[nodiscard]] SignalsToLoad signalsToLoad(const QList<StreamingClass_DBC_Signal *> &signalList);

// Appends the fresh records to the channel, which takes them over. A record of the channel that is
// the same signal gives its selection flags to the fresh one and is freed.
void insertSignals(OwnedList<StreamingClass_DBC_Signal> &channel,
                   const QList<StreamingClass_DBC_Signal *> &fresh);

// Takes the records out of the channel. A multiplexor that no multiplexed signal of its message is
// left for goes with them: it is shown nowhere and would keep a filter.
void removeSignals(OwnedList<StreamingClass_DBC_Signal> &channel,
                   const QList<StreamingClass_DBC_Signal *> &unwanted);

} // namespace can
