#include "can/dbcdecoding.h"

#include <QTextCodec>

#include <array>
#include <cstring>

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

// Windows-1252 from 0x80 to 0x9F; above it is ISO 8859-1.
constexpr std::array<quint16, 32> windows1252 = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

bool isWithin(uchar byte, uchar lowest, uchar highest)
{
    return byte >= lowest && byte <= highest;
}

// Bytes of the well-formed sequence at `p`, 0 for none (table 3-7 of the Unicode standard).
std::size_t sequenceLength(const uchar *p, std::size_t available)
{
    const uchar lead = p[0];
    if (lead < 0x80)
        return 1;
    const std::size_t length = lead < 0xC2 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if (length == 0 || lead > 0xF4 || available < length)
        return 0;
    const uchar lowest = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    const uchar highest = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    if (!isWithin(p[1], lowest, highest))
        return 0;
    for (std::size_t i = 2; i < length; ++i) {
        if (!isWithin(p[i], 0x80, 0xBF))
            return 0;
    }
    return length;
}

quint16 fromWindows1252(uchar byte)
{
    return isWithin(byte, 0x80, 0x9F) ? windows1252[byte - 0x80u] : byte;
}

// Of a character below U+10000.
int utf8Length(quint16 character)
{
    return character < 0x80 ? 1 : character < 0x800 ? 2 : 3;
}

char *appendUtf8(char *out, quint16 character)
{
    const auto put = [&out](unsigned byte) { *out++ = static_cast<char>(byte); };
    if (character < 0x80) {
        put(character);
    } else if (character < 0x800) {
        put(0xC0u | unsigned(character >> 6));
        put(0x80u | (character & 0x3Fu));
    } else {
        put(0xE0u | unsigned(character >> 12));
        put(0x80u | (unsigned(character >> 6) & 0x3Fu));
        put(0x80u | (character & 0x3Fu));
    }
    return out;
}

QByteArray windows1252ToUtf8(const QByteArray &bytes)
{
    int size = 0;
    for (const char byte : bytes)
        size += utf8Length(fromWindows1252(uchar(byte)));
    QByteArray text(size, Qt::Uninitialized);
    char *out = text.data();
    for (const char byte : bytes)
        out = appendUtf8(out, fromWindows1252(uchar(byte)));
    return text;
}

} // namespace

bool dbc::isUtf8(std::string_view bytes)
{
    constexpr quint64 highBits = 0x8080808080808080;
    const auto *p = reinterpret_cast<const uchar *>(bytes.data());
    std::size_t left = bytes.size();
    while (left > 0) {
        quint64 eight = highBits;
        if (left >= sizeof eight)
            std::memcpy(&eight, p, sizeof eight);
        const std::size_t length = (eight & highBits) == 0 ? sizeof eight : sequenceLength(p, left);
        if (length == 0)
            return false;
        p += length;
        left -= length;
    }
    return true;
}

QByteArray dbc::decoded(QByteArray bytes)
{
    const std::string_view text(bytes.constData(), std::size_t(bytes.size()));
    const bool isMarked = text.substr(0, byteOrderMark.size()) == byteOrderMark;
    if (isUtf8(text))
        return isMarked ? bytes.remove(0, int(byteOrderMark.size())) : bytes;
    const QTextCodec *codec = isMarked ? nullptr : QTextCodec::codecForUtfText(bytes, nullptr);
    return codec ? codec->toUnicode(bytes).toUtf8() : windows1252ToUtf8(bytes);
}

QString dbc::toText(std::string_view utf8)
{
    const QString text = QString::fromUtf8(utf8.data(), int(utf8.size()));
    if (utf8.substr(0, byteOrderMark.size()) == byteOrderMark)
        return QChar(QChar::ByteOrderMark) + text; // which QString takes off
    return text;
}
