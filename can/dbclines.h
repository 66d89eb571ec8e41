#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Lines, white space and words of a UTF-8 text, without a copy. White space is what QChar::isSpace()
// says, so that words are those of QString::simplified().
namespace dbc {

// Bytes of the white space character beyond ASCII at the start of `text`, 0 for none.
[[nodiscard]] std::size_t wideSpaceLength(std::string_view text);

// Bytes of the white space character at `position`, 0 for none.
[[nodiscard]] inline std::size_t spaceLength(std::string_view text, std::size_t position)
{
    const auto byte = static_cast<unsigned char>(text[position]);
    if (byte <= ' ')
        return byte == ' ' || (byte >= '\t' && byte <= '\r') ? 1 : 0;
    return byte < 0xC2 ? 0 : wideSpaceLength(text.substr(position));
}

// Where the character begins that has a byte at `position`.
[[nodiscard]] std::size_t characterStart(std::string_view text, std::size_t position);

[[nodiscard]] std::string_view trimmed(std::string_view text);

// The words of a text, one after the other.
class Words
{
public:
    explicit Words(std::string_view text)
        : m_text(text)
    {}

    // Empty behind the last word.
    [[nodiscard]] std::string_view next();

private:
    std::string_view m_text;
    std::size_t m_position = 0;
};

// Appends the words with one blank between them.
void appendSimplified(std::string &out, std::string_view text);

// `out` becomes the text without its colons.
void copyWithoutColons(std::string &out, std::string_view text);

// Lines that end with LF or CR LF; at the end of the text with a CR or nothing, too. A CR elsewhere
// is white space.
class Lines
{
public:
    explicit Lines(std::string_view text)
        : m_text(text)
    {}

    // Goes to the next line. False when there is none; line() then is the last one.
    [[nodiscard]] bool next();

    [[nodiscard]] std::string_view line() const { return m_line; }
    [[nodiscard]] int number() const { return m_number; } // from 1
    // Of the next line, in bytes.
    [[nodiscard]] std::size_t position() const { return m_position; }

private:
    std::string_view m_text;
    std::string_view m_line;
    std::size_t m_position = 0;
    int m_number = 0;
};

} // namespace dbc
