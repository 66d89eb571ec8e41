#pragma once

#include <QtGlobal>

#include <array>
#include <cstddef>

// The record that this program shares with a running rld2xxx: 67 bytes, integers little-endian.
class Rld2xxxRecord
{
public:
    static constexpr std::size_t size = 0x43;
    static constexpr quint32 compatibleVersion = 3;

    // 64-bit counters of rld2xxx, in the order of the record.
    enum class Counter {
        FileSize, // of the input, in bytes; 0 until it is known
        RldInPipeline,
        OutputElementsInPipeline,
        BytesRead,
        FilteredChunks,
        ConvertedElements,
        WrittenElements
    };

    Rld2xxxRecord() = default;
    // A copy of what stands in memory; `size` bytes are read.
    [[nodiscard]] static Rld2xxxRecord fromMemory(const void *memory);
    void toMemory(void *memory) const;

    // Zeros all fields but the reserved one behind the version, which is nobody's.
    void clear();

    // Of the record; 0 until rld2xxx runs.
    [[nodiscard]] quint32 version() const;
    void setVersion(quint32 version);
    [[nodiscard]] quint64 counter(Counter counter) const;
    void setCounter(Counter counter, quint64 value);
    // The conversion is over; setting it asks rld2xxx to end.
    [[nodiscard]] bool isFinished() const;
    // One of conversionstate, or whatever the other program wrote.
    [[nodiscard]] quint8 state() const;
    // Ends the conversion in this state.
    void finish(quint8 state);

private:
    std::array<uchar, size> m_bytes{};
};
