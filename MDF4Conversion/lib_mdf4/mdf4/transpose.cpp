#include "MDF4Conversion/lib_mdf4/mdf4/transpose.h"

#include "MDF4Conversion/lib_mdf4/mdf4/m4records.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace mdf4 {

namespace {

// A tile is transposed in registers: 8 rows of 8 bytes, one 64-bit word for each row.
constexpr std::size_t tile = 8;
// Rows that are finished for one group of 8 columns before the next: one cache line of each column.
constexpr std::size_t strip = 64;

// Exchanges the bits of a above the mask with those of b under it.
template <unsigned shift>
inline void exchange(std::uint64_t &a, std::uint64_t &b, std::uint64_t mask)
{
    const std::uint64_t difference = ((a >> shift) ^ b) & mask;
    a ^= difference << shift;
    b ^= difference;
}

inline void transposeTile(const unsigned char *in, std::size_t inStride, unsigned char *out,
                          std::size_t outStride)
{
    std::uint64_t row[tile];
    for (std::size_t i = 0; i < tile; ++i)
        std::memcpy(&row[i], in + i * inStride, tile);
    // Swap the off-diagonal quarters, then their quarters, then theirs. Byte 0 of a row is the lowest.
    for (std::size_t i = 0; i < 4; ++i)
        exchange<32>(row[i], row[i + 4], 0x00000000FFFFFFFF);
    for (std::size_t i : {0, 1, 4, 5})
        exchange<16>(row[i], row[i + 2], 0x0000FFFF0000FFFF);
    for (std::size_t i : {0, 2, 4, 6})
        exchange<8>(row[i], row[i + 1], 0x00FF00FF00FF00FF);
    for (std::size_t i = 0; i < tile; ++i)
        std::memcpy(out + i * outStride, &row[i], tile);
}

// Where the tile that begins at or behind `start` has to begin to end within `length`: the last one
// goes over bytes that are done already, which writes the same values again.
std::size_t within(std::size_t start, std::size_t length)
{
    return std::min(start, length - tile);
}

void transposeTiles(const unsigned char *in, unsigned char *out, std::size_t rows,
                    std::size_t columns)
{
    for (std::size_t firstRow = 0; firstRow < rows; firstRow += strip) {
        const std::size_t endRow = std::min(firstRow + strip, rows);
        for (std::size_t c = 0; c < columns; c += tile) {
            const std::size_t column = within(c, columns);
            for (std::size_t r = firstRow; r < endRow; r += tile) {
                const std::size_t row = within(r, rows);
                transposeTile(in + row * columns + column, columns, out + column * rows + row,
                              rows);
            }
        }
    }
}

void transposeBytes(const unsigned char *in, unsigned char *out, std::size_t rows,
                    std::size_t columns)
{
    for (std::size_t r = 0; r < rows; ++r)
        for (std::size_t c = 0; c < columns; ++c)
            out[c * rows + r] = in[r * columns + c];
}

} // namespace

void transpose(const unsigned char *in, unsigned char *out, std::size_t size, std::size_t columns)
{
    const std::size_t rows = columns > 0 ? size / columns : 0;
    if (rows >= tile && columns >= tile)
        transposeTiles(in, out, rows, columns);
    else
        transposeBytes(in, out, rows, columns);
    std::copy(in + rows * columns, in + size, out + rows * columns);
}

} // namespace mdf4
