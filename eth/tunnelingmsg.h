#pragma once

#include <QByteArray>
#include <QList>

#include <iosfwd>

// One tunneled message as its bytes, all fields big-endian:
//   0 uint64 timestamp, 8 int8 channel, 9 uint8 direction,
//   CAN: 10 uint32 identifier, 14 uint8 data length (at most 64), 15 data
//   LIN: 10 uint8 identifier, 11 uint8 data length (at most 8), 12 data
class TunnelingMsg
{
public:
    explicit TunnelingMsg(const QByteArray &bytes)
        : m_bytes(bytes)
    {}
    virtual ~TunnelingMsg() = default;

    // The data bytes; they end with the message.
    [[nodiscard]] virtual const char *payload() const = 0;

    [[nodiscard]] const QByteArray &bytes() const { return m_bytes; }
    [[nodiscard]] int channel() const { return static_cast<signed char>(m_bytes.at(8)); }

private:
    const QByteArray m_bytes;
};

class TunnelingMsgCAN : public TunnelingMsg
{
public:
    static constexpr int headSize = 15;

    using TunnelingMsg::TunnelingMsg;
    [[nodiscard]] const char *payload() const override { return bytes().constData() + headSize; }
};

class TunnelingMsgLIN : public TunnelingMsg
{
public:
    static constexpr int headSize = 12;

    using TunnelingMsg::TunnelingMsg;
    [[nodiscard]] const char *payload() const override { return bytes().constData() + headSize; }
};

// Reads blocks of tunneled messages.
class TunnelingMsgCreator
{
public:
    // The messages of an RLD_ETH entry of sub 2, which the caller owns. The entry is whole. At the
    // first fault the rest of the block is left out and, if a stream is given, a warning is
    // written. A last message that begins in the last 12 bytes of the entry is not read: the logger
    // fills them up.
    [[nodiscard]] static QList<TunnelingMsg *> newTunnelingMessage(const QByteArray &entry,
                                                                   std::ostream *warnings);
};
