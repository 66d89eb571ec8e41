#include "MDF4Conversion/lib_mdf4/mdf4/m4streams.h"
#include "MDF4Conversion/lib_mdf4/mdf4/mdf4file.h"
#include "MDF4Conversion/lib_mdf4/mdf4/transpose.h"

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <random>
#include <vector>

// Rates of the steps that every recorded byte goes through, in MB/s of records:
//
//     bench_mdf4 [BLOCKS]
//
// BLOCKS of 4 MiB are used, 16 unless told otherwise.

namespace {

constexpr std::size_t blockSize = 0x400000;
constexpr std::uint32_t recordSize = 24; // time, two 32-bit signals, four 16-bit signals

using Clock = std::chrono::steady_clock;

void print(const char *what, std::size_t bytes, Clock::duration time)
{
    const double seconds = std::chrono::duration<double>(time).count();
    std::printf("%-28s %8.0f MB/s\n", what, static_cast<double>(bytes) / 1e6 / seconds);
}

// Signals of a drive: a cycle of 10 ms with jitter, slow waves and a little noise.
std::vector<unsigned char> driveRecords(std::size_t count)
{
    std::mt19937 random(1);
    std::vector<unsigned char> bytes(count * recordSize);
    std::uint64_t time_us = 0;
    for (std::size_t i = 0; i < count; ++i) {
        unsigned char *record = bytes.data() + i * recordSize;
        time_us += 10000 + random() % 32;
        std::memcpy(record, &time_us, sizeof time_us);
        for (std::size_t signal = 0; signal < 2; ++signal) {
            const double wave =
                std::sin(static_cast<double>(i) / (1000.0 + 300.0 * static_cast<double>(signal)));
            const auto value =
                static_cast<std::int32_t>(wave * 30000) + static_cast<std::int32_t>(random() % 8);
            std::memcpy(record + 8 + signal * 4, &value, sizeof value);
        }
        for (std::size_t signal = 0; signal < 4; ++signal) {
            const auto value = static_cast<std::uint16_t>(i / (50 * (signal + 1)) + random() % 2);
            std::memcpy(record + 16 + signal * 2, &value, sizeof value);
        }
    }
    return bytes;
}

void benchTranspose(const std::vector<unsigned char> &data)
{
    constexpr int repeats = 10;
    std::vector<unsigned char> out(blockSize);
    mdf4::transpose(data.data(), out.data(), blockSize, recordSize);
    const Clock::time_point begin = Clock::now();
    for (int repeat = 0; repeat < repeats; ++repeat)
        for (std::size_t at = 0; at + blockSize <= data.size(); at += blockSize)
            mdf4::transpose(data.data() + at, out.data(), blockSize, recordSize);
    print("transpose", repeats * (data.size() / blockSize) * blockSize, Clock::now() - begin);
}

void benchDeflate(const std::vector<unsigned char> &data)
{
    mdf4::Deflater deflater;
    std::size_t compressed = 0;
    std::vector<unsigned char> columns(blockSize);
    Clock::duration time{};
    for (std::size_t at = 0; at + blockSize <= data.size(); at += blockSize) {
        mdf4::transpose(data.data() + at, columns.data(), blockSize, recordSize);
        const Clock::time_point begin = Clock::now();
        compressed += deflater.deflateZlib(columns.data(), blockSize).size();
        time += Clock::now() - begin;
    }
    const std::size_t bytes = data.size() / blockSize * blockSize;
    print("deflate alone", bytes, time);
    std::printf("%-28s %8.3f\n", "compressed to",
                static_cast<double>(compressed) / static_cast<double>(bytes));
}

template <class Write>
void benchStream(const char *what, const std::vector<unsigned char> &data, Write writeData)
{
    const std::filesystem::path path = std::filesystem::temp_directory_path() / "bench_mdf4.mf4";
    MDF4File file;
    const Clock::time_point begin = Clock::now();
    if (file.Create(path.u16string())) {
        M4DGBlock *dg = file.addDG();
        M4CGBlock *cg = file.addCG(dg, 1, recordSize);
        cg->addTimeChannel();
        file.noteCycleCount(*cg);
        writeData(file, dg);
        file.addCycles(1, data.size() / recordSize);
    }
    if (!file.close())
        std::fprintf(stderr, "%s\n", file.lastError().c_str());
    print(what, data.size(), Clock::now() - begin);
    file.abort();
}

// Record by record, as they come from a log.
void writeRecords(m4DataStream &stream, const std::vector<unsigned char> &data)
{
    for (std::size_t at = 0; at + recordSize <= data.size(); at += recordSize)
        if (!stream.write(recordSize, data.data() + at))
            return;
    stream.close();
}

} // namespace

int main(int argc, char **argv)
{
    const long blocks = argc > 1 ? std::strtol(argv[1], nullptr, 10) : 16;
    if (blocks < 1) {
        std::fprintf(stderr, "usage: bench_mdf4 [BLOCKS]\n");
        return 64;
    }
    const std::vector<unsigned char> data =
        driveRecords((static_cast<std::size_t>(blocks) * blockSize + recordSize - 1) / recordSize);
    benchTranspose(data);
    benchDeflate(data);
    benchStream("compressing stream", data, [&data](MDF4File &file, M4DGBlock *dg) {
        m4DZStreamEx stream(file, dg, blockSize, recordSize);
        writeRecords(stream, data);
    });
    benchStream("plain stream", data, [&data](MDF4File &file, M4DGBlock *dg) {
        m4DataStreamEx stream(file, dg, blockSize);
        writeRecords(stream, data);
    });
    return 0;
}
