#pragma once

#include "MDF4Conversion/recordbuffer.h"

#include <QFile>
#include <QString>

#include <cstring>
#include <list>
#include <memory>
#include <vector>

class TemporaryFile;

// Lends file handles to the temporary files of one conversion: a log may have far more groups than
// a process may have files open. Used on the thread of the conversion.
class TemporaryFilePool
{
public:
    static constexpr int maxOpenFiles = 48;
    // All buffers together, as long as a record fits each one's share.
    static constexpr int totalBufferSize = 48 * 1024 * 1024;
    static constexpr int minBufferSize = 512;
    static constexpr int maxBufferSize = 256 * 1024;

    explicit TemporaryFilePool(const QString &folder)
        : m_folder(folder)
    {}

    // How many files will share the buffers: as many as a conversion may have groups.
    void setExpectedFiles(int count);
    [[nodiscard]] int bufferSize() const { return m_bufferSize; }
    [[nodiscard]] const QString &folder() const { return m_folder; }

    // Where the owners of the files build what they append, one at a time.
    [[nodiscard]] RecordBuffer &recordBuffer() { return m_recordBuffer; }

    // The first failure of any file, for the user; empty as long as all went well.
    [[nodiscard]] const QString &failure() const { return m_failure; }

private:
    friend class TemporaryFile;

    QFile *open(TemporaryFile &file);
    void release(TemporaryFile &file);
    void fail(const QString &text);

    QString m_folder;
    QString m_failure;
    RecordBuffer m_recordBuffer;
    int m_bufferSize = maxBufferSize;
    std::list<TemporaryFile *> m_open; // the one used last at the front
};

// Bytes that are appended once and read once. The file is made at the first flush of the buffer and
// deleted with the object. Failures stand in the pool.
class TemporaryFile
{
public:
    TemporaryFile(TemporaryFilePool &pool, const QString &baseName);
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile &) = delete;
    TemporaryFile &operator=(const TemporaryFile &) = delete;

    void append(const void *data, int size)
    {
        if (m_buffered + size > int(m_buffer.size()))
            makeRoom(size);
        std::memcpy(m_buffer.data() + m_buffered, data, std::size_t(size));
        m_buffered += size;
        m_size += size;
    }
    // Writes what is buffered and gives handle and buffer back. False after any failure.
    bool finish();
    // Back to an empty file.
    void clear();

    // Bytes appended.
    [[nodiscard]] qint64 size() const { return m_size; }
    [[nodiscard]] const QString &path() const { return m_path; }
    [[nodiscard]] const QString &failure() const { return m_pool.failure(); }

private:
    friend class TemporaryFilePool;

    void flush();
    void makeRoom(int size);
    void choosePath();

    TemporaryFilePool &m_pool;
    QString m_baseName;
    QString m_path; // empty until the file exists
    std::vector<char> m_buffer;
    int m_buffered = 0;
    qint64 m_size = 0;
    std::unique_ptr<QFile> m_file; // null while the handle is lent to others
    std::list<TemporaryFile *>::iterator m_place;
};
