#pragma once

#include "MDF4Conversion/rawlog/entrytypes.h"

#include <cstddef>
#include <cstdint>
#include <vector>

// One parsed entry of a raw log. Used on one thread at a time.
//
// A copy normalises the identifier word: it keeps the 29-bit identifier when bit 30 is set, else
// the 11-bit one, without flags. There is no move, so that every copy follows the same rule.
class StdLogEntry
{
public:
    StdLogEntry() = default;
    StdLogEntry(const StdLogEntry &other);
    StdLogEntry &operator=(const StdLogEntry &other);

    // Parses the entry that starts at `data` and replaces the content; nothing from `maxLen` on is
    // read. The entry is valid afterwards unless the range is shorter than an entry's head, does
    // not begin with the sync word, or is shorter than the announced length (modulo 65,536).
    // Without a payload, `data` stays as it stood.
    void rebuild(const uint8_t *data, std::size_t maxLen);

    // Back to a fresh entry; keeps the payload's memory for the next one.
    void clear();

    // All fixed fields of the type lie inside the entry, and a CAN frame holds the bytes that it
    // announces. What isn't complete belongs to no channel.
    [[nodiscard]] bool isComplete() const { return complete; }

    bool valid = false;
    quint16 sync = 0;
    quint16 length = 0;
    quint8 type = 0;
    quint8 number = 0;
    quint8 sub = 0;
    quint8 info = 0;
    quint32 timestamp = 0; // us on the logger's clock; 0 for a type without one
    quint32 id = 0;        // identifier word of RLD_CAN
    std::vector<quint8> data;

private:
    void takePayload(const uint8_t *data, std::size_t available, quint32 start, quint32 size);

    bool complete = false;
};
