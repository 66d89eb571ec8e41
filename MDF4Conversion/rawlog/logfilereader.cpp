#include "MDF4Conversion/rawlog/logfilereader.h"

#include "MDF4Conversion/rawlog/logconfiguration.h"

#include <QCoreApplication>
#include <QtEndian>

using namespace rawlog;

namespace {

constexpr qint32 smallestRest = 5; // a sync word, a length and one byte more

} // namespace

LogFileReader::LogFileReader(const QString &fileName)
    : m_fileName(fileName)
    , m_file(fileName)
{
    const ConfigurationBlock block = readConfigurationBlock(fileName);
    m_configuration = decodeConfiguration(block.bytes);
    if (!m_configuration) {
        m_failure = block.failure;
        return;
    }
    m_firstEntryPosition = block.size + 4;
    if (!m_file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)
        || !m_file.seek(m_firstEntryPosition)) {
        m_failure = m_file.errorString();
        m_configuration.reset();
        return;
    }
    m_fileSize = m_file.size();
    m_filePosition = m_firstEntryPosition;
    m_percentFactor = 100.0 / double(float(m_fileSize));
    m_fileEnded = m_filePosition >= m_fileSize;
    m_open = true;
}

void LogFileReader::close()
{
    m_file.close();
    m_open = false;
    m_buffer.clear();
    m_bufferPosition = 0;
    m_fileEnded = true;
}

void LogFileReader::refill()
{
    if (m_continueCheck && !m_continueCheck()) {
        m_buffer.clear();
        m_bufferPosition = 0;
        m_fileEnded = true;
        return;
    }
    m_buffer.remove(0, m_bufferPosition);
    m_bufferPosition = 0;
    const int held = m_buffer.size();
    // What is appended from now on belongs to the next reader.
    const auto size = int(qMin<qint64>(chunkSize, m_fileSize - m_filePosition));
    m_buffer.resize(held + size);
    const qint64 count = m_file.read(m_buffer.data() + held, size);
    m_buffer.resize(held + int(qMax<qint64>(count, 0)));
    m_filePosition += qMax<qint64>(count, 0);
    m_fileEnded = count <= 0 || m_filePosition == m_fileSize;
    if (count < 0)
        m_failure = m_file.errorString();
    else if (m_filePosition < m_fileSize && m_fileEnded)
        m_failure = QCoreApplication::translate("RawLog", "it became shorter while it was read");
}

void LogFileReader::next(StdLogEntry &entry, bool &atEnd)
{
    atEnd = false;
    m_skipCount = 0;
    m_skipPosition = 0;
    entry.clear();
    qint32 remaining = m_buffer.size() - m_bufferPosition;
    for (;;) {
        while (remaining < refillThreshold && !m_fileEnded) {
            refill();
            remaining = m_buffer.size() - m_bufferPosition;
        }
        if (remaining < smallestRest) {
            atEnd = true;
            return;
        }
        const auto *bytes =
            reinterpret_cast<const uchar *>(m_buffer.constData()) + m_bufferPosition;
        const auto sync = qFromLittleEndian<quint16>(bytes);
        const qint32 length = qFromLittleEndian<quint16>(bytes + 2);
        if (sync == syncWord && length + 3 < remaining) {
            const qint32 size = length + qint32(lengthOverhead);
            entry.rebuild(bytes, std::size_t(size));
            m_bufferPosition += size;
            return;
        }
        if (m_skipCount == 0)
            m_skipPosition = position();
        ++m_skipCount;
        ++m_bufferPosition;
        --remaining;
    }
}
