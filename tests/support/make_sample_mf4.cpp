#include "MDF4Conversion/lib_mdf4/mdf4/m4streams.h"
#include "MDF4Conversion/lib_mdf4/mdf4/mdf4file.h"

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <vector>

// Writes a set of MDF4 files into a folder, for a checker to run over:
//
//     make_sample_mf4 FOLDER [--over-4-gib]
//
// With the option there is one more, of 4.3 GiB.

namespace {

constexpr std::uint64_t startTime_ns = 1700000000000000000;
constexpr std::uint32_t timeBytes = 8;

struct SampleGroup
{
    std::uint32_t recordSize; // the time and channels of one byte each
    std::uint64_t count;
    std::uint64_t blockSize; // 0: that of all records
};

// Record number `index`: microseconds, then bytes that change slowly.
void fillRecord(std::vector<unsigned char> &record, std::uint64_t index)
{
    const std::uint64_t time_us = index * 1000;
    std::memcpy(record.data(), &time_us, sizeof time_us);
    for (std::size_t i = sizeof time_us; i < record.size(); ++i)
        record[i] = static_cast<unsigned char>(index / 8 + i - timeBytes);
}

bool writeRecords(MDF4File &file, const M4CGBlock &cg, m4DataStream &stream, std::uint64_t count)
{
    std::vector<unsigned char> record(cg.cg_data_bytes);
    for (std::uint64_t i = 0; i < count; ++i) {
        fillRecord(record, i);
        if (!stream.write(record.size(), record.data()))
            return false;
    }
    file.addCycles(cg.cg_record_id, count);
    return stream.close();
}

// The blocks of a group of one-byte channels; null when writing fails.
M4CGBlock *addGroup(MDF4File &file, M4DGBlock *dg, std::uint32_t recordSize)
{
    M4CGBlock *cg = file.addCG(dg, 1, recordSize);
    if (cg == nullptr || cg->addTimeChannel() == nullptr)
        return nullptr;
    for (std::uint32_t offset = timeBytes; offset < recordSize; ++offset) {
        M4CNBlock *cn = cg->addCN("byte " + std::to_string(offset), CN_T_VALUE, CN_D_UNSIGNED_LE,
                                  offset, 1, 0, 255);
        if (cn == nullptr || !cn->setUnit(""))
            return nullptr;
    }
    file.noteCycleCount(*cg);
    return cg;
}

bool writeGroup(MDF4File &file, const SampleGroup &group)
{
    M4DGBlock *dg = file.addDG();
    const M4CGBlock *cg = addGroup(file, dg, group.recordSize);
    if (cg == nullptr)
        return false;
    const std::uint64_t wholeGroup = m4BlockSize(group.recordSize, group.count);
    m4DZStreamEx stream(file, dg, group.blockSize != 0 ? group.blockSize : wholeGroup,
                        group.recordSize);
    return writeRecords(file, *cg, stream, group.count);
}

bool writePlainGroup(MDF4File &file, const SampleGroup &group)
{
    M4DGBlock *dg = file.addDG();
    const M4CGBlock *cg = addGroup(file, dg, group.recordSize);
    if (cg == nullptr)
        return false;
    m4DataStreamEx stream(file, dg, group.blockSize);
    return writeRecords(file, *cg, stream, group.count);
}

bool writeGroups(MDF4File &file, const std::vector<SampleGroup> &groups)
{
    for (const SampleGroup &group : groups)
        if (!writeGroup(file, group))
            return false;
    return true;
}

bool fewRecords(MDF4File &file)
{
    return writeGroups(file, {{12, 1, 0}, {12, 10, 0}});
}
bool sixBlocks(MDF4File &file)
{
    return writeGroups(file, {{12, 600, 1200}});
}
bool elevenBlocks(MDF4File &file)
{
    return writeGroups(file, {{12, 1100, 1200}});
}
bool recordsAcrossBlocks(MDF4File &file)
{
    return writeGroups(file, {{9, 500, 1000},
                              {11, 500, 1000},
                              {13, 500, 1000},
                              {17, 500, 1000},
                              {33, 500, 1000},
                              {71, 500, 1000},
                              {150, 20, 100}});
}
bool lastBlockShorterThanARecord(MDF4File &file)
{
    return writeGroups(file, {{12, 9, 100}});
}
bool wholeBlocks(MDF4File &file)
{
    return writeGroups(file, {{12, 349526, 0}, {16, 524288, 0}});
}
bool manyGroups(MDF4File &file)
{
    return writeGroups(file, std::vector<SampleGroup>(1600, {12, 3, 0}));
}
bool plainBlocks(MDF4File &file)
{
    return writePlainGroup(file, {12, 700, 1000});
}
bool noGroups(MDF4File &)
{
    return true;
}

// A channel of one byte, raw values 0, 1, 2 ..., with this conversion.
bool addConverted(M4CGBlock &cg, const char *name, M4CCBlock &&cc)
{
    M4CNBlock *cn = cg.addCN(name, CN_T_VALUE, CN_D_UNSIGNED_LE, timeBytes, 1);
    return cn != nullptr && cn->setUnit("°C") && cn->setConversion(cc);
}

bool everyConversion(MDF4File &file)
{
    M4DGBlock *dg = file.addDG();
    M4CGBlock *cg = addGroup(file, dg, timeBytes + 1);
    if (cg == nullptr || !addConverted(*cg, "identity", M4CCIdentity())
        || !addConverted(*cg, "linear", M4CCLinear(-40, 0.5))
        || !addConverted(*cg, "rational", M4CCRational({1, 2, 3, 0, 0, 4}))
        || !addConverted(*cg, "formula", M4CCFormula("X*2+1"))
        || !addConverted(*cg, "interpolated", M4CCN2NInterpol({{0, 0}, {10, 100}, {20, 50}}))
        || !addConverted(*cg, "table", M4CCN2N({{0, 0}, {10, 100}, {20, 50}}))
        || !addConverted(*cg, "text", M4CCN2T({{0, "off"}, {1, "on"}}))
        || !addConverted(*cg, "text or default", M4CCN2T({{0, "off"}}, std::string("else"))))
        return false;
    m4DZStreamEx stream(file, dg, m4BlockSize(timeBytes + 1, 100), timeBytes + 1);
    return writeRecords(file, *cg, stream, 100);
}

bool everyDataType(MDF4File &file)
{
    struct Type
    {
        const char *name;
        std::uint8_t dataType;
        std::uint32_t size;
    };
    const Type types[] = {{"u8", CN_D_UNSIGNED_LE, 1},  {"u16", CN_D_UNSIGNED_LE, 2},
                          {"u32", CN_D_UNSIGNED_LE, 4}, {"u64", CN_D_UNSIGNED_LE, 8},
                          {"i8", CN_D_SIGNED_LE, 1},    {"i16", CN_D_SIGNED_LE, 2},
                          {"i32", CN_D_SIGNED_LE, 4},   {"i64", CN_D_SIGNED_LE, 8},
                          {"f32", CN_D_REAL_LE, 4},     {"f64", CN_D_REAL_LE, 8}};
    std::uint32_t recordSize = timeBytes;
    for (const Type &type : types)
        recordSize += type.size;
    M4DGBlock *dg = file.addDG();
    M4CGBlock *cg = file.addCG(dg, 1, recordSize);
    if (cg == nullptr || cg->addTimeChannel() == nullptr)
        return false;
    std::uint32_t offset = timeBytes;
    for (const Type &type : types) {
        M4CNBlock *cn = cg->addCN(type.name, CN_T_VALUE, type.dataType, offset, type.size);
        if (cn == nullptr || !cn->setUnit("V"))
            return false;
        offset += type.size;
    }
    file.noteCycleCount(*cg);
    m4DZStreamEx stream(file, dg, m4BlockSize(recordSize, 50), recordSize);
    return writeRecords(file, *cg, stream, 50);
}

bool oddTexts(MDF4File &file)
{
    M4DGBlock *dg = file.addDG();
    M4CGBlock *cg = addGroup(file, dg, timeBytes + 1);
    if (cg == nullptr)
        return false;
    for (const char *text : {"Größe 東京 🚗", "<b>&\"'",
                             "Latin-1 \xB0"
                             "C",
                             "\xEF\xBB\xBFmarked", "surrogate \xED\xA0\x80", "tab\tand\nline"}) {
        M4CNBlock *cn = cg->addCN(text, CN_T_VALUE, CN_D_UNSIGNED_LE, timeBytes, 1);
        M4CCN2T cc({{1, text}});
        if (cn == nullptr || !cn->setUnit(text) || !cn->setConversion(cc))
            return false;
    }
    m4DZStreamEx stream(file, dg, m4BlockSize(timeBytes + 1, 10), timeBytes + 1);
    return writeRecords(file, *cg, stream, 10);
}

// A plain group beyond 4 GiB, and compressed ones with all their blocks behind it.
bool over4GiB(MDF4File &file)
{
    constexpr std::uint64_t recordSize = 4096;
    return writePlainGroup(file,
                           {recordSize, (std::uint64_t{43} << 30) / 10 / recordSize, 0x400000})
           && recordsAcrossBlocks(file) && everyConversion(file);
}

struct Sample
{
    const char *name;
    bool (*write)(MDF4File &);
    const char *comment;
};

constexpr Sample samples[] = {
    {"few_records", fewRecords, "one block each"},
    {"six_blocks", sixBlocks, "a second list"},
    {"eleven_blocks", elevenBlocks, "a third list"},
    {"records_across_blocks", recordsAcrossBlocks, "record sizes that do not divide the block"},
    {"last_block_short", lastBlockShorterThanARecord, "the last block is shorter than one record"},
    {"whole_blocks", wholeBlocks, "blocks of 4 MiB"},
    {"many_groups", manyGroups, "1600 groups"},
    {"plain_blocks", plainBlocks, "not compressed"},
    {"no_groups", noGroups, "nothing recorded"},
    {"conversions", everyConversion, "every conversion"},
    {"data_types", everyDataType, "every data type"},
    {"texts", oddTexts, "markup <b>&\"' and what is no UTF-8: \xFF\x01"},
};

constexpr Sample over4GiBSample = {"over_4_gib", over4GiB, "positions above 32 bits"};

bool make(const Sample &sample, const std::filesystem::path &folder)
{
    MDF4File file;
    const std::filesystem::path path = folder / (std::string(sample.name) + ".mf4");
    const bool written =
        file.Create(path.u16string())
        && file.addFH(startTime_ns, mdf4::fileHistoryComment({"make_sample_mf4", "test", "1"}))
               != nullptr
        && file.setComment(mdf4::headerComment({sample.comment, "author", "", "", "---"}))
        && file.setStartTime(startTime_ns) && sample.write(file);
    if (!file.close() || !written) {
        std::fprintf(stderr, "%s: %s\n", sample.name, file.lastError().c_str());
        file.abort();
        return false;
    }
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 2 || argc > 3 || (argc == 3 && std::strcmp(argv[2], "--over-4-gib") != 0)) {
        std::fprintf(stderr, "usage: make_sample_mf4 FOLDER [--over-4-gib]\n");
        return 64;
    }
    bool ok = true;
    for (const Sample &sample : samples)
        ok = make(sample, argv[1]) && ok;
    if (argc == 3)
        ok = make(over4GiBSample, argv[1]) && ok;
    return ok ? 0 : 1;
}
