#include "eth/tunnelingmsg.h"

#include <ostream>

namespace {

constexpr int areaStart = 20; // of an entry: what positions in a block count from
constexpr int firstPosition = 8;
constexpr int unreadTail = 12;
constexpr int minMessageSize = 11;
constexpr int channelAt = 8;

// How the messages of a bus are laid out.
struct BusLayout
{
    int headSize;
    int maxDataLength;
    bool isCan;
};

constexpr BusLayout can{TunnelingMsgCAN::headSize, 64, true};
constexpr BusLayout lin{TunnelingMsgLIN::headSize, 8, false};

const BusLayout *busOf(int channel)
{
    if (channel >= 0 && channel <= 3)
        return &can;
    return channel >= 4 && channel <= 6 ? &lin : nullptr;
}

TunnelingMsg *newMessage(const BusLayout &bus, const QByteArray &bytes)
{
    if (bus.isCan)
        return new TunnelingMsgCAN(bytes);
    return new TunnelingMsgLIN(bytes);
}

void warn(std::ostream *warnings, bool missingHead, bool wrongType, bool badLength, int remaining)
{
    if (!warnings)
        return;
    *warnings << "TunnelingMsgCreator::newTunnelingMessage() warning! " << missingHead << ' '
              << wrongType << ' ' << badLength << '\n'
              << "Err bytesConsumed: " << remaining << '\n';
}

} // namespace

QList<TunnelingMsg *> TunnelingMsgCreator::newTunnelingMessage(const QByteArray &entry,
                                                               std::ostream *warnings)
{
    QList<TunnelingMsg *> messages;
    int at = areaStart + firstPosition;
    const int end = entry.size() - unreadTail;
    while (at < end) {
        const int remaining = entry.size() - at;
        if (remaining < minMessageSize) {
            warn(warnings, true, false, false, remaining);
            break;
        }
        const int channel = static_cast<signed char>(entry.at(at + channelAt));
        const BusLayout *bus = busOf(channel);
        if (!bus) {
            if (warnings)
                *warnings << "TunnelingMsgCreator::newTunnelingMessage() unknown type: " << channel
                          << '\n';
            warn(warnings, false, true, false, remaining);
            break;
        }
        const int lengthAt = at + bus->headSize - 1;
        const int dataLength =
            lengthAt < entry.size() ? static_cast<unsigned char>(entry.at(lengthAt)) : -1;
        const int size = bus->headSize + dataLength;
        if (dataLength < 0 || dataLength > bus->maxDataLength || remaining < size) {
            warn(warnings, false, false, true, remaining);
            break;
        }
        messages.append(newMessage(*bus, entry.mid(at, size)));
        at += size;
    }
    return messages;
}
