#include "cli/batchconversion.h"

#include "MDF4Conversion/progressfigures.h"
#include "MDF4Conversion/workerconvertmdf4.h"
#include "cli/console.h"
#include "cli/conversionjson.h"
#include "cli/interruption.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QFileInfo>
#include <QSysInfo>
#include <QThread>
#include <QTimer>

namespace {

constexpr int watchInterval_ms = 50;

// "file.rld  45 %  120.0 MB/s  0:12 left"
QString progressText(const QString &file, int percent, double seconds)
{
    const QFileInfo info(file);
    QString text = QStringLiteral("%1  %2 %").arg(info.fileName(), QString::number(percent));
    const ProgressFigures figures = progressFigures(percent / 100.0, double(info.size()), seconds);
    if (figures.left_s && figures.bytesPerSecond) {
        text += QStringLiteral("  %1/s  %2 left")
                    .arg(sizeText(*figures.bytesPerSecond), durationText(*figures.left_s));
    }
    return text;
}

} // namespace

BatchConversion::BatchConversion(Console &console, const Options &options, QObject *parent)
    : QObject(parent)
    , m_console(console)
    , m_options(options)
{}

ExitCode BatchConversion::run(const QStringList &files)
{
    ExitCode code = AllDone;
    for (const QString &file : files) {
        if (interruption::requested())
            return Cancelled;
        const Result result = convert(file);
        report(file, result);
        if (result.summary.cancelled)
            return Cancelled;
        if (!result.summary.written)
            code = SomeFileFailed;
        else if (result.summary.errorCount != 0 && code == AllDone)
            code = DoneWithErrors;
    }
    return code;
}

BatchConversion::Result BatchConversion::convert(const QString &file)
{
    ConversionJob job;
    job.inputFile = file;
    job.outputFolder =
        m_options.outputFolder.isEmpty() ? QFileInfo(file).path() : m_options.outputFolder;
    job.names = m_names;
    job.author = environmentUser();
    job.department = QSysInfo::machineHostName();
    job.threads = m_options.threads;

    QThread thread;
    WorkerConvertMDF4 worker(job);
    worker.moveToThread(&thread);
    QElapsedTimer clock;
    QEventLoop loop;
    connect(&thread, &QThread::started, &worker, &WorkerConvertMDF4::process);
    // Printed where they arise: a flood of messages then waits for whoever reads it, instead of
    // gathering in memory. This thread prints nothing until the conversion has finished.
    connect(
        &worker, &WorkerConvertMDF4::sig_status, &worker,
        [this](const QString &text) { m_console.status(text); }, Qt::DirectConnection);
    connect(
        &worker, &WorkerConvertMDF4::sig_warning, &worker,
        [this](const QString &text) { m_console.warning(text); }, Qt::DirectConnection);
    connect(
        &worker, &WorkerConvertMDF4::sig_error, &worker,
        [this](const QString &text) { m_console.error(text); }, Qt::DirectConnection);
    connect(
        &worker, &WorkerConvertMDF4::sig_progress, &worker,
        [this, &file, &clock](int percent) {
            m_console.showProgress(progressText(file, percent, double(clock.elapsed()) / 1000.0));
        },
        Qt::DirectConnection);
    connect(&worker, &WorkerConvertMDF4::finished, &loop, &QEventLoop::quit);
    QTimer watch;
    connect(&watch, &QTimer::timeout, &loop, [&worker] {
        if (interruption::requested())
            worker.requestCancelProcess();
    });
    watch.start(watchInterval_ms);
    clock.start();
    thread.start();
    loop.exec();
    thread.quit();
    thread.wait();
    m_console.clearProgress();
    return {worker.summary(), double(clock.elapsed()) / 1000.0};
}

void BatchConversion::report(const QString &file, const Result &result)
{
    const ConversionSummary &summary = result.summary;
    if (summary.written) {
        quint64 samples = 0;
        for (const ConversionSummary::Group &group : summary.groups)
            samples += group.samples;
        m_console.status(QStringLiteral("%1 -> %2: %3, %4, %5 s")
                             .arg(displayName(file), displayName(summary.outputFile),
                                  counted(quint64(summary.groups.size()), "1 group", "%1 groups"),
                                  counted(samples, "1 record", "%1 records"),
                                  QString::number(result.seconds, 'f', 2)));
    }
    m_summaries.append(conversionJson(file, summary, result.seconds));
}
