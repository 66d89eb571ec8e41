#pragma once

#include <QByteArray>
#include <QString>

// Images of a configuration, item by item, without the code under test: as an older or the current
// software writes it.

// The versions of records that have had several.
struct RecordVersions
{
    int terminal = 6;
    int can = 4;
    int module = 3; // of the A2L module: all its items are in every version
    int cfg = 3;
    int daq = 2;
    int element = 2;
    int event = 2;
    int ethernet = 3;
};

// The record's frame. What `content` hasn't got yet has its default; what `frames` hasn't got yet is
// not written.
[[nodiscard]] QByteArray configurationImage(const RecordVersions &frames,
                                            const RecordVersions &content);

// The same in the two kinds of files; a log without entries.
[[nodiscard]] QByteArray configurationFileOf(const QByteArray &image);
[[nodiscard]] QByteArray logFileOf(const QByteArray &image);
