#include "can/dbcmessages.h"

#include <algorithm>

namespace can {
namespace {

using Signal = StreamingClass_DBC_Signal;

constexpr quint16 maxBits = 64;

ExtractedValue::Kind valueKind(const Signal &signal)
{
    switch (signal.is_signed) {
    case 0:
        return ExtractedValue::Unsigned;
    case 2:
        return ExtractedValue::Float;
    case 3:
        return ExtractedValue::Double;
    default:
        return ExtractedValue::Signed;
    }
}

BitField fieldOf(const Signal &signal, ExtractedValue::Kind kind)
{
    return {signal.start_bit, static_cast<quint8>(std::min(signal.bit_length, maxBits)),
            signal.little_endian ? BitOrder::Intel : BitOrder::Motorola, kind};
}

} // namespace

bool DbcMessage::hasMultiplexed() const
{
    return std::any_of(chosen.begin(), chosen.end(),
                       [](const Signal *signal) { return signal->mux_kind == MultiplexedSignal; });
}

DbcMessages dbcMessages(const QList<Signal *> &signalList, quint8 flag)
{
    DbcMessages messages;
    for (Signal *signal : signalList) {
        DbcMessage &message = messages[{frameIdentifier(*signal), signal->extended_id != 0}];
        if (signal->mux_kind == MultiplexorSignal)
            message.multiplexors.push_back(signal);
        // Without multiplexed signals beside it a multiplexor is a value like any other.
        if ((signal->selection_flags & flag) != 0)
            message.chosen.push_back(signal);
    }
    for (auto &[key, message] : messages) {
        if (!message.hasMultiplexed())
            continue;
        auto &chosen = message.chosen;
        chosen.erase(std::remove_if(chosen.begin(), chosen.end(),
                                    [](const Signal *signal) {
                                        return signal->mux_kind == MultiplexorSignal;
                                    }),
                     chosen.end());
    }
    return messages;
}

BitField valueField(const Signal &signal)
{
    return fieldOf(signal, valueKind(signal));
}

QString valueKindText(const Signal &signal)
{
    switch (valueKind(signal)) {
    case ExtractedValue::Unsigned:
        return QStringLiteral("unsigned");
    case ExtractedValue::Signed:
        return QStringLiteral("signed");
    case ExtractedValue::Float:
        return QStringLiteral("float");
    case ExtractedValue::Double:
        return QStringLiteral("double");
    }
    return {};
}

bool fitsItsMessage(const Signal &signal)
{
    return signal.bit_length <= maxBits && valueField(signal).frameBytes() <= signal.dlc;
}

BitField multiplexorField(const Signal &multiplexor)
{
    return fieldOf(multiplexor, ExtractedValue::Unsigned);
}

} // namespace can
