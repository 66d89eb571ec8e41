#include "MDF4Conversion/lib_mdf4/mdf4/m4text.h"

#include <cstddef>
#include <cstdint>

namespace mdf4 {

namespace {

constexpr std::string_view replacement = "\xEF\xBF\xBD";   // U+FFFD
constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF"; // U+FEFF

// Length of the well-formed UTF-8 sequence at the start of the text, 0 if there is none. The bounds
// of the second byte rule out overlong forms, surrogates and what lies above U+10FFFF (Unicode,
// table of well-formed UTF-8 byte sequences).
std::size_t sequenceLength(std::string_view text)
{
    const auto byte = [text](std::size_t i) { return static_cast<std::uint8_t>(text[i]); };
    const auto within = [&](std::size_t i, std::uint8_t low, std::uint8_t high) {
        return i < text.size() && byte(i) >= low && byte(i) <= high;
    };
    const std::uint8_t lead = byte(0);
    if (lead < 0x80)
        return 1;
    if (lead >= 0xC2 && lead <= 0xDF)
        return within(1, 0x80, 0xBF) ? 2 : 0;
    if (lead >= 0xE0 && lead <= 0xEF) {
        const std::uint8_t low = lead == 0xE0 ? 0xA0 : 0x80;
        const std::uint8_t high = lead == 0xED ? 0x9F : 0xBF;
        return within(1, low, high) && within(2, 0x80, 0xBF) ? 3 : 0;
    }
    if (lead >= 0xF0 && lead <= 0xF4) {
        const std::uint8_t low = lead == 0xF0 ? 0x90 : 0x80;
        const std::uint8_t high = lead == 0xF4 ? 0x8F : 0xBF;
        return within(1, low, high) && within(2, 0x80, 0xBF) && within(3, 0x80, 0xBF) ? 4 : 0;
    }
    return 0;
}

// Calls append(sequence) for each well-formed sequence, and for U+FFFD in place of each ill-formed
// one with the continuation bytes behind it.
template <class Append>
void forEachCharacter(std::string_view text, Append append)
{
    const auto isContinuation = [](char c) {
        return (static_cast<std::uint8_t>(c) & 0xC0) == 0x80;
    };
    while (!text.empty()) {
        std::size_t length = sequenceLength(text);
        if (length > 0) {
            append(text.substr(0, length));
        } else {
            append(replacement);
            for (length = 1; length < text.size() && isContinuation(text[length]);)
                ++length;
        }
        text.remove_prefix(length);
    }
}

bool allowedInXml(std::string_view character)
{
    if (character.size() == 1) {
        const char c = character[0];
        return static_cast<std::uint8_t>(c) >= 0x20 || c == '\t' || c == '\n' || c == '\r';
    }
    return character != "\xEF\xBF\xBE" && character != "\xEF\xBF\xBF"; // U+FFFE, U+FFFF
}

std::string_view escaped(std::string_view character)
{
    switch (character[0]) {
    case '&':
        return "&amp;";
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '"':
        return "&quot;";
    case '\'':
        return "&apos;";
    default:
        return character;
    }
}

std::string element(const char *name, const std::string &value)
{
    return std::string("<") + name + ">" + xmlValue(value) + "</" + name + ">\r\n";
}

std::string property(const char *name, const std::string &value)
{
    return std::string("<e name=\"") + name + "\">" + xmlValue(value) + "</e>\r\n";
}

} // namespace

std::string cleanText(std::string_view utf8)
{
    utf8 = utf8.substr(0, utf8.find('\0'));
    while (utf8.substr(0, byteOrderMark.size()) == byteOrderMark)
        utf8.remove_prefix(byteOrderMark.size());
    std::string text;
    text.reserve(utf8.size());
    forEachCharacter(utf8, [&text](std::string_view c) { text += c; });
    return text;
}

std::string xmlValue(std::string_view utf8)
{
    std::string text;
    text.reserve(utf8.size());
    forEachCharacter(utf8, [&text](std::string_view c) {
        if (allowedInXml(c))
            text += escaped(c);
    });
    return text;
}

std::string fileHistoryComment(const FileHistoryValues &values)
{
    return "<FHcomment>\r\n"
           "<TX>created</TX>\r\n"
           + element("tool_id", values.toolId) + element("tool_vendor", values.toolVendor)
           + element("tool_version", values.toolVersion) + "</FHcomment>\r\n";
}

std::string headerComment(const HeaderValues &values)
{
    return "<HDcomment>\r\n" + element("TX", values.comment)
           + "<time_source>local PC reference timer</time_source>\r\n"
             "<common_properties>\r\n"
           + property("author", values.author) + property("department", values.department)
           + property("project", values.project) + property("subject", values.subject)
           + "</common_properties>\r\n"
             "</HDcomment>\r\n";
}

} // namespace mdf4
