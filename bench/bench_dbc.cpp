// Measures the DBC parser, all in one run: the load, and as its limit reading the same file, finding
// its lines and making the same signals in memory without any parsing; peak memory; time by length
// from 1 to 20 MB. Times are those of the processor, so that other work on the machine shows less.
//
//   bench_dbc            files of 1, 5 and 20 MB
//   bench_dbc --smoke    a small file, to see that it runs
//
// Exit code 1 when a bar isn't met (not with --smoke).

#include "bench/dbcmaker.h"
#include "bench/measure.h"
#include "can/dbcfileparser.h"
#include "config/record/ownedlist.h"

#include <QCoreApplication>
#include <QFile>
#include <QLoggingCategory>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <memory>

using bench::bar;

namespace {

constexpr int megabyte = 1000000;
// Bars, on a machine of two processors.
constexpr double minMegabytesPerSecond = 60;
constexpr double maxPeakForFile = 12;
constexpr double maxTimesLimit = 6;
constexpr double maxLinearityError = 0.3; // what 1 MB holds stays in the processor's cache

struct Run
{
    double seconds = 0;
    double limitSeconds = 0;
    double peakMegabytes = 0; // of the process that loaded; 0 where it can't be told
    double records = 0;
};

// Of the processor, since the start of the process.
double processorSeconds()
{
    return double(std::clock()) / CLOCKS_PER_SEC;
}

QString copyOf(const QString &text)
{
    return QString(text.constData(), text.size());
}

int lineCount(const QByteArray &bytes)
{
    const char *end = bytes.constData() + bytes.size();
    int lines = 0;
    for (const char *at = bytes.constData(); at < end; ++lines) {
        const void *feed = std::memchr(at, '\n', std::size_t(end - at));
        at = feed ? static_cast<const char *>(feed) + 1 : end;
    }
    return lines;
}

// No reader of signals takes less than reading the file, finding its lines and making the signals.
double limitSeconds(const QString &path, const QList<StreamingClass_DBC_Signal *> &records)
{
    const double start = processorSeconds();
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || lineCount(file.readAll()) < records.size())
        std::exit(2);
    OwnedList<StreamingClass_DBC_Signal> copies;
    for (const StreamingClass_DBC_Signal *record : records) {
        auto copy = std::make_unique<StreamingClass_DBC_Signal>(*record);
        copy->name = copyOf(record->name);
        copy->unit = copyOf(record->unit);
        copy->description = copyOf(record->description);
        copies.append(std::move(copy));
    }
    return processorSeconds() - start;
}

// What a child process does, so that its memory is its own.
int loadHere(const QString &path)
{
    DbcFileParser parser;
    const double start = processorSeconds();
    const bool isFine = parser.load(path);
    const double seconds = processorSeconds() - start;
    const double peak = bench::peakBytes() / megabyte;
    if (!isFine) {
        std::fprintf(stderr, "%s\n", qUtf8Printable(parser.errorText()));
        return 1;
    }
    std::printf("%.6f %.6f %.1f %d\n", seconds, limitSeconds(path, parser.signalList()), peak,
                parser.signalList().size());
    return 0;
}

Run loadInChild(const QString &path)
{
    QProcess child;
    child.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--load"), path});
    if (!child.waitForFinished(-1) || child.exitCode() != 0) {
        std::fprintf(stderr, "the load failed: %s\n", child.readAllStandardError().constData());
        std::exit(2);
    }
    const QList<QByteArray> numbers = child.readAllStandardOutput().trimmed().split(' ');
    return {numbers.at(0).toDouble(), numbers.at(1).toDouble(), numbers.at(2).toDouble(),
            numbers.at(3).toDouble()};
}

// The best of some runs.
Run bestOf(int runs, const QString &path)
{
    Run best = loadInChild(path);
    for (int i = 1; i < runs; ++i) {
        const Run run = loadInChild(path);
        best.seconds = std::min(best.seconds, run.seconds);
        best.limitSeconds = std::min(best.limitSeconds, run.limitSeconds);
        best.peakMegabytes = std::max(best.peakMegabytes, run.peakMegabytes);
    }
    return best;
}

struct Measured
{
    Run load;
    double megabytes = 0;
};

Measured measure(const QTemporaryDir &folder, int size, int runs)
{
    const QByteArray bytes = bench::makeDbc(size);
    QFile file(folder.filePath(QStringLiteral("bench.dbc")));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
        std::fprintf(stderr, "%s\n", qUtf8Printable(file.errorString()));
        std::exit(2);
    }
    file.close();
    Measured result;
    result.megabytes = double(bytes.size()) / megabyte;
    result.load = bestOf(runs, file.fileName());
    std::printf(
        "%5.1f MB, %.0f signals: %.4f s, %.0f MB/s, %.2f M signals/s, peak %.1f MB; the limit "
        "%.4f s\n",
        result.megabytes, result.load.records, result.load.seconds,
        result.megabytes / result.load.seconds, result.load.records / result.load.seconds / 1e6,
        result.load.peakMegabytes, result.load.limitSeconds);
    std::fflush(stdout);
    return result;
}

int runAll(bool smoke)
{
    const QTemporaryDir folder;
    if (smoke) {
        (void)measure(folder, megabyte / 2, 1); // a small file is all start-up
        return 0;
    }
    constexpr int runs = 7;
    const Measured small = measure(folder, megabyte, runs);
    (void)measure(folder, 5 * megabyte, runs);
    const Measured large = measure(folder, 20 * megabyte, runs);
    const double rate = large.megabytes / large.load.seconds;
    const double times = large.load.seconds / large.load.limitSeconds;
    const double peak = large.load.peakMegabytes / large.megabytes;
    const double growth =
        large.load.seconds / large.megabytes / (small.load.seconds / small.megabytes);
    bool ok = true;
    std::printf("bars\n");
    ok &= bar("MB/s", rate, "at least", minMegabytesPerSecond, rate >= minMegabytesPerSecond);
    ok &= bar("load for its limit", times, "at most", maxTimesLimit, times <= maxTimesLimit);
    ok &= bar("peak memory for size of the file", peak, "at most", maxPeakForFile,
              peak <= maxPeakForFile);
    ok &= bar("time for each MB, 20 MB for 1 MB", growth, "at most", 1 + maxLinearityError,
              growth <= 1 + maxLinearityError);
    return ok ? 0 : 1;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("default=false"));
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 3 && arguments.at(1) == QLatin1String("--load"))
        return loadHere(arguments.at(2));
    return runAll(arguments.contains(QStringLiteral("--smoke")));
}
