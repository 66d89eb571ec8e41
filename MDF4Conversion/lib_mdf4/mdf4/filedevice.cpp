#include "MDF4Conversion/lib_mdf4/mdf4/filedevice.h"

#include <algorithm>
#include <cerrno>
#include <system_error>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>
#else
#include <fcntl.h>
#include <unistd.h>
#endif

namespace {

// What the two platforms name differently. Failures leave errno set.
#ifdef _WIN32
int openFile(const std::filesystem::path &path)
{
    int handle = -1;
    _wsopen_s(&handle, path.c_str(), _O_RDWR | _O_CREAT | _O_TRUNC | _O_BINARY | _O_NOINHERIT,
              _SH_DENYWR, _S_IREAD | _S_IWRITE);
    return handle;
}
bool seekFile(int handle, std::uint64_t position)
{
    return _lseeki64(handle, static_cast<long long>(position), SEEK_SET) >= 0;
}
long long writeFile(int handle, const void *data, std::size_t size)
{
    return _write(handle, data, static_cast<unsigned>(size));
}
long long readFile(int handle, void *data, std::size_t size)
{
    return _read(handle, data, static_cast<unsigned>(size));
}
bool resizeFile(int handle, std::uint64_t size)
{
    return _chsize_s(handle, static_cast<long long>(size)) == 0;
}
bool syncFile(int handle)
{
    return _commit(handle) == 0;
}
bool closeFile(int handle)
{
    return _close(handle) == 0;
}
#else
static_assert(sizeof(off_t) == 8, "files grow beyond 4 GiB");

int openFile(const std::filesystem::path &path)
{
    constexpr mode_t readWriteForAll = 0666; // the process's umask applies
    return ::open(path.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, readWriteForAll);
}
bool seekFile(int handle, std::uint64_t position)
{
    return ::lseek(handle, static_cast<off_t>(position), SEEK_SET) >= 0;
}
long long writeFile(int handle, const void *data, std::size_t size)
{
    return ::write(handle, data, size);
}
long long readFile(int handle, void *data, std::size_t size)
{
    return ::read(handle, data, size);
}
bool resizeFile(int handle, std::uint64_t size)
{
    return ::ftruncate(handle, static_cast<off_t>(size)) == 0;
}
bool syncFile(int handle)
{
    // A device or a file system that knows no syncing has nothing to wait for.
    return ::fsync(handle) == 0 || errno == EINVAL || errno == ENOTSUP;
}
bool closeFile(int handle)
{
    return ::close(handle) == 0;
}
#endif

class SystemFile : public FileDevice
{
public:
    SystemFile() = default;
    ~SystemFile() override
    {
        if (m_handle >= 0)
            closeFile(m_handle);
    }

    bool create(const std::filesystem::path &path) override
    {
        close();
        m_handle = openFile(path);
        m_position = 0;
        return noted(m_handle >= 0);
    }

    bool writeAt(std::uint64_t position, const void *data, std::size_t size) override
    {
        const auto *bytes = static_cast<const char *>(data);
        return transfer(position, size, [this, bytes](std::size_t done, std::size_t count) {
            return writeFile(m_handle, bytes + done, count);
        });
    }

    bool readAt(std::uint64_t position, void *data, std::size_t size) override
    {
        auto *bytes = static_cast<char *>(data);
        return transfer(position, size, [this, bytes](std::size_t done, std::size_t count) {
            return readFile(m_handle, bytes + done, count);
        });
    }

    bool resize(std::uint64_t size) override { return noted(resizeFile(m_handle, size)); }
    bool sync() override { return noted(syncFile(m_handle)); }

    bool close() override
    {
        if (m_handle < 0)
            return true;
        const bool closed = closeFile(m_handle);
        m_handle = -1;
        return noted(closed);
    }

    std::string lastError() const override { return m_error.message(); }

private:
    bool noted(bool ok)
    {
        if (!ok)
            m_error.assign(errno, std::generic_category());
        return ok;
    }

    // Moves `size` bytes from or to `position` by as many calls of step(bytes done, bytes wanted) as
    // it takes. Seeks only when the file stands elsewhere.
    template <class Step>
    bool transfer(std::uint64_t position, std::size_t size, Step step)
    {
        constexpr std::size_t largestStep = 1U << 30; // one call takes 31 bits of size on Windows
        if (position != m_position && !noted(seekFile(m_handle, position)))
            return false;
        m_position = position;
        for (std::size_t done = 0; done < size;) {
            errno = 0;
            const long long count = step(done, std::min(size - done, largestStep));
            if (count < 0 && errno == EINTR)
                continue;
            if (count <= 0)
                return failedTransfer();
            done += static_cast<std::size_t>(count);
            m_position += static_cast<std::uint64_t>(count);
        }
        return true;
    }

    bool failedTransfer()
    {
        if (errno == 0)
            errno = EIO; // nothing moved and no reason given: a read behind the end
        return noted(false);
    }

    int m_handle = -1;
    std::uint64_t m_position = 0; // of the handle
    std::error_code m_error;
};

} // namespace

std::unique_ptr<FileDevice> makeSystemFile()
{
    return std::make_unique<SystemFile>();
}
