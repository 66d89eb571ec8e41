#pragma once

#include <QtGlobal>

#include <limits>
#include <optional>
#include <string_view>

// Numbers of a DBC file, in decimal; nothing for any other text. A sign may precede, blanks may not.
namespace dbc {

[[nodiscard]] std::optional<quint32> toUnsigned(std::string_view text); // no minus sign
[[nodiscard]] std::optional<qint32> toSigned(std::string_view text);

// A number from 0 to the largest one of the type.
template <class Field>
[[nodiscard]] std::optional<Field> toField(std::string_view text)
{
    const std::optional<qint32> value = toSigned(text);
    if (!value || *value < 0 || *value > std::numeric_limits<Field>::max())
        return {};
    return static_cast<Field>(*value);
}

// Finite; nothing as well for a number that is too large, or too small to differ from 0.
[[nodiscard]] std::optional<double> toReal(std::string_view text);

// `count` numbers apart by `separator`, no more and no less.
[[nodiscard]] bool toRealPair(std::string_view text, char separator, double &first, double &second);

} // namespace dbc
