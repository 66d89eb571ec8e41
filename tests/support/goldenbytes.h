#pragma once

#include <QByteArray>
#include <QString>

// Golden bytes of records, from text files below tests/data. A line holds hex digits and, behind '#',
// the name of the item; one that begins with "@n" belongs to items that joined at record version n.
// A framed record begins with the lines of its length and its version.
namespace golden {

// The whole file below tests/data; fails the running test and gives nothing if it can't be read.
QByteArray file(const QString &name);

// All bytes of a hex file.
QByteArray bytes(const QString &name);

// The frame as a writer of an older version would have made it.
QByteArray bytesOfVersion(const QString &name, qint32 version);

// Version and items of a hex file, without the frame's length.
QByteArray content(const QString &name);

// A big-endian quint32.
QByteArray word(quint32 value);

// A byte array item: the length and the bytes.
QByteArray framed(const QByteArray &content);

} // namespace golden
