#include "MDF4Conversion/lib_mdf4/mdf4/deflate.h"

#include <algorithm>
#include <limits>
#include <miniz.h>

namespace mdf4 {

namespace {

constexpr int windowBits = 15; // positive: with the zlib header and checksum
constexpr int memoryLevel = 9;

// miniz counts in unsigned int.
bool fitsMiniz(std::size_t size)
{
    return size <= std::numeric_limits<unsigned>::max();
}

} // namespace

struct Deflater::State
{
    int level = defaultLevel;
};

Deflater::Deflater(int level)
    : m_state(std::make_unique<State>(State{level}))
{}

Deflater::~Deflater() = default;

std::vector<unsigned char> Deflater::deflateZlib(const unsigned char *data, std::size_t size)
{
    const std::size_t bound = std::max<std::size_t>(size + size / 1000 + 12,
                                                    mz_compressBound(static_cast<mz_ulong>(size)));
    if (!fitsMiniz(bound))
        return {};
    unsigned char *output = m_output.reserve(bound);
    mz_stream stream = {};
    stream.next_in = data;
    stream.avail_in = static_cast<unsigned>(size);
    stream.next_out = output;
    stream.avail_out = static_cast<unsigned>(bound);
    if (mz_deflateInit2(&stream, m_state->level, MZ_DEFLATED, windowBits, memoryLevel,
                        MZ_DEFAULT_STRATEGY)
        != MZ_OK)
        return {};
    const int result = mz_deflate(&stream, MZ_FINISH);
    const std::size_t used = bound - stream.avail_out;
    mz_deflateEnd(&stream);
    if (result != MZ_STREAM_END)
        return {};
    return {output, output + used};
}

bool inflateZlib(const unsigned char *data, std::size_t size, unsigned char *out,
                 std::size_t outSize)
{
    if (!fitsMiniz(size) || !fitsMiniz(outSize))
        return false;
    mz_stream stream = {};
    stream.next_in = data;
    stream.avail_in = static_cast<unsigned>(size);
    stream.next_out = out;
    stream.avail_out = static_cast<unsigned>(outSize);
    if (mz_inflateInit2(&stream, windowBits) != MZ_OK)
        return false;
    const int result = mz_inflate(&stream, MZ_FINISH);
    const bool complete = result == MZ_STREAM_END && stream.avail_out == 0;
    mz_inflateEnd(&stream);
    return complete;
}

} // namespace mdf4
