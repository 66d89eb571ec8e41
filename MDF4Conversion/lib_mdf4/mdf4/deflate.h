#pragma once

#include <cstddef>
#include <memory>
#include <vector>

namespace mdf4 {

// The one place that knows the deflate library (CMake ZDS_DEFLATE: libdeflate or miniz). Streams are
// in zlib format (RFC 1950).

// Memory that is used again and again. Grows without copying or clearing what it holds.
class ScratchBuffer
{
public:
    unsigned char *reserve(std::size_t size)
    {
        if (size > m_size) {
            m_data.reset(new unsigned char[size]);
            m_size = size;
        }
        return m_data.get();
    }

private:
    std::unique_ptr<unsigned char[]> m_data;
    std::size_t m_size = 0;
};

// A compressor. Keeps its state from call to call, so use one for each thread.
class Deflater
{
public:
    static constexpr int defaultLevel = -1; // the library's own, 6

    explicit Deflater(int level = defaultLevel);
    ~Deflater();
    Deflater(const Deflater &) = delete;
    Deflater &operator=(const Deflater &) = delete;

    // The zlib stream of the data; empty when the library fails. The result does not depend on what
    // was compressed before.
    std::vector<unsigned char> deflateZlib(const unsigned char *data, std::size_t size);

    // Memory for the caller's own use between calls, at least `size` bytes; content undefined.
    unsigned char *scratch(std::size_t size) { return m_scratch.reserve(size); }

private:
    struct State;

    std::unique_ptr<State> m_state;
    ScratchBuffer m_output;
    ScratchBuffer m_scratch;
};

// The other way: false unless the stream is sound and yields exactly `outSize` bytes.
[[nodiscard]] bool inflateZlib(const unsigned char *data, std::size_t size, unsigned char *out,
                               std::size_t outSize);

} // namespace mdf4
