#include "MDF4Conversion/lib_mdf4/mdf4/compressedblock.h"

#include "MDF4Conversion/lib_mdf4/mdf4/transpose.h"

CompressedBlock compressBlock(mdf4::Deflater &deflater, const unsigned char *data, std::size_t size,
                              std::uint32_t recordSize)
{
    unsigned char *columns = deflater.scratch(size);
    mdf4::transpose(data, columns, size, recordSize);
    return {deflater.deflateZlib(columns, size), size};
}
