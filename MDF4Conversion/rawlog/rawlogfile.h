#pragma once

#include "MDF4Conversion/rawlog/rawlogwriter.h"

#include <QSaveFile>
#include <QString>

// A raw log that appears under its name when it is finished, whole, or not at all.
class RawLogFile
{
public:
    explicit RawLogFile(const QString &path)
        : m_file(path)
        , m_writer(m_file)
    {}

    // Opens the file and writes the configuration.
    bool begin(const TerminalStruct &configuration);
    // Appends one entry or several.
    bool add(const QByteArray &entries);
    // Without this nothing of the file is left.
    bool finish();

    // Names the file and the cause of the first failure; null as long as there is none.
    [[nodiscard]] const QString &failure() const { return m_failure; }

private:
    bool check(bool ok);

    QSaveFile m_file;
    RawLogWriter m_writer;
    QString m_failure;
};
