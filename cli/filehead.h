#pragma once

#include <QString>

// What the first bytes of a file tell about it.
struct FileHead
{
    enum class Kind { Unknown, Configuration, RawLog, Database };

    Kind kind = Kind::Unknown;
    // The frames around the configuration lie one in the other, so that it can be read. False for a
    // file of unknown kind.
    bool framesAreWhole = false;
};

// A configuration file begins with the big-endian length of its payload, a raw log with the
// little-endian length of its configuration block; both must fit the size of the file. When both
// do, the frames inside decide; when that or neither helps, the extension, which is all that tells a
// DBC file.
[[nodiscard]] FileHead fileHead(const QByteArray &firstBytes, qint64 fileSize,
                                const QString &fileName);

// The head of a regular file. Anything else, like a pipe or a folder, is of unknown kind and is not
// opened.
[[nodiscard]] FileHead readFileHead(const QString &path);
