#include "MDF4Conversion/rawlog/rawlogfile.h"

#include <QDir>

bool RawLogFile::begin(const TerminalStruct &configuration)
{
    return check(m_file.open(QIODevice::WriteOnly) && m_writer.writeConfiguration(configuration));
}

bool RawLogFile::add(const QByteArray &entries)
{
    return check(m_writer.writeEntry(entries));
}

bool RawLogFile::finish()
{
    return check(m_writer.ok() && m_file.commit());
}

bool RawLogFile::check(bool ok)
{
    if (!ok && m_failure.isNull())
        m_failure = QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(m_file.fileName()),
                                                 m_file.errorString());
    return ok;
}
