#include "MDF4Conversion/rawlog/rawlogwriter.h"

#include "MDF4Conversion/rawlog/logconfiguration.h"

#include <QtEndian>

bool RawLogWriter::writeConfiguration(const TerminalStruct &configuration)
{
    const QByteArray block = rawlog::encodeConfiguration(configuration);
    char size[4];
    qToLittleEndian(static_cast<quint32>(block.size()), size);
    return write(QByteArray(size, int(sizeof size))) && write(block);
}

bool RawLogWriter::write(const QByteArray &bytes)
{
    m_ok = m_ok && m_device.write(bytes) == bytes.size();
    return m_ok;
}
