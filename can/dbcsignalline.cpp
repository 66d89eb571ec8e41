#include "can/dbcsignalline.h"

#include "can/dbcdecoding.h"
#include "can/dbclines.h"
#include "can/dbcnumbers.h"

#include <array>
#include <string>

namespace {

using dbc::Fault;

constexpr std::size_t fewestWords = 7;

// The words of a signal line, the first ones read ahead to see that there are enough.
class SignalWords
{
public:
    explicit SignalWords(std::string_view line)
        : m_words(line)
    {
        for (std::string_view &word : m_first)
            word = m_words.next();
    }

    [[nodiscard]] bool areEnough() const { return !m_first.back().empty(); }
    [[nodiscard]] std::string_view peek() const { return m_first[m_next]; }
    // Empty behind the last word.
    [[nodiscard]] std::string_view next()
    {
        return m_next < m_first.size() ? m_first[m_next++] : m_words.next();
    }

private:
    std::array<std::string_view, fewestWords> m_first;
    std::size_t m_next = 0;
    dbc::Words m_words;
};

// Takes the optional word "M" or "m<value>".
Fault readMultiplex(SignalWords &words, StreamingClass_DBC_Signal &signal)
{
    if (words.peek() == "M") {
        (void)words.next();
        signal.mux_kind = MultiplexorSignal;
    } else if (words.peek().front() == 'm') {
        const std::optional<qint32> value = dbc::toSigned(words.next().substr(1));
        if (!value)
            return "Unable to parse multiplexor-value";
        signal.mux_kind = MultiplexedSignal;
        signal.mux_value = *value;
    }
    return nullptr;
}

// "start|length@order sign"
Fault readPosition(std::string_view word, StreamingClass_DBC_Signal &signal)
{
    const std::size_t bar = word.find('|');
    const std::size_t at = word.find('@');
    if (bar == std::string_view::npos || at == std::string_view::npos)
        return "Invalid Signal-Structure";
    if (bar == 0)
        return "Invalid Signal-Structure (start-bit)";
    const auto start = dbc::toField<quint16>(word.substr(0, bar));
    if (!start)
        return "Unable to parse start-bit";
    if (bar > at) // never so, for the "@" would be in the start bit; but it guards what follows
        return "Invalid Signal-Structure (bit-length)";
    const auto length = dbc::toField<quint16>(word.substr(bar + 1, at - bar - 1));
    if (!length)
        return "Unable to parse bit-length";
    const char order = at + 1 < word.size() ? word[at + 1] : '\0';
    if (order != '0' && order != '1')
        return "Unable to parse endianess";
    if (word.back() != '+' && word.back() != '-')
        return "Unable to parse value-type";
    signal.start_bit = *start;
    signal.bit_length = *length;
    signal.little_endian = order == '1' ? 1 : 0;
    signal.is_signed = word.back() == '-' ? 1 : 0;
    return nullptr;
}

// Two numbers between an opening and a closing character.
bool readPair(std::string_view word, char opening, char separator, char closing, double &first,
              double &second)
{
    if (word.size() < 2 || word.front() != opening || word.back() != closing)
        return false;
    return dbc::toRealPair(word.substr(1, word.size() - 2), separator, first, second);
}

// A unit with blanks stands in several words and loses the blanks.
Fault readUnit(SignalWords &words, StreamingClass_DBC_Signal &signal)
{
    std::string_view unit = words.next();
    std::string joined;
    if (!unit.empty() && unit.back() != '"') {
        joined = unit;
        for (std::string_view word = words.next(); !word.empty(); word = words.next()) {
            joined.append(word);
            if (joined.back() == '"')
                break;
        }
        unit = joined;
    }
    if (unit.empty() || unit.front() != '"' || unit.back() != '"')
        return "Unable to parse value-unit";
    unit.remove_prefix(1);
    if (!unit.empty()) // a blank behind the opening quote leaves nothing but that
        unit.remove_suffix(1);
    signal.unit = dbc::toText(unit);
    return nullptr;
}

} // namespace

dbc::Fault dbc::readSignalLine(std::string_view line, StreamingClass_DBC_Signal &signal)
{
    SignalWords words(line);
    if (!words.areEnough())
        return "Invalid line-structure";
    (void)words.next(); // SG_
    signal.name = dbc::toText(words.next());
    if (const Fault fault = readMultiplex(words, signal))
        return fault;
    if (const Fault fault = readPosition(words.next(), signal))
        return fault;
    if (!readPair(words.next(), '(', ',', ')', signal.factor, signal.offset))
        return "Unable to parse factor & offset";
    if (!readPair(words.next(), '[', '|', ']', signal.minimum, signal.maximum))
        return "Unable to parse value -minimum & -maximum";
    return readUnit(words, signal);
}
