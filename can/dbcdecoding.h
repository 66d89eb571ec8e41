#pragma once

#include <QByteArray>
#include <QString>

#include <string_view>

// From the bytes of a DBC file, which states its encoding nowhere, to UTF-8.
namespace dbc {

// Well-formed as Unicode defines it: no surrogates, no overlong forms, nothing above U+10FFFF.
[[nodiscard]] bool isUtf8(std::string_view bytes);

// The text as UTF-8 without a byte order mark. UTF-8 stays as it is; what isn't valid UTF-8 is
// UTF-16 or UTF-32 when it begins with their byte order mark, else Windows-1252. A byte that
// Windows-1252 leaves undefined becomes the control character of the same number.
[[nodiscard]] QByteArray decoded(QByteArray bytes);

// All of the text: a mark of byte order at its start is a character like others here.
[[nodiscard]] QString toText(std::string_view utf8);

} // namespace dbc
