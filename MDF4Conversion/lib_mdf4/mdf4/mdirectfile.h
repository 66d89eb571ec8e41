#pragma once

#include "MDF4Conversion/lib_mdf4/mdf4/filedevice.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

// A file that blocks are allocated in and written to at any position. The last bytes before the end
// wait in memory, since blocks are small and are patched most often right after they are written;
// everything before them is on the device. Not thread-safe.
//
// The first failure sticks: from then on every operation fails, and lastError() tells the cause.
class mDirectFile
{
public:
    explicit mDirectFile(std::unique_ptr<FileDevice> device = makeSystemFile());
    virtual ~mDirectFile();
    mDirectFile(const mDirectFile &) = delete;
    mDirectFile &operator=(const mDirectFile &) = delete;

    // Creates the file, empty. False when the path is empty or the file cannot be made.
    [[nodiscard]] bool open(const std::filesystem::path &path);
    // Writes what waits in memory and closes; false if this or anything before has failed.
    virtual bool close();
    // Closes without another write and deletes the file. Works after close(), too.
    void abort();

    // Reserves `size` bytes behind the logical end, rounded up to 8, and returns their position. With
    // `extend` the file reaches to their end even if nothing is ever written there.
    [[nodiscard]] std::uint64_t allocate(std::uint64_t size, bool extend);
    [[nodiscard]] bool write(std::uint64_t position, std::size_t size, const void *data);
    [[nodiscard]] bool read(std::uint64_t position, std::size_t size, void *data);
    [[nodiscard]] bool truncate(std::uint64_t position);
    // Hands what waits in memory to the device.
    [[nodiscard]] bool flush();

    bool isOpen() const { return m_open; }
    bool failed() const { return m_failed; }
    // What failed first, for the user, without the name of the file; empty when nothing has.
    const std::string &lastError() const { return m_lastError; }
    // Where the next block goes, before rounding.
    std::uint64_t logicalEnd() const { return m_logicalEnd; }

    // Notes a failure, unless there was one before. Returns false.
    bool fail(const std::string &text);

private:
    bool failDevice(const char *action);
    bool writeTail(std::uint64_t position, std::size_t size, const unsigned char *data);
    std::uint64_t tailEnd() const { return m_tailStart + m_tail.size(); }

    std::unique_ptr<FileDevice> m_device;
    std::filesystem::path m_path;
    std::vector<unsigned char> m_tail; // bytes from m_tailStart on that are not on the device yet
    std::uint64_t m_tailStart = 0;
    std::uint64_t m_logicalEnd = 0;
    std::uint64_t m_extendedEnd = 0; // the file reaches at least to here when it is closed
    bool m_open = false;
    bool m_failed = false;
    std::string m_lastError;
};
