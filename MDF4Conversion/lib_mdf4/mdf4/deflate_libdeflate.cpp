#include "MDF4Conversion/lib_mdf4/mdf4/deflate.h"

#include <libdeflate.h>

namespace mdf4 {

namespace {

constexpr int libraryDefaultLevel = 6;

struct FreeCompressor
{
    void operator()(libdeflate_compressor *c) const { libdeflate_free_compressor(c); }
};

struct FreeDecompressor
{
    void operator()(libdeflate_decompressor *d) const { libdeflate_free_decompressor(d); }
};

} // namespace

struct Deflater::State
{
    std::unique_ptr<libdeflate_compressor, FreeCompressor> compressor; // null when memory ran out
};

Deflater::Deflater(int level)
    : m_state(std::make_unique<State>())
{
    m_state->compressor.reset(
        libdeflate_alloc_compressor(level == defaultLevel ? libraryDefaultLevel : level));
}

Deflater::~Deflater() = default;

std::vector<unsigned char> Deflater::deflateZlib(const unsigned char *data, std::size_t size)
{
    libdeflate_compressor *compressor = m_state->compressor.get();
    if (compressor == nullptr)
        return {};
    const std::size_t bound = libdeflate_zlib_compress_bound(compressor, size);
    unsigned char *output = m_output.reserve(bound);
    const std::size_t used = libdeflate_zlib_compress(compressor, data, size, output, bound);
    return {output, output + used};
}

bool inflateZlib(const unsigned char *data, std::size_t size, unsigned char *out,
                 std::size_t outSize)
{
    const std::unique_ptr<libdeflate_decompressor, FreeDecompressor> decompressor(
        libdeflate_alloc_decompressor());
    // Without a place for the true size, anything but exactly outSize bytes is an error.
    return decompressor
           && libdeflate_zlib_decompress(decompressor.get(), data, size, out, outSize, nullptr)
                  == LIBDEFLATE_SUCCESS;
}

} // namespace mdf4
