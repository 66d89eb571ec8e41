#include "MDF4Conversion/workerconvertmdf4.h"

#include "MDF4Conversion/conversionfiles.h"
#include "MDF4Conversion/logfileprocessing.h"
#include "MDF4Conversion/rawlog/logfilereader.h"
#include "config/terminalstruct.h"

#include <QCoreApplication>
#include <QDebug>
#include <QDir>

#include <new>

WorkerConvertMDF4::WorkerConvertMDF4(const ConversionJob &job, QObject *parent)
    : QObject(parent)
    , m_job(job)
{
    qRegisterMetaType<std::map<QString, std::map<QString, QString>>>(
        "std::map<QString,std::map<QString,QString>>");
}

void WorkerConvertMDF4::info(const QString &text)
{
    ++m_summary.statusCount;
    emit sig_status(text);
}

void WorkerConvertMDF4::warning(const QString &text)
{
    ++m_summary.warningCount;
    emit sig_warning(text);
}

void WorkerConvertMDF4::error(const QString &text)
{
    ++m_summary.errorCount;
    emit sig_error(text);
}

void WorkerConvertMDF4::progress(int parsingPercentage, int writingPercentage)
{
    emit sig_progress((parsingPercentage + writingPercentage) / 2);
}

void WorkerConvertMDF4::process()
{
    m_summary = ConversionSummary();
    qDebug("MDF4 conversion starts..");
    info(QStringLiteral("logfile-conversion started..."));
    try {
        m_summary.written = convert();
    } catch (const std::bad_alloc &) {
        error(QCoreApplication::translate("Conversion",
                                          "There is not enough memory for the conversion"));
    }
    if (m_summary.written)
        info(QStringLiteral("Logfile-conversion completed."));
    else
        error(QStringLiteral("Logfile-conversion aborted."));
    emit finished();
}

bool WorkerConvertMDF4::convert()
{
    ConversionFiles files(m_job);
    LogFileReader reader(m_job.inputFile);
    progress(0, 0);
    if (!isConvertible(reader))
        return false;
    if (!files.prepare()) {
        error(files.failure().toHtmlEscaped());
        return false;
    }
    ConversionJob job = m_job;
    job.outputFile = files.outputFile();
    job.temporaryDir = files.temporaryDir();
    m_summary.temporaryDir = files.temporaryDir();
    LogFileProcessing processing(job, *this);
    info(QStringLiteral("grouping signal-channels..."));
    if (!processing.buildInterfaces(*reader.configuration(), m_cancelled)) {
        cancelRequested();
        return false;
    }
    emit sig_updateSignals(processing.signalCounts(), false);
    const bool parsed = parse(reader, processing);
    qDebug("MDF4 Converter Deleting LOG..");
    reader.close();
    if (!parsed)
        return false;
    processing.reportTimestampsAndDebugInfos();
    processing.reportLosses();
    info(QStringLiteral("updating signallist..."));
    emit sig_updateSignals(processing.signalCounts(), true);
    processing.fillSummary(m_summary);

    info(QStringLiteral("creating/writing MDF4..."));
    const bool written =
        processing.writeMdf4(*reader.configuration(), files.growingFile(), m_cancelled);
    if (!written && !cancelRequested())
        error(QStringLiteral("Error writing MDF4"));
    if (!written)
        return false;
    if (!files.publish()) {
        error(files.failure().toHtmlEscaped());
        return false;
    }
    m_summary.outputFile = files.outputFile();
    info(QStringLiteral("Writing MDF4 done."));
    progress(100, 100);
    return true;
}

QString WorkerConvertMDF4::inputFailure(const QString &reason) const
{
    return QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(m_job.inputFile).toHtmlEscaped(),
                                        reason.toHtmlEscaped());
}

bool WorkerConvertMDF4::isConvertible(const LogFileReader &reader)
{
    if (!reader.isOpen()) {
        error(QStringLiteral("File-error, unable to load log-configuration."));
        error(inputFailure(reader.failure()));
        return false;
    }
    info(QStringLiteral("Converter Software-Version:%1.%2%3")
             .arg(versionMajor)
             .arg(versionMinor)
             .arg(QLatin1Char(' ')));
    const auto mainVersion = static_cast<quint32>(reader.configuration()->version);
    info(QStringLiteral("Main-Version of Log-Configuration:%1").arg(mainVersion));
    if (mainVersion == 0) {
        // Records count from 1: what reads as 0 is a block without a record.
        error(inputFailure(QStringLiteral("its configuration is damaged")));
        return false;
    }
    if (mainVersion > supportedMainVersion) {
        error(QStringLiteral("Incompatible logfile, logfile-Version:%1 converter supporting up to "
                             "%2.")
                  .arg(mainVersion)
                  .arg(supportedMainVersion));
        return false;
    }
    if (mainVersion < supportedMainVersion) {
        info(QStringLiteral("Logfile, written by software with Log-Cfg.Vers. &lt; %1 using "
                            "deprecated timestamp-handling.")
                 .arg(supportedMainVersion));
    }
    return true;
}

bool WorkerConvertMDF4::parse(LogFileReader &reader, LogFileProcessing &processing)
{
    info(QStringLiteral("parsing logfile data..."));
    m_lastParsingPercentage = 0;
    reader.setContinueCheck([&] {
        reportProgress(reader);
        return !m_cancelled && processing.temporaryFileFailure().isEmpty();
    });
    StdLogEntry entry;
    for (;;) {
        bool atEnd = false;
        reader.next(entry, atEnd);
        if (atEnd)
            break;
        if (reader.skipCount() != 0) {
            m_summary.skippedBytes += reader.skipCount();
            error(QStringLiteral("%1 bytes have been skipped between two log entries, starting at "
                                 "fileposition %2.")
                      .arg(reader.skipCount())
                      .arg(reader.skipPosition()));
        }
        reportProgress(reader);
        if (entry.valid) {
            ++m_summary.entries;
            processing.processEntry(entry);
        }
        if (cancelRequested())
            return false;
    }
    if (cancelRequested())
        return false;
    if (!reader.failure().isEmpty()) {
        error(inputFailure(reader.failure()));
    }
    if (!processing.temporaryFileFailure().isEmpty()) {
        error(processing.temporaryFileFailure().toHtmlEscaped());
        return false;
    }
    return true;
}

void WorkerConvertMDF4::reportProgress(const LogFileReader &reader)
{
    const int percentage = qBound(0, reader.percent(), 100);
    if (percentage > m_lastParsingPercentage) {
        m_lastParsingPercentage = percentage;
        progress(percentage, 0);
    }
}

bool WorkerConvertMDF4::cancelRequested()
{
    if (!m_cancelled)
        return false;
    if (!m_summary.cancelled) {
        m_summary.cancelled = true;
        error(QStringLiteral("cancel conversion requested by user"));
    }
    return true;
}
