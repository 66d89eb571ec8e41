#pragma once

#include "MDF4Conversion/conversionsummary.h"
#include "MDF4Conversion/outputnames.h"
#include "cli/exitcodes.h"

#include <QJsonArray>
#include <QObject>
#include <QString>
#include <QStringList>

#include <memory>

class Console;

// Converts raw logs one after the other, each on a worker thread, which prints its messages and
// progress, while this thread watches for Ctrl-C.
class BatchConversion : public QObject
{
    Q_OBJECT

public:
    struct Options
    {
        QString outputFolder; // empty: beside each input
        int threads = 1;
    };

    BatchConversion(Console &console, const Options &options, QObject *parent = nullptr);

    // Returns when all are done, or with Cancelled.
    ExitCode run(const QStringList &files);

    // One object for each file that was begun.
    [[nodiscard]] const QJsonArray &summaries() const { return m_summaries; }

private:
    struct Result
    {
        ConversionSummary summary;
        double seconds = 0;
    };

    Result convert(const QString &file);
    void report(const QString &file, const Result &result);

    Console &m_console;
    const Options m_options;
    const std::shared_ptr<OutputNames> m_names = std::make_shared<OutputNames>();
    QJsonArray m_summaries;
};
