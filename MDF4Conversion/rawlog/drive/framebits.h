#pragma once

#include <QByteArray>

namespace drive {

// Puts the low `length` bits of the value, 1 to 64, at a position in the numbering of DBC files:
// that of the least significant bit for Intel order, of the most significant for Motorola. All bits
// lie inside the frame.
enum class BitOrder { Intel, Motorola };
void putBits(QByteArray &frame, int position, int length, BitOrder order, quint64 value);

} // namespace drive
