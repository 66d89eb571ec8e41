#pragma once

#include "MDF4Conversion/lib_mdf4/mdf4/deflate.h"

#include <cstddef>
#include <cstdint>
#include <vector>

// One data block, transposed and deflated, ready to be written.
struct CompressedBlock
{
    std::vector<unsigned char> data; // zlib stream; empty when compressing failed
    std::uint64_t originalSize = 0;  // bytes before compression

    bool ok() const { return !data.empty(); }
};

// Transposes `size` bytes of records and deflates them. Touches no file and nothing but its
// arguments, so that several blocks can be compressed at a time, each thread with its own deflater.
CompressedBlock compressBlock(mdf4::Deflater &deflater, const unsigned char *data, std::size_t size,
                              std::uint32_t recordSize);
