#include "can/dbcnumbers.h"

#include <charconv>

namespace {

bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

std::string_view withoutPlus(std::string_view text)
{
    const bool hasPlus = text.size() > 1 && text[0] == '+' && text[1] != '-';
    return hasPlus ? text.substr(1) : text;
}

// The whole text is one number.
template <class Number>
std::optional<Number> converted(std::string_view text)
{
    Number number{};
    const char *end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stop != end)
        return {};
    return number;
}

// The words for infinity and "not a number" begin with none of these.
bool beginsAsReal(std::string_view text)
{
    if (!text.empty() && text.front() == '-')
        text.remove_prefix(1);
    return !text.empty() && (isDigit(text.front()) || text.front() == '.');
}

} // namespace

std::optional<quint32> dbc::toUnsigned(std::string_view text)
{
    return converted<quint32>(withoutPlus(text));
}

std::optional<qint32> dbc::toSigned(std::string_view text)
{
    return converted<qint32>(withoutPlus(text));
}

std::optional<double> dbc::toReal(std::string_view text)
{
    const std::string_view number = withoutPlus(text);
    return beginsAsReal(number) ? converted<double>(number) : std::nullopt;
}

bool dbc::toRealPair(std::string_view text, char separator, double &first, double &second)
{
    const std::size_t middle = text.find(separator);
    if (middle == std::string_view::npos)
        return false;
    const std::optional<double> left = toReal(text.substr(0, middle));
    const std::optional<double> right = toReal(text.substr(middle + 1));
    if (!left || !right)
        return false;
    first = *left;
    second = *right;
    return true;
}
