#pragma once

#include "config/record/ownedlist.h"
#include "config/streamingclass_dbc_signal.h"

#include <memory>

// Signals as a parser gives them, for tests.
namespace sample {

using SignalList = OwnedList<StreamingClass_DBC_Signal>;

// An unsigned Intel signal of 16 bits.
[[nodiscard]] inline std::unique_ptr<StreamingClass_DBC_Signal>
newSignal(const QString &name, quint32 messageId = 0x123, quint8 flags = 0)
{
    auto signal = std::make_unique<StreamingClass_DBC_Signal>();
    signal->name = name;
    signal->unit = QStringLiteral("rpm");
    signal->bit_length = 16;
    signal->little_endian = 1;
    signal->factor = 0.25;
    signal->maximum = 16'000;
    signal->selection_flags = flags;
    signal->dlc = 8;
    signal->msg_id = messageId;
    return signal;
}

inline StreamingClass_DBC_Signal &addSignal(SignalList &list, const char *name,
                                            quint32 messageId = 0x123, quint8 flags = 0)
{
    return *list.append(newSignal(QString::fromLatin1(name), messageId, flags));
}

inline StreamingClass_DBC_Signal &addMultiplexor(SignalList &list, const char *name,
                                                 quint32 messageId = 0x123)
{
    StreamingClass_DBC_Signal &signal = addSignal(list, name, messageId);
    signal.mux_kind = MultiplexorSignal;
    return signal;
}

inline StreamingClass_DBC_Signal &addMultiplexed(SignalList &list, const char *name, qint32 value,
                                                 quint32 messageId = 0x123, quint8 flags = 0)
{
    StreamingClass_DBC_Signal &signal = addSignal(list, name, messageId, flags);
    signal.mux_kind = MultiplexedSignal;
    signal.mux_value = value;
    return signal;
}

// Gives the records away, as a parser does.
[[nodiscard]] inline QList<StreamingClass_DBC_Signal *> released(SignalList &list)
{
    QList<StreamingClass_DBC_Signal *> records;
    while (!list.isEmpty())
        records.append(list.takeAt(0).release());
    return records;
}

} // namespace sample
