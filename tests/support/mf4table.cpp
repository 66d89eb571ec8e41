// Prints what is in MDF4 files: groups, channels, samples, time and value ranges. Reads them with the
// tests' own reader, which knows nothing of the writer.
//
//   zds-mf4-table FILE.mf4...

#include "tests/support/mdf4reader.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <string>
#include <vector>

namespace {

constexpr unsigned masterType = 2;
constexpr double microseconds = 1e-6;
constexpr std::size_t shownGroups = 200;

// Characters, not bytes: names are UTF-8.
std::size_t width(const std::string &utf8)
{
    return std::size_t(std::count_if(utf8.begin(), utf8.end(),
                                     [](char c) { return (std::uint8_t(c) & 0xC0) != 0x80; }));
}

std::string padded(std::string text, std::size_t columns)
{
    const std::size_t now = width(text);
    return text.append(now < columns ? columns - now : 0, ' ');
}

std::string number(double value)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.6g", value);
    return text;
}

const char *conversionName(int type)
{
    switch (type) {
    case 0:
        return "identity";
    case 1:
        return "linear";
    case 2:
        return "rational";
    case 3:
        return "formula";
    case 4:
        return "table, interpolated";
    case 5:
        return "table";
    case 7:
        return "texts";
    default:
        return "";
    }
}

struct Range
{
    double low = std::numeric_limits<double>::infinity();
    double high = -std::numeric_limits<double>::infinity();

    void take(double value)
    {
        if (!std::isnan(value)) {
            low = std::min(low, value);
            high = std::max(high, value);
        }
    }
};

const unsigned char *record(const mdf4reader::Group &group,
                            const std::vector<unsigned char> &records, std::uint64_t index)
{
    return records.data() + index * group.dataBytes;
}

// "-3.2 .. 5.1 km/h", or the first and last text of a channel of texts.
std::string valueRange(const mdf4reader::Group &group, const mdf4reader::Channel &channel,
                       const std::vector<unsigned char> &records)
{
    if (channel.dataType > 5)
        return std::string();
    if (channel.conversion.type == 7) {
        const std::string first = textValue(channel, record(group, records, 0));
        const std::string last = textValue(channel, record(group, records, group.cycleCount - 1));
        return "\"" + first + "\" .. \"" + last + "\"";
    }
    Range range;
    bool converted = true;
    for (std::uint64_t i = 0; i < group.cycleCount; ++i) {
        const unsigned char *bytes = record(group, records, i);
        const auto physical = physicalValue(channel, bytes);
        converted = converted && physical.has_value();
        range.take(physical.value_or(rawValue(channel, bytes)));
    }
    std::string text = number(range.low) + " .. " + number(range.high);
    if (!converted)
        return text + " (stored)";
    return channel.unit.empty() ? text : text + " " + channel.unit;
}

void printGroup(const mdf4reader::Group &group, const std::vector<unsigned char> &records)
{
    Range times;
    for (const mdf4reader::Channel &channel : group.channels) {
        if (channel.type != masterType)
            continue;
        for (std::uint64_t i = 0; i < group.cycleCount; ++i)
            times.take(rawValue(channel, record(group, records, i)) * microseconds);
    }
    std::printf("%llu records, %.3f to %.3f s\n", static_cast<unsigned long long>(group.cycleCount),
                times.low, times.high);
    for (const mdf4reader::Channel &channel : group.channels) {
        if (channel.type == masterType)
            continue;
        std::printf("  %s %s %s\n", padded(channel.name, 28).c_str(),
                    padded(conversionName(channel.conversion.type), 20).c_str(),
                    valueRange(group, channel, records).c_str());
    }
}

bool printFile(const char *path)
{
    mdf4reader::Reader reader;
    if (!reader.open(std::filesystem::u8path(path))) {
        std::fprintf(stderr, "%s: %s\n", path, reader.error().c_str());
        return false;
    }
    std::uint64_t channels = 0;
    std::uint64_t samples = 0;
    std::size_t shown = 0;
    for (const mdf4reader::Group &group : reader.file().groups) {
        const std::uint64_t dataChannels = group.channels.size() - 1;
        channels += dataChannels;
        samples += dataChannels * group.cycleCount;
        if (shown++ >= shownGroups)
            continue;
        const std::vector<unsigned char> records = reader.records(group);
        if (records.size() < group.cycleCount * group.dataBytes) {
            std::fprintf(stderr, "%s: %s\n", path, reader.error().c_str());
            return false;
        }
        std::printf("Group %zu: ", shown);
        printGroup(group, records);
    }
    std::printf("%zu groups, %llu channels, %llu samples\n", reader.file().groups.size(),
                static_cast<unsigned long long>(channels),
                static_cast<unsigned long long>(samples));
    return true;
}

} // namespace

int main(int argc, char *argv[])
{
    bool ok = argc > 1;
    for (int i = 1; i < argc; ++i)
        ok = printFile(argv[i]) && ok;
    return ok ? 0 : 1;
}
