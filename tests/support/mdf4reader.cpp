#include "tests/support/mdf4reader.h"

#include "MDF4Conversion/lib_mdf4/mdf4/deflate.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <fstream>
#include <sstream>

namespace mdf4reader {

namespace {

constexpr std::uint64_t largestBlock = 1U << 26; // nothing a test writes is longer
constexpr std::size_t headerSize = 24;

template <class T>
T number(const std::vector<unsigned char> &bytes, std::size_t offset)
{
    T value{};
    if (offset + sizeof value <= bytes.size())
        std::memcpy(&value, bytes.data() + offset, sizeof value);
    return value;
}

std::string trimmed(const std::vector<unsigned char> &bytes, std::size_t offset, std::size_t size)
{
    std::string text(reinterpret_cast<const char *>(bytes.data()) + offset, size);
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

} // namespace

struct Reader::Block
{
    std::uint64_t position = 0;
    std::string id;
    std::vector<std::uint64_t> links;
    std::uint64_t bodyPosition = 0;
    std::uint64_t bodySize = 0;
    std::vector<unsigned char> body;

    std::uint64_t link(std::size_t i) const { return i < links.size() ? links[i] : 0; }
};

const Channel *Group::channel(const std::string &name) const
{
    const auto found = std::find_if(channels.begin(), channels.end(),
                                    [&name](const Channel &c) { return c.name == name; });
    return found != channels.end() ? &*found : nullptr;
}

Reader::Reader() = default;
Reader::~Reader() = default;

bool Reader::open(const std::filesystem::path &path)
{
    m_stream = std::make_unique<std::ifstream>(path, std::ios::binary);
    return readAll();
}

bool Reader::openBytes(const std::vector<unsigned char> &bytes)
{
    m_stream = std::make_unique<std::istringstream>(std::string(bytes.begin(), bytes.end()),
                                                    std::ios::binary);
    return readAll();
}

bool Reader::fail(const std::string &text)
{
    if (m_error.empty())
        m_error = text;
    return false;
}

bool Reader::bytes(std::uint64_t position, std::uint64_t size, std::vector<unsigned char> &out)
{
    if (position > m_size || size > m_size - position || size > largestBlock)
        return fail("bytes outside the file");
    out.resize(static_cast<std::size_t>(size));
    m_stream->clear();
    m_stream->seekg(static_cast<std::streamoff>(position));
    m_stream->read(reinterpret_cast<char *>(out.data()), static_cast<std::streamsize>(size));
    return m_stream->good() || fail("cannot read");
}

bool Reader::block(std::uint64_t position, Block &out, bool wholeBody)
{
    constexpr std::uint64_t start = 32; // of the body, enough for the record of a data block
    std::vector<unsigned char> header;
    if (!bytes(position, headerSize, header))
        return false;
    if (position % 8 != 0 || header[0] != '#' || header[1] != '#')
        return fail("no block at " + std::to_string(position));
    const auto length = number<std::uint64_t>(header, 8);
    const auto linkCount = number<std::uint64_t>(header, 16);
    if (length < headerSize || linkCount > (length - headerSize) / 8 || length > m_size - position)
        return fail("lengths do not match at " + std::to_string(position));
    std::vector<unsigned char> links;
    if (!bytes(position + headerSize, linkCount * 8, links))
        return false;
    out.position = position;
    out.id = trimmed(header, 2, 2);
    out.links.clear();
    for (std::size_t i = 0; i < linkCount; ++i)
        out.links.push_back(number<std::uint64_t>(links, i * 8));
    out.bodyPosition = position + headerSize + linkCount * 8;
    out.bodySize = length - headerSize - linkCount * 8;
    return bytes(out.bodyPosition, wholeBody ? out.bodySize : std::min(out.bodySize, start),
                 out.body);
}

bool Reader::text(std::uint64_t position, std::string &out)
{
    out.clear();
    if (position == 0)
        return true;
    Block b;
    if (!block(position, b))
        return false;
    if (b.id != "TX" && b.id != "MD")
        return fail("a text is a " + b.id);
    const auto end = std::find(b.body.begin(), b.body.end(), '\0');
    out.assign(b.body.begin(), end);
    return end != b.body.end() || fail("a text has no end");
}

bool Reader::readAll()
{
    m_file = {};
    m_error.clear();
    m_stream->seekg(0, std::ios::end);
    const auto size = m_stream->tellg();
    if (size < 0)
        return fail("cannot open");
    m_size = static_cast<std::uint64_t>(size);
    std::vector<unsigned char> id;
    if (!bytes(0, 64, id))
        return false;
    if (trimmed(id, 0, 8) != "MDF")
        return fail("no MDF file");
    m_file.versionText = trimmed(id, 8, 8);
    m_file.program = trimmed(id, 16, 8);
    m_file.version = number<std::uint16_t>(id, 28);

    Block hd;
    if (!block(64, hd))
        return false;
    if (hd.id != "HD" || hd.links.size() != 6 || hd.bodySize != 32)
        return fail("no header");
    m_file.startTime_ns = number<std::uint64_t>(hd.body, 0);
    if (!text(hd.link(5), m_file.headerComment))
        return false;
    for (std::uint64_t next = hd.link(1); next != 0; ++m_file.fileHistories) {
        Block fh;
        if (!block(next, fh))
            return false;
        if (m_file.fileHistories == 0) {
            m_file.fileHistoryTime_ns = number<std::uint64_t>(fh.body, 0);
            if (!text(fh.link(1), m_file.fileHistoryComment))
                return false;
        }
        next = fh.link(0);
    }
    for (std::uint64_t next = hd.link(0); next != 0;) {
        Block dg;
        if (!block(next, dg) || !readGroup(dg))
            return false;
        next = dg.link(0);
    }
    return true;
}

bool Reader::readGroup(const Block &dg)
{
    Block cg;
    if (dg.id != "DG" || !block(dg.link(1), cg) || cg.id != "CG" || cg.bodySize != 32)
        return fail("a group is broken");
    if (cg.link(0) != 0 || dg.body[0] != 0)
        return fail("an unsorted group");
    Group group;
    group.recordId = number<std::uint64_t>(cg.body, 0);
    group.cycleCount = number<std::uint64_t>(cg.body, 8);
    group.dataBytes = number<std::uint32_t>(cg.body, 24) + number<std::uint32_t>(cg.body, 28);
    if (!readChannels(cg.link(1), group) || !readData(dg.link(2), group))
        return false;
    m_file.groups.push_back(std::move(group));
    return true;
}

bool Reader::readChannels(std::uint64_t position, Group &group)
{
    while (position != 0) {
        Block cn;
        if (!block(position, cn))
            return false;
        if (cn.id != "CN" || cn.links.size() != 8 || cn.bodySize != 72)
            return fail("a channel is broken");
        Channel c;
        c.type = cn.body[0];
        c.syncType = cn.body[1];
        c.dataType = cn.body[2];
        c.bitOffset = cn.body[3];
        c.byteOffset = number<std::uint32_t>(cn.body, 4);
        c.bitCount = number<std::uint32_t>(cn.body, 8);
        c.flags = number<std::uint32_t>(cn.body, 12);
        c.rangeMin = number<double>(cn.body, 24);
        c.rangeMax = number<double>(cn.body, 32);
        const std::uint64_t bitEnd = std::uint64_t{c.byteOffset} * 8 + c.bitOffset + c.bitCount;
        if (c.bitCount == 0 || c.bitCount > 64 || bitEnd > std::uint64_t{group.dataBytes} * 8)
            return fail("a channel lies outside its record");
        if (!text(cn.link(2), c.name) || !text(cn.link(6), c.unit)
            || !readConversion(cn.link(4), c.conversion))
            return false;
        group.channels.push_back(std::move(c));
        position = cn.link(0);
    }
    return true;
}

bool Reader::readConversion(std::uint64_t position, Conversion &conversion)
{
    if (position == 0)
        return true;
    Block cc;
    if (!block(position, cc))
        return false;
    const std::size_t refCount = number<std::uint16_t>(cc.body, 4);
    const std::size_t valueCount = number<std::uint16_t>(cc.body, 6);
    if (cc.id != "CC" || cc.links.size() != 4 + refCount || cc.bodySize != 24 + valueCount * 8)
        return fail("a conversion is broken");
    conversion.type = cc.body[0];
    for (std::size_t i = 0; i < valueCount; ++i)
        conversion.values.push_back(number<double>(cc.body, 24 + i * 8));
    for (std::size_t i = 0; i < refCount; ++i) {
        std::optional<std::string> reference;
        if (cc.link(4 + i) != 0 && !text(cc.link(4 + i), reference.emplace()))
            return false;
        conversion.texts.push_back(std::move(reference));
    }
    return true;
}

bool Reader::readData(std::uint64_t position, Group &group)
{
    if (position == 0)
        return true;
    Block b;
    if (!block(position, b, false))
        return false;
    if (b.id == "HL")
        return readLists(b.link(0), group);
    return b.id == "DL" ? readLists(position, group) : readDataBlock(position, group);
}

bool Reader::readLists(std::uint64_t position, Group &group)
{
    while (position != 0) {
        Block dl;
        if (!block(position, dl))
            return false;
        const auto count = number<std::uint32_t>(dl.body, 4);
        if (dl.id != "DL" || dl.links.size() != std::size_t{1} + count || dl.bodySize != 16)
            return fail("a list is broken");
        group.listCounts.push_back(count);
        group.equalLength = number<std::uint64_t>(dl.body, 8);
        for (std::size_t i = 1; i < dl.links.size(); ++i)
            if (!readDataBlock(dl.links[i], group))
                return false;
        position = dl.link(0);
    }
    return true;
}

bool Reader::readDataBlock(std::uint64_t position, Group &group)
{
    Block b;
    if (!block(position, b, false))
        return false;
    if (b.id != "DT" && b.id != "DZ")
        return fail("a data block is a " + b.id);
    const bool compressed = b.id == "DZ";
    group.blocks.push_back({position, b.id,
                            compressed ? number<std::uint64_t>(b.body, 8) : b.bodySize,
                            compressed ? number<std::uint64_t>(b.body, 16) : b.bodySize});
    return true;
}

std::vector<unsigned char> Reader::records(const Group &group)
{
    std::vector<unsigned char> out;
    for (const DataBlock &b : group.blocks)
        if (!appendRecords(b, group.dataBytes, out))
            return {};
    if (out.size() != group.cycleCount * group.dataBytes) {
        fail("records and their count differ");
        return {};
    }
    return out;
}

bool Reader::appendRecords(const DataBlock &data, std::uint32_t recordSize,
                           std::vector<unsigned char> &out)
{
    Block b;
    if (!block(data.position, b))
        return false;
    if (data.id == "DT") {
        out.insert(out.end(), b.body.begin(), b.body.end());
        return true;
    }
    const unsigned zipType = number<std::uint8_t>(b.body, 2);
    const std::size_t columns = number<std::uint32_t>(b.body, 4);
    if (data.originalLength > largestBlock || data.storedLength != b.bodySize - 24 || zipType != 1
        || columns != recordSize || columns == 0)
        return fail("a compressed block is broken");
    std::vector<unsigned char> packed(static_cast<std::size_t>(data.originalLength));
    if (!mdf4::inflateZlib(b.body.data() + 24, b.body.size() - 24, packed.data(), packed.size()))
        return fail("a block cannot be inflated");
    const std::size_t rows = packed.size() / columns;
    for (std::size_t row = 0; row < rows; ++row)
        for (std::size_t column = 0; column < columns; ++column)
            out.push_back(packed[column * rows + row]);
    out.insert(out.end(), packed.begin() + static_cast<std::ptrdiff_t>(rows * columns),
               packed.end());
    return true;
}

std::uint64_t rawBits(const Channel &channel, const unsigned char *record)
{
    const std::size_t size = (channel.bitOffset + channel.bitCount + 7) / 8;
    std::uint64_t bits = 0;
    std::memcpy(&bits, record + channel.byteOffset, std::min<std::size_t>(size, sizeof bits));
    bits >>= channel.bitOffset;
    if (channel.bitCount < 64) {
        const std::uint64_t mask = (std::uint64_t{1} << channel.bitCount) - 1;
        const bool negative = channel.dataType == 2 && ((bits >> (channel.bitCount - 1)) & 1) != 0;
        bits = negative ? bits | ~mask : bits & mask;
    }
    return bits;
}

double rawValue(const Channel &channel, const unsigned char *record)
{
    const std::uint64_t bits = rawBits(channel, record);
    if (channel.dataType == 2)
        return static_cast<double>(static_cast<std::int64_t>(bits));
    if (channel.dataType != 4)
        return static_cast<double>(bits);
    if (channel.bitCount == 32) {
        float value = 0;
        std::memcpy(&value, &bits, sizeof value);
        return static_cast<double>(value);
    }
    double value = 0;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

namespace {

// Pairs of key and value. Outside the keys the nearest value holds; exactly between two keys without
// interpolation the lower one.
double tableValue(const std::vector<double> &pairs, double x, bool interpolate)
{
    const std::size_t count = pairs.size() / 2;
    std::size_t upper = 0;
    while (upper < count && pairs[2 * upper] < x)
        ++upper;
    if (upper == 0 || upper == count)
        return pairs[2 * std::min(upper, count - 1) + 1];
    const double lowKey = pairs[2 * upper - 2], low = pairs[2 * upper - 1];
    const double highKey = pairs[2 * upper], high = pairs[2 * upper + 1];
    if (interpolate)
        return low + (x - lowKey) / (highKey - lowKey) * (high - low);
    return x - lowKey > highKey - x ? high : low;
}

} // namespace

std::optional<double> physicalValue(const Channel &channel, const unsigned char *record)
{
    const double x = rawValue(channel, record);
    const std::vector<double> &v = channel.conversion.values;
    const auto &texts = channel.conversion.texts;
    switch (channel.conversion.type) {
    case -1:
    case 0:
        return x;
    case 1:
        return v.size() == 2 ? std::optional(v[0] + v[1] * x) : std::nullopt;
    case 2:
        return v.size() == 6 ? std::optional((v[0] * x * x + v[1] * x + v[2])
                                             / (v[3] * x * x + v[4] * x + v[5]))
                             : std::nullopt;
    case 3:
        return texts.size() == 1 && texts[0] == "X" ? std::optional(x) : std::nullopt;
    case 4:
    case 5:
        return v.size() >= 2 ? std::optional(tableValue(v, x, channel.conversion.type == 4))
                             : std::nullopt;
    default:
        return std::nullopt;
    }
}

std::string textValue(const Channel &channel, const unsigned char *record)
{
    const Conversion &cc = channel.conversion;
    if (cc.type != 7)
        return {};
    const double x = rawValue(channel, record);
    const auto key = static_cast<std::size_t>(std::find(cc.values.begin(), cc.values.end(), x)
                                              - cc.values.begin());
    return key < cc.texts.size() ? cc.texts[key].value_or(std::string()) : std::string();
}

} // namespace mdf4reader
