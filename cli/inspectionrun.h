#pragma once

#include "cli/exitcodes.h"
#include "cli/fileinspection.h"

#include <QElapsedTimer>
#include <QJsonArray>
#include <QStringList>

class Console;

// Inspects files one after the other, with messages and progress on a console; Ctrl-C ends it.
class InspectionRun
{
public:
    enum class Output { Text, Json, None };

    InspectionRun(Console &console, Output output)
        : m_console(console)
        , m_output(output)
    {}

    // Saves the configuration of the file instead of reading the entries of a log. For one file.
    void saveConfigurationAs(const QString &path) { m_saveAs = path; }

    [[nodiscard]] ExitCode run(const QStringList &files);

    // For Output::Json: one object for each file.
    [[nodiscard]] const QJsonArray &summaries() const { return m_summaries; }

private:
    [[nodiscard]] ExitCode inspect(const QString &file);
    [[nodiscard]] bool save(const FileInspection &inspection, QString &failure) const;
    void show(const FileInspection &inspection);
    bool showProgress(const QString &file, qint64 done, qint64 size);

    Console &m_console;
    const Output m_output;
    QString m_saveAs;
    QJsonArray m_summaries;
    QElapsedTimer m_clock;   // since the start of the file
    qint64 m_shownAt_ms = 0; // of m_clock, when progress was last shown
    bool m_isFirst = true;
};
