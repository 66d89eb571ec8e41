#pragma once

#include "MDF4Conversion/conversionjob.h"
#include "MDF4Conversion/conversionsummary.h"
#include "MDF4Conversion/mdf4_conversion_msg_interface.h"

#include <QObject>
#include <QString>

#include <atomic>
#include <map>

class LogFileProcessing;
class LogFileReader;
struct TerminalStruct;

// Turns one raw log into one MDF4 file. process() runs all of it on the thread of this object; the
// signals are to be delivered queued. requestCancelProcess() may be called from any thread.
class WorkerConvertMDF4 : public QObject, public MDF4_Conversion_Msg_Interface
{
    Q_OBJECT

public:
    // The version that the converter tells and writes into its files.
    static constexpr int versionMajor = ZDS_VERSION_MAJOR;
    static constexpr int versionMinor = ZDS_VERSION_MINOR;
    // The newest main version of a log configuration that can be converted.
    static constexpr int supportedMainVersion = 6;

    explicit WorkerConvertMDF4(const ConversionJob &job, QObject *parent = nullptr);

    // Complete when finished() was emitted.
    [[nodiscard]] const ConversionSummary &summary() const { return m_summary; }

    void info(const QString &text) override;
    void warning(const QString &text) override;
    void error(const QString &text) override;
    void progress(int parsingPercentage, int writingPercentage) override;

public slots:
    void process();
    void requestCancelProcess() { m_cancelled = true; }

signals:
    void sig_status(QString stat);
    void sig_warning(QString warning);
    void sig_error(QString err);
    // Parsing fills 0 to 50, writing 50 to 100.
    void sig_progress(int percentage);
    void sig_updateSignals(std::map<QString, std::map<QString, QString>> sigList, bool expandAll);
    void finished();

private:
    bool convert();
    bool isConvertible(const LogFileReader &reader);
    [[nodiscard]] QString inputFailure(const QString &reason) const;
    bool parse(LogFileReader &reader, LogFileProcessing &processing);
    void reportProgress(const LogFileReader &reader);
    bool cancelRequested();

    const ConversionJob m_job;
    std::atomic<bool> m_cancelled{false};
    int m_lastParsingPercentage = 0;
    ConversionSummary m_summary;
};
