#pragma once

#include <string>
#include <string_view>

namespace mdf4 {

// What a TX or MD block may hold, from any bytes: cut at the first NUL, without a byte order mark at
// the start, with U+FFFD in place of whatever is not UTF-8 (a surrogate written as UTF-8 included).
std::string cleanText(std::string_view utf8);

// A value for XML text or an attribute: & < > " ' escaped, what XML 1.0 forbids (NUL and most control
// characters, U+FFFE, U+FFFF) left out, U+FFFD in place of whatever is not UTF-8.
std::string xmlValue(std::string_view utf8);

struct FileHistoryValues // all UTF-8, unescaped
{
    std::string toolId;
    std::string toolVendor;
    std::string toolVersion;
};

struct HeaderValues // all UTF-8, unescaped
{
    std::string comment;
    std::string author;
    std::string department;
    std::string project;
    std::string subject;
};

// The XML of the comments of FH and HD, each line ended by CR LF.
std::string fileHistoryComment(const FileHistoryValues &values);
std::string headerComment(const HeaderValues &values);

} // namespace mdf4
