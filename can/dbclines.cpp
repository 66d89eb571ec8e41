#include "can/dbclines.h"

#include <algorithm>
#include <array>

namespace {

// U+0085, U+00A0, U+1680, U+2028, U+2029, U+202F, U+205F, U+3000; U+2000 to U+200A are a range.
constexpr std::array<std::string_view, 8> wideSpaces = {
    "\xC2\x85",     "\xC2\xA0",     "\xE1\x9A\x80", "\xE2\x80\xA8",
    "\xE2\x80\xA9", "\xE2\x80\xAF", "\xE2\x81\x9F", "\xE3\x80\x80"};
constexpr std::string_view spaceRangeHead = "\xE2\x80";
constexpr unsigned char spaceRangeFirst = 0x80;
constexpr unsigned char spaceRangeLast = 0x8A;
constexpr std::size_t longestSpace = 3;

bool startsWith(std::string_view text, std::string_view head)
{
    return text.substr(0, head.size()) == head;
}

// Certainly: neither white space of ASCII nor a control character, nor the start of a wide one.
bool isNoSpace(char character)
{
    return static_cast<unsigned char>(character - '!') < 0xC2 - '!';
}

// Bytes of the white space character that ends the text, 0 for none.
std::size_t trailingSpaceLength(std::string_view text)
{
    for (std::size_t length = 1; length <= std::min(longestSpace, text.size()); ++length) {
        if (dbc::spaceLength(text, text.size() - length) == length)
            return length;
    }
    return 0;
}

} // namespace

std::size_t dbc::wideSpaceLength(std::string_view text)
{
    for (const std::string_view space : wideSpaces) {
        if (startsWith(text, space))
            return space.size();
    }
    if (text.size() < longestSpace || !startsWith(text, spaceRangeHead))
        return 0;
    const auto last = static_cast<unsigned char>(text[longestSpace - 1]);
    return last >= spaceRangeFirst && last <= spaceRangeLast ? longestSpace : 0;
}

std::size_t dbc::characterStart(std::string_view text, std::size_t position)
{
    while (position > 0 && (static_cast<unsigned char>(text[position]) & 0xC0) == 0x80)
        --position;
    return position;
}

std::string_view dbc::trimmed(std::string_view text)
{
    std::size_t length = 0;
    while (!text.empty() && (length = spaceLength(text, 0)) != 0)
        text.remove_prefix(length);
    while (!text.empty() && (length = trailingSpaceLength(text)) != 0)
        text.remove_suffix(length);
    return text;
}

std::string_view dbc::Words::next()
{
    std::size_t length = 0;
    while (m_position < m_text.size() && (length = spaceLength(m_text, m_position)) != 0)
        m_position += length;
    const std::size_t start = m_position;
    const char *at = m_text.data() + start;
    const char *end = m_text.data() + m_text.size();
    for (;; ++at) {
        while (at != end && isNoSpace(*at))
            ++at;
        m_position = std::size_t(at - m_text.data());
        if (at == end || spaceLength(m_text, m_position) != 0)
            return m_text.substr(start, m_position - start);
    }
}

void dbc::appendSimplified(std::string &out, std::string_view text)
{
    Words words(text);
    std::string_view word = words.next();
    out.append(word);
    for (word = words.next(); !word.empty(); word = words.next())
        out.append(1, ' ').append(word);
}

void dbc::copyWithoutColons(std::string &out, std::string_view text)
{
    out.resize(text.size());
    out.erase(std::remove_copy(text.begin(), text.end(), out.begin(), ':'), out.end());
}

bool dbc::Lines::next()
{
    if (m_position == m_text.size())
        return false;
    const std::size_t feed = std::min(m_text.find('\n', m_position), m_text.size());
    m_line = m_text.substr(m_position, feed - m_position);
    if (!m_line.empty() && m_line.back() == '\r')
        m_line.remove_suffix(1);
    m_position = std::min(feed + 1, m_text.size());
    ++m_number;
    return true;
}
