#pragma once

#include "MDF4Conversion/rld2xxxrecord.h"

#include <QString>

#include <memory>
#include <optional>
#include <thread>

// The shared memory with the record of one rld2xxx. Each access takes the memory's own lock for as
// long as copying the record takes. There is no limit to how long the other program keeps that lock,
// so a thread of its own waits for it; no call here waits longer than a fifth of a second. Used on one
// thread.
class Rld2xxxMemory
{
public:
    Rld2xxxMemory();
    ~Rld2xxxMemory();
    Rld2xxxMemory(const Rld2xxxMemory &) = delete;
    Rld2xxxMemory &operator=(const Rld2xxxMemory &) = delete;

    // Makes the memory under a key that no other conversion has, with a record of zeros. False when
    // that is impossible.
    [[nodiscard]] bool create(const QString &inputFile);
    // What the other program finds the memory by; empty without memory, and once all has ended.
    [[nodiscard]] QString key() const;

    // The other program has ended. The lock isn't taken any more: a program that died with it would
    // be waited for without end.
    void setUnshared();

    // The record as it is, or as it was when the lock could be had last. None without memory.
    [[nodiscard]] std::optional<Rld2xxxRecord> read();
    // How long the lock has been waited for in vain, in ms; 0 once it was had, be it late.
    [[nodiscard]] qint64 lockedOut_ms() const;
    // Tells the other program to end and notes how it ended; nothing without memory.
    void finish(quint8 state);

private:
    class Keeper;

    void release();

    std::shared_ptr<Keeper> m_keeper; // shared with the thread; null without memory
    std::thread m_thread;
    std::optional<Rld2xxxRecord> m_last; // stays when the memory goes
};
