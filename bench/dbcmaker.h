#pragma once

#include <QByteArray>

namespace bench {

// A DBC file of about that many bytes, the same each time: some 45 % of it signal lines, 25 % signal
// comments, 20 % value tables and 10 % attributes; messages of 8 and 64 bytes, 11 and 29 bits,
// every ninth multiplexed.
[[nodiscard]] QByteArray makeDbc(int size);

} // namespace bench
