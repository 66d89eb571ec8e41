#pragma once

#include "cli/exitcodes.h"
#include "cli/fileinspection.h"

#include <QElapsedTimer>
#include <QStringList>

class Console;
class JsonWriter;

// Inspects files one after the other, with messages and progress on a console; Ctrl-C ends it.
class InspectionRun
{
public:
    explicit InspectionRun(Console &console)
        : m_console(console)
    {}

    // Saves the configuration of the file instead of showing what is in it. For one file.
    void saveConfigurationAs(const QString &path) { m_saveAs = path; }
    // Writes one object for each file instead of a text.
    void writeJsonTo(JsonWriter &json) { m_json = &json; }

    [[nodiscard]] ExitCode run(const QStringList &files);

private:
    [[nodiscard]] ExitCode inspect(const QString &file);
    [[nodiscard]] bool save(const FileInspection &inspection, QString &failure) const;
    void show(const FileInspection &inspection);
    void showText(const FileInspection &inspection);
    bool showProgress(const QString &file, qint64 done, qint64 size);

    Console &m_console;
    QString m_saveAs;
    JsonWriter *m_json = nullptr; // the caller's
    QElapsedTimer m_clock;        // since the start of the file
    qint64 m_shownAt_ms = 0;      // of m_clock, when progress was last shown
    bool m_isFirst = true;
};
