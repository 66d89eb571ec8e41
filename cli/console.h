#pragma once

#include <QFile>
#include <QString>
#include <QStringList>

// Standard output and standard error of a command line program, in UTF-8, with a progress line that
// makes way for messages. Used by one thread at a time.
class Console
{
public:
    // Prepares Qt for the command line: names and texts are UTF-8 on Unix whatever the locale says,
    // and Qt's own diagnostics stay silent unless QT_LOGGING_RULES asks for them.
    static void setUp();

    // Messages go into this file, too. False when it can't be written; `failure` tells why.
    bool openLog(const QString &path, QString &failure);
    // Texts about output that got lost, on standard output or in the log file.
    [[nodiscard]] QStringList writeFailures() const;
    void setQuiet(bool quiet) { m_quiet = quiet; }

    // A line on standard output.
    void print(const QString &text);
    // One message a line: "Status: ", "Warning: ", "Error: " and the text on standard error.
    void status(const QString &text) { message(QStringLiteral("Status: "), text, m_quiet); }
    void warning(const QString &text) { message(QStringLiteral("Warning: "), text, false); }
    void error(const QString &text) { message(QStringLiteral("Error: "), text, false); }

    // Shown on a terminal only, in place of the last one.
    void showProgress(const QString &text);
    void clearProgress();

private:
    void message(const QString &kind, const QString &text, bool onlyLog);

    bool m_quiet = false;
    QFile m_log;
    QString m_logFailure; // of the first message that could not be written
    int m_progressWidth = 0;
};

// A message as plain text: the entities of rich text as characters, on one line.
[[nodiscard]] QString plainMessage(const QString &text);

// A file name as the user knows it.
[[nodiscard]] QString displayName(const QString &path);

// UTC in us since 1970 as ISO 8601 with milliseconds.
[[nodiscard]] QString utcText(quint64 utc_us);
// A number with what it counts, in which %1 stands for it: "1 byte is", "%1 bytes are".
[[nodiscard]] QString counted(quint64 count, const char *one, const char *many);
