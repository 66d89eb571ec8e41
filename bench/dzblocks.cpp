#include "bench/dzblocks.h"

#include "MDF4Conversion/lib_mdf4/mdf4/deflate.h"

#include <QElapsedTimer>
#include <QFile>
#include <QtEndian>

#include <cstring>

namespace {

constexpr qint64 headerPosition = 64; // behind the id block
constexpr qint64 blockHeaderSize = 24;
constexpr qint64 dzRecordSize = 24;
constexpr qint64 alignment = 8;

} // namespace

DzBlocks readDzBlocks(const QString &path)
{
    DzBlocks result;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return result;
    const qint64 size = file.size();
    const uchar *bytes = file.map(0, size);
    qint64 at = headerPosition;
    while (bytes && at + blockHeaderSize + dzRecordSize <= size) {
        const auto *block = bytes + at;
        const auto length = qFromLittleEndian<qint64>(block + 8);
        if (std::memcmp(block, "##", 2) != 0 || length < blockHeaderSize) {
            at += alignment; // room that a list keeps for more links
            continue;
        }
        if (std::memcmp(block, "##DZ", 4) == 0) {
            const auto original = qFromLittleEndian<quint64>(block + blockHeaderSize + 8);
            const auto compressed = qFromLittleEndian<quint64>(block + blockHeaderSize + 16);
            std::vector<unsigned char> data(original);
            if (mdf4::inflateZlib(block + blockHeaderSize + dzRecordSize, compressed, data.data(),
                                  original)) {
                result.blocks.push_back(std::move(data));
                result.compressedBytes += compressed;
                result.originalBytes += original;
            }
        }
        at += (length + alignment - 1) / alignment * alignment;
    }
    return result;
}

double secondsToDeflate(const DzBlocks &blocks)
{
    mdf4::Deflater deflater;
    QElapsedTimer clock;
    clock.start();
    for (const auto &block : blocks.blocks)
        (void)deflater.deflateZlib(block.data(), block.size());
    return double(clock.nsecsElapsed()) * 1e-9;
}
