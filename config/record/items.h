#pragma once

#include <QByteArray>
#include <QDataStream>
#include <QString>

// The items of variable length. Their lengths come from files and peers, so each is compared with
// the bytes that are left before anything is allocated.
namespace record {

// Stream version of every stream that reads or saves records (14). All items in use have the same
// bytes in later versions.
inline constexpr int dataStreamVersion = QDataStream::Qt_5_1;

// Bytes between the read position of the stream and its end.
qint64 bytesLeft(const QDataStream &in);

// Reads a byte array item: quint32 length, bytes; length 0xFFFFFFFF is a null array. An array that
// is cut short takes what is left of the stream, reads as null and leaves the status ReadPastEnd.
[[nodiscard]] QByteArray readBytes(QDataStream &in);

// Reads a string item: quint32 length in bytes, UTF-16 big-endian; length 0xFFFFFFFF is a null
// string. A string that is cut short takes what is left of the stream and reads as null. One of an
// odd length takes its own bytes and reads as null, too.
[[nodiscard]] QString readString(QDataStream &in);

// Whether the bytes begin with a whole frame that has room for a version.
[[nodiscard]] bool frameIsWhole(const QByteArray &bytes);

} // namespace record
