// Measures the conversion against its limits, all in one run: parsing alone, deflating the same
// blocks alone on one thread, the whole conversion on one and two threads, and peak memory.
//
//   bench_conversion            5 million entries, 60 and 600 messages, 1 to 20 million for linearity
//   bench_conversion --smoke    a small log, to see that it runs
//
// Exit code 1 when a bar isn't met (not with --smoke).

#include "MDF4Conversion/rawlog/benchlog.h"
#include "MDF4Conversion/rawlog/logfilereader.h"
#include "MDF4Conversion/workerconvertmdf4.h"
#include "bench/dzblocks.h"
#include "bench/measure.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>

using bench::bar;

namespace {

constexpr int signalsPerMessage = 8;
// Bars, on a machine of two processors.
constexpr double maxTimesDeflate = 2.5;
constexpr double minEntriesPerSecond = 2.0e6;
constexpr double minShareWithManyMessages = 0.8;
constexpr double maxLinearityError = 0.1;
constexpr double maxPeakMegabytes = 150;

struct Run
{
    double seconds = 0;
    double peakMegabytes = 0; // of the process that converted; 0 where it can't be told
};

// What a child process does, so that its memory is its own.
int convertHere(const QStringList &arguments)
{
    ConversionJob job;
    job.inputFile = arguments.at(2);
    job.outputFile = arguments.at(3);
    job.temporaryDir = arguments.at(3) + QStringLiteral(".tmp");
    job.threads = arguments.at(4).toInt();
    WorkerConvertMDF4 worker(job);
    QElapsedTimer clock;
    clock.start();
    worker.process();
    std::printf("%.6f %.1f\n", double(clock.nsecsElapsed()) * 1e-9,
                bench::peakBytes() / (1024 * 1024));
    return worker.summary().written ? 0 : 1;
}

Run convertInChild(const QString &input, const QString &output, int threads)
{
    QFile::remove(output);
    QProcess child;
    child.start(QCoreApplication::applicationFilePath(),
                {QStringLiteral("--convert"), input, output, QString::number(threads)});
    if (!child.waitForFinished(-1) || child.exitCode() != 0) {
        std::fprintf(stderr, "the conversion failed: %s\n",
                     child.readAllStandardError().constData());
        std::exit(2);
    }
    const QList<QByteArray> numbers = child.readAllStandardOutput().trimmed().split(' ');
    return {numbers.at(0).toDouble(), numbers.at(1).toDouble()};
}

// The best of some runs, so that other work on the machine shows less.
Run bestOf(int runs, const QString &input, const QString &output, int threads)
{
    Run best = convertInChild(input, output, threads);
    for (int i = 1; i < runs; ++i) {
        const Run run = convertInChild(input, output, threads);
        best.seconds = std::min(best.seconds, run.seconds);
        best.peakMegabytes = std::max(best.peakMegabytes, run.peakMegabytes);
    }
    return best;
}

double secondsToParse(const QString &input)
{
    QElapsedTimer clock;
    clock.start();
    LogFileReader reader(input);
    StdLogEntry entry;
    for (bool atEnd = false; !atEnd;)
        reader.next(entry, atEnd);
    return double(clock.nsecsElapsed()) * 1e-9;
}

void printRate(const char *what, double seconds, double entries, double bytes)
{
    std::printf("  %-34s %7.3f s  %7.2f M entries/s  %7.1f MB/s\n", what, seconds,
                entries / seconds / 1e6, bytes / seconds / 1e6);
    std::fflush(stdout);
}

void makeLog(const QString &path, qint64 entries, int messages)
{
    const QString failure = benchlog::write(path, {entries, messages, benchlog::Widths::Mixed});
    if (failure.isNull())
        return;
    std::fprintf(stderr, "%s\n", failure.toUtf8().constData());
    std::exit(2);
}

struct Measured
{
    Run one;
    Run two;
    double deflateSeconds = 0;
};

Measured measure(const QTemporaryDir &dir, qint64 entries, int messages, int runs)
{
    const QString input = dir.filePath(QStringLiteral("bench_%1.rld").arg(messages));
    const QString output = dir.filePath(QStringLiteral("bench_%1.mf4").arg(messages));
    makeLog(input, entries, messages);
    const auto bytes = double(QFileInfo(input).size());
    const auto count = double(entries);
    std::printf("%.1f million entries of %d messages with %d signals, %.1f MB\n", count / 1e6,
                messages, signalsPerMessage, bytes / 1e6);
    printRate("parsing alone", secondsToParse(input), count, bytes);
    Measured result;
    result.one = bestOf(runs, input, output, 1);
    printRate("conversion, one thread", result.one.seconds, count, bytes);
    result.two = bestOf(runs, input, output, 2);
    printRate("conversion, two threads", result.two.seconds, count, bytes);
    {
        const DzBlocks blocks = readDzBlocks(output);
        result.deflateSeconds = secondsToDeflate(blocks);
        for (int i = 1; i < runs; ++i)
            result.deflateSeconds = std::min(result.deflateSeconds, secondsToDeflate(blocks));
        std::printf("  %-34s %7.3f s  %7.1f MB/s, %.1f MB to %.1f MB\n",
                    "deflating the same blocks, alone", result.deflateSeconds,
                    double(blocks.originalBytes) / result.deflateSeconds / 1e6,
                    double(blocks.originalBytes) / 1e6, double(blocks.compressedBytes) / 1e6);
    }
    std::printf("  peak memory %.1f MB and %.1f MB\n", result.one.peakMegabytes,
                result.two.peakMegabytes);
    QFile::remove(input);
    return result;
}

// Time for each entry at 1 and at 20 million, and the peak memory of the larger log.
bool measureLinearity(const QTemporaryDir &dir, int messages, int runs)
{
    constexpr qint64 counts[] = {1000000, 5000000, 20000000};
    double perMillion[3] = {};
    Run last;
    std::printf("time by length\n");
    for (int i = 0; i < 3; ++i) {
        const QString input = dir.filePath(QStringLiteral("length.rld"));
        makeLog(input, counts[i], messages);
        last = bestOf(runs, input, dir.filePath(QStringLiteral("length.mf4")), 2);
        perMillion[i] = last.seconds / (double(counts[i]) / 1e6);
        std::printf("  %2lld million: %.3f s, %.4f s for each million, peak %.1f MB\n",
                    static_cast<long long>(counts[i] / 1000000), last.seconds, perMillion[i],
                    last.peakMegabytes);
        std::fflush(stdout);
    }
    const double growth = perMillion[2] / perMillion[0];
    const bool linear = bar("20 million for 1 million, each entry", growth, "at most",
                            1 + maxLinearityError, growth <= 1 + maxLinearityError);
    const bool small = bar("peak memory in MB", last.peakMegabytes, "at most", maxPeakMegabytes,
                           last.peakMegabytes <= maxPeakMegabytes);
    return linear && small;
}

int runAll(bool smoke)
{
    const QTemporaryDir dir;
    const qint64 entries = smoke ? 100000 : 5000000;
    const int runs = smoke ? 1 : 3;
    const Measured few = measure(dir, entries, 60, runs);
    const Measured many = measure(dir, entries, 600, runs);
    if (smoke)
        return 0; // a small log is all start-up
    const double times = few.two.seconds / few.deflateSeconds;
    const double rate = double(entries) / few.two.seconds;
    const double share = few.two.seconds / many.two.seconds;
    const double peak = std::max({few.one.peakMegabytes, few.two.peakMegabytes,
                                  many.one.peakMegabytes, many.two.peakMegabytes});
    bool ok = true;
    std::printf("bars\n");
    ok &= bar("conversion for deflate alone", times, "at most", maxTimesDeflate,
              times <= maxTimesDeflate);
    ok &= bar("million entries/s", rate / 1e6, "at least", minEntriesPerSecond / 1e6,
              rate >= minEntriesPerSecond);
    ok &= bar("speed with 600 messages for 60", share, "at least", minShareWithManyMessages,
              share >= minShareWithManyMessages);
    ok &= bar("peak memory in MB", peak, "at most", maxPeakMegabytes, peak <= maxPeakMegabytes);
    ok &= measureLinearity(dir, 60, runs);
    return ok ? 0 : 1;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("default=false"));
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 5 && arguments.at(1) == QLatin1String("--convert"))
        return convertHere(arguments);
    return runAll(arguments.contains(QStringLiteral("--smoke")));
}
