#include "MDF4Conversion/lib_mdf4/mdf4/transpose.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace mdf4 {

namespace {

// A tile is transposed in registers: 8 rows of 8 bytes, one 64-bit word for each row.
constexpr std::size_t tile = 8;
// Rows that are finished for one group of 8 columns before the next: two cache lines of each column.
// Fewer waste lines and pages of the output, more do not fit the first cache for long records.
constexpr std::size_t strip = 128;

// Exchanges the bits of `a` above the mask with those of `b` under it.
template <unsigned shift>
inline void exchange(std::uint64_t &a, std::uint64_t &b, std::uint64_t mask)
{
    const std::uint64_t difference = ((a >> shift) ^ b) & mask;
    a ^= difference << shift;
    b ^= difference;
}

inline std::uint64_t load(const unsigned char *in)
{
    std::uint64_t word;
    std::memcpy(&word, in, sizeof word);
    return word;
}

inline void store(unsigned char *out, std::uint64_t word)
{
    std::memcpy(out, &word, sizeof word);
}

// Written out, since compilers keep a loop over an array of words in memory. Byte 0 of a row is the
// lowest of its word.
inline void transposeTile(const unsigned char *in, std::size_t inStride, unsigned char *out,
                          std::size_t outStride)
{
    std::uint64_t r0 = load(in), r1 = load(in + inStride), r2 = load(in + 2 * inStride),
                  r3 = load(in + 3 * inStride), r4 = load(in + 4 * inStride),
                  r5 = load(in + 5 * inStride), r6 = load(in + 6 * inStride),
                  r7 = load(in + 7 * inStride);

    constexpr std::uint64_t lowHalf = 0x00000000FFFFFFFF; // off-diagonal quarters of the tile
    exchange<32>(r0, r4, lowHalf);
    exchange<32>(r1, r5, lowHalf);
    exchange<32>(r2, r6, lowHalf);
    exchange<32>(r3, r7, lowHalf);
    constexpr std::uint64_t lowPairs = 0x0000FFFF0000FFFF; // of each quarter
    exchange<16>(r0, r2, lowPairs);
    exchange<16>(r1, r3, lowPairs);
    exchange<16>(r4, r6, lowPairs);
    exchange<16>(r5, r7, lowPairs);
    constexpr std::uint64_t lowBytes = 0x00FF00FF00FF00FF; // of each quarter of those
    exchange<8>(r0, r1, lowBytes);
    exchange<8>(r2, r3, lowBytes);
    exchange<8>(r4, r5, lowBytes);
    exchange<8>(r6, r7, lowBytes);

    store(out, r0);
    store(out + outStride, r1);
    store(out + 2 * outStride, r2);
    store(out + 3 * outStride, r3);
    store(out + 4 * outStride, r4);
    store(out + 5 * outStride, r5);
    store(out + 6 * outStride, r6);
    store(out + 7 * outStride, r7);
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
