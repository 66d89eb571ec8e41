#pragma once

#include <QString>

#include <vector>

// The data blocks of an MDF4 file, inflated but still transposed: what deflate was given.
struct DzBlocks
{
    std::vector<std::vector<unsigned char>> blocks;
    quint64 compressedBytes = 0;
    quint64 originalBytes = 0;
};

// Walks the blocks of a file written by this project, one after the other.
[[nodiscard]] DzBlocks readDzBlocks(const QString &path);

// Deflates all blocks on this thread; gives the seconds.
[[nodiscard]] double secondsToDeflate(const DzBlocks &blocks);
