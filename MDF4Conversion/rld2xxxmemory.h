#pragma once

#include "MDF4Conversion/rld2xxxrecord.h"

#include <QSharedMemory>

#include <optional>

// The shared memory with the record of one rld2xxx. Each access takes the memory's own lock for as
// long as copying the record takes.
class Rld2xxxMemory
{
public:
    // Makes the memory under a key that no other conversion has, unless it was made already. False
    // when that is impossible.
    bool create(const QString &inputFile);
    // What the other program finds the memory by.
    [[nodiscard]] QString key() const { return m_memory.key(); }

    // The other program has ended. The lock isn't taken any more: a program that died with it would
    // be waited for without end.
    void setUnshared() { m_isShared = false; }

    // Zeros the record for a new run.
    void clear();
    // None without memory.
    [[nodiscard]] std::optional<Rld2xxxRecord> read();
    // Tells the other program to end and notes how it ended; nothing without memory.
    void finish(quint8 state);

private:
    class Lock;

    QSharedMemory m_memory;
    bool m_isShared = true;
};
