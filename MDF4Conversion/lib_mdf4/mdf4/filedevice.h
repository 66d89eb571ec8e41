#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

// The platform's side of a file: positioned reads and writes with 64-bit offsets. Tests put a device
// of their own in its place, one that lives in memory or fails after a number of bytes.
class FileDevice
{
public:
    virtual ~FileDevice() = default;

    // Opens a new, empty file for reading and writing; one of that name loses its content. Where the
    // platform can deny it, others may open the file for reading only.
    [[nodiscard]] virtual bool create(const std::filesystem::path &path) = 0;
    // Both transfer all `size` bytes or return false. Writing behind the end leaves zeros between.
    [[nodiscard]] virtual bool writeAt(std::uint64_t position, const void *data,
                                       std::size_t size) = 0;
    [[nodiscard]] virtual bool readAt(std::uint64_t position, void *data, std::size_t size) = 0;
    [[nodiscard]] virtual bool resize(std::uint64_t size) = 0;
    // Waits until all that was written would survive a power cut.
    [[nodiscard]] virtual bool sync() = 0;
    // True when it is closed already.
    virtual bool close() = 0;

    // The platform's text of the last failure, e.g. "No space left on device".
    virtual std::string lastError() const = 0;
};

// The device that stands for a file of the operating system.
std::unique_ptr<FileDevice> makeSystemFile();
