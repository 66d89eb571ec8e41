#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <iosfwd>
#include <memory>
#include <optional>
#include <string>
#include <vector>

// A reader of sorted MDF 4.10 files for tests. Written from the standard, on its own: it shares
// nothing with the writer but the inflate call, so that it can judge it.
namespace mdf4reader {

struct Conversion
{
    int type = -1; // cc_type; -1: no conversion block
    std::vector<double> values;
    std::vector<std::optional<std::string>> texts; // empty where the link is null
};

struct Channel
{
    std::string name;
    std::string unit;
    unsigned type = 0; // cn_type, 2 for the master
    unsigned syncType = 0;
    unsigned dataType = 0; // cn_data_type
    unsigned bitOffset = 0;
    std::uint32_t byteOffset = 0;
    std::uint32_t bitCount = 0;
    std::uint32_t flags = 0;
    double rangeMin = 0;
    double rangeMax = 0;
    Conversion conversion;
};

struct DataBlock
{
    std::uint64_t position = 0;
    std::string id;                   // "DT" or "DZ"
    std::uint64_t originalLength = 0; // bytes of records in it
    std::uint64_t storedLength = 0;
};

struct Group
{
    std::uint64_t recordId = 0;
    std::uint64_t cycleCount = 0;
    std::uint32_t dataBytes = 0; // of one record
    std::vector<Channel> channels;
    std::uint64_t equalLength = 0;
    std::vector<std::uint32_t> listCounts; // dl_count of each list of the chain
    std::vector<DataBlock> blocks;

    const Channel *channel(const std::string &name) const; // null if there is none
};

struct File
{
    std::string versionText;
    std::string program;
    unsigned version = 0;
    std::uint64_t startTime_ns = 0;
    std::string headerComment;
    unsigned fileHistories = 0;
    std::uint64_t fileHistoryTime_ns = 0; // of the first one
    std::string fileHistoryComment;
    std::vector<Group> groups;
};

class Reader
{
public:
    Reader();
    ~Reader();

    // Read everything but the records. False, with error() saying why, for what is no such file.
    bool open(const std::filesystem::path &path);
    bool openBytes(const std::vector<unsigned char> &bytes);

    const File &file() const { return m_file; }
    const std::string &error() const { return m_error; }

    // The records of one group, one behind the other, as they were before compression; empty, with
    // error() set, when a block is damaged.
    std::vector<unsigned char> records(const Group &group);

private:
    struct Block;

    bool readAll();
    bool readGroup(const Block &dg);
    bool readChannels(std::uint64_t position, Group &group);
    bool readConversion(std::uint64_t position, Conversion &conversion);
    bool readData(std::uint64_t position, Group &group);
    bool readLists(std::uint64_t position, Group &group);
    bool readDataBlock(std::uint64_t position, Group &group);
    bool appendRecords(const DataBlock &block, std::uint32_t recordSize,
                       std::vector<unsigned char> &out);
    bool text(std::uint64_t position, std::string &out);
    // With `wholeBody` unset only the first bytes of the block's data are read.
    bool block(std::uint64_t position, Block &out, bool wholeBody = true);
    bool bytes(std::uint64_t position, std::uint64_t size, std::vector<unsigned char> &out);
    bool fail(const std::string &text);

    std::unique_ptr<std::istream> m_stream;
    std::uint64_t m_size = 0;
    File m_file;
    std::string m_error;
};

// The bits of one channel in one record, sign extended for signed types.
std::uint64_t rawBits(const Channel &channel, const unsigned char *record);
// The raw value as a number.
double rawValue(const Channel &channel, const unsigned char *record);
// The physical value; none for a text or for a formula other than X.
std::optional<double> physicalValue(const Channel &channel, const unsigned char *record);
// The text of a value-to-text conversion; empty for a value without one.
std::string textValue(const Channel &channel, const unsigned char *record);

} // namespace mdf4reader
