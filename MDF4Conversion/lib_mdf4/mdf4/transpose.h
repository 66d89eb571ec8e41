#pragma once

#include <cstddef>

namespace mdf4 {

// Writes records of `columns` bytes column by column: first byte number 0 of every whole record, then
// byte number 1, and so on. Bytes behind the last whole record keep their place. `in` and `out` hold
// `size` bytes each and must not overlap.
void transpose(const unsigned char *in, unsigned char *out, std::size_t size, std::size_t columns);

} // namespace mdf4
