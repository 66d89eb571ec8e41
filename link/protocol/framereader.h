#pragma once

#include <QByteArray>
#include <QList>

namespace protocol {

// Finds the entries in the stream of the data socket. An entry is AA 55, a uint16 length
// (little-endian), and as many bytes. After damage the next AA 55 starts anew.
class FrameReader
{
public:
    // All entries that these bytes complete, each from its sync word to its end.
    [[nodiscard]] QList<QByteArray> feed(const QByteArray &bytes);

    // Forgets the entry in progress.
    void reset();

private:
    enum class State { Sync1, Sync2, LengthLow, LengthHigh, Body };

    void takeHeadByte(char byte);

    State m_state = State::Sync1;
    int m_missing = 0; // bytes of the body that have not arrived
    QByteArray m_frame;
};

} // namespace protocol
