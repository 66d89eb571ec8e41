#include "MDF4Conversion/rawlog/drive/framebits.h"

namespace drive {
namespace {

void setBit(QByteArray &frame, int position)
{
    char &byte = frame.data()[position / 8];
    byte = static_cast<char>(byte | 1 << position % 8);
}

// Downwards in a byte, then to the top of the next one.
constexpr int nextMotorola(int position)
{
    return position % 8 == 0 ? position + 15 : position - 1;
}

} // namespace

void putBits(QByteArray &frame, int position, int length, BitOrder order, quint64 value)
{
    for (int i = 0; i < length; ++i) {
        const int valueBit = order == BitOrder::Intel ? i : length - 1 - i;
        if ((value >> valueBit) & 1)
            setBit(frame, position);
        position = order == BitOrder::Intel ? position + 1 : nextMotorola(position);
    }
}

} // namespace drive
