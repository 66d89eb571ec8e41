#include "MDF4Conversion/temporaryfiles.h"

#include <QCoreApplication>
#include <QDir>
#include <QUuid>

#include <cassert>

void TemporaryFilePool::setExpectedFiles(int count)
{
    m_bufferSize = qBound(minBufferSize, totalBufferSize / qMax(count, 1), maxBufferSize);
}

QFile *TemporaryFilePool::open(TemporaryFile &file)
{
    if (file.m_file) {
        m_open.splice(m_open.begin(), m_open, file.m_place);
        return file.m_file.get();
    }
    if (int(m_open.size()) >= maxOpenFiles)
        release(*m_open.back());
    auto handle = std::make_unique<QFile>(file.m_path);
    if (!handle->open(QIODevice::Append | QIODevice::Unbuffered)) {
        fail(QCoreApplication::translate("Conversion", "Temporary file %1: %2")
                 .arg(QDir::toNativeSeparators(file.m_path), handle->errorString()));
        return nullptr;
    }
    file.m_file = std::move(handle);
    m_open.push_front(&file);
    file.m_place = m_open.begin();
    return file.m_file.get();
}

void TemporaryFilePool::release(TemporaryFile &file)
{
    if (!file.m_file)
        return;
    m_open.erase(file.m_place);
    file.m_file.reset();
}

void TemporaryFilePool::fail(const QString &text)
{
    if (m_failure.isEmpty())
        m_failure = text;
}

TemporaryFile::TemporaryFile(TemporaryFilePool &pool, const QString &baseName)
    : m_pool(pool)
    , m_baseName(baseName)
{}

TemporaryFile::~TemporaryFile()
{
    m_buffered = 0;
    m_pool.release(*this);
    if (!m_path.isEmpty())
        QFile::remove(m_path);
}

// The object's address tells the files of one process apart; what another one left gives way.
void TemporaryFile::choosePath()
{
    m_path = QStringLiteral("%1/%2_%3.bin")
                 .arg(m_pool.folder(), m_baseName,
                      QString::number(reinterpret_cast<quintptr>(this), 16));
    if (QFile::exists(m_path)) {
        m_path = QStringLiteral("%1/%2.bin")
                     .arg(m_pool.folder(), QUuid::createUuid().toString(QUuid::WithoutBraces));
        assert(!QFile::exists(m_path) && "Error in tmp-filename generation.");
    }
}

// The first record makes the buffer; a full one goes to the file.
void TemporaryFile::makeRoom(int size)
{
    flush();
    if (int(m_buffer.size()) < size)
        m_buffer.resize(std::size_t(qMax(m_pool.bufferSize(), size)));
}

void TemporaryFile::flush()
{
    if (m_buffered == 0)
        return;
    if (m_path.isEmpty())
        choosePath();
    QFile *file = m_pool.failure().isEmpty() ? m_pool.open(*this) : nullptr;
    // A disk that fills takes a part first; only the next write tells why.
    qint64 written = 0;
    while (file && written < m_buffered) {
        const qint64 count = file->write(m_buffer.data() + written, m_buffered - written);
        if (count <= 0)
            break;
        written += count;
    }
    if (file && written < m_buffered) {
        m_pool.fail(QCoreApplication::translate("Conversion", "Temporary file %1: %2")
                        .arg(QDir::toNativeSeparators(m_path), file->errorString()));
    }
    m_buffered = 0;
}

bool TemporaryFile::finish()
{
    flush();
    m_buffer = std::vector<char>();
    m_pool.release(*this);
    return m_pool.failure().isEmpty();
}

void TemporaryFile::clear()
{
    m_pool.release(*this);
    if (!m_path.isEmpty())
        QFile::remove(m_path);
    m_path.clear();
    m_buffered = 0;
    m_size = 0;
}
