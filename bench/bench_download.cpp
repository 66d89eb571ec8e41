// Figures of a download from the simulated logger over loopback:
//
//     bench_download [--mib N] [--folder PATH] [--smoke]
//
// A file of 2 GiB is fetched by the tool, and the same bytes are copied by a plain pair of sockets:
// one thread reads the file and sends, another receives and writes. Each is measured several times
// in turn, the best counts. The download has to reach 90 % of the plain copy, with memory flat.
// It ends with 1 when a bar is missed. With --smoke the file is small and no bar is judged.

#include "bench/bars.h"
#include "bench/plaincopy.h"
#include "link/downloadlist.h"
#include "link/protocol/messagetypes.h"
#include "tests/support/simulatedlogger.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <optional>

namespace {

constexpr double speedBar = 0.90;   // of the plain copy
constexpr double growthBar_MB = 16; // the simulated logger's buffers are in it
constexpr int rounds = 4;
constexpr qint64 mebi = 1 << 20;

// Of this process, in MB; none where the system doesn't tell.
std::optional<double> residentMemory_MB()
{
    QFile status(QStringLiteral("/proc/self/statm"));
    if (!status.open(QIODevice::ReadOnly))
        return std::nullopt;
    constexpr double pageSize_MB = 4096 / 1e6;
    return status.readAll().split(' ').value(1).toDouble() * pageSize_MB;
}

bool makeFile(const QString &path, qint64 mib)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    QByteArray block(mebi, '\0');
    for (qint64 i = 0; i < mib; ++i) {
        for (int at = 0; at < block.size(); at += 512)
            block[at] = char(i + at / 512); // no file system finds two equal blocks
        if (file.write(block) != block.size())
            return false;
    }
    return file.flush();
}

// The best of several runs.
struct Best
{
    double seconds = 0; // 0 once a run has failed
    bool isFirst = true;

    template <class Run>
    void add(const char *what, Run run)
    {
        const std::clock_t before = std::clock();
        const double seconds_now = run();
        const double processor_s = double(std::clock() - before) / double(CLOCKS_PER_SEC);
        std::printf("%-12s %7.2f s, processor %6.2f s\n", what, seconds_now, processor_s);
        seconds = isFirst ? seconds_now : std::min(seconds, seconds_now);
        isFirst = false;
    }
};

struct Download
{
    double seconds = 0;
    double most_MB = 0; // of memory
    QString error;
};

Download download(SimulatedLogger &logger, const QString &name, qint64 size, const QString &folder)
{
    Download result;
    DownloadList list(logger.address(), protocol::filePort, {name}, {size}, folder);
    QEventLoop loop;
    QObject::connect(&list, &DownloadList::ended, &loop, &QEventLoop::quit, Qt::QueuedConnection);
    QTimer sampler;
    QObject::connect(&sampler, &QTimer::timeout, [&] {
        result.most_MB = std::max(result.most_MB, residentMemory_MB().value_or(0));
    });
    sampler.start(50);
    QElapsedTimer clock;
    clock.start();
    result.error = list.start();
    if (!result.error.isEmpty())
        return result;
    loop.exec();
    result.seconds = double(clock.nsecsElapsed()) / 1e9;
    result.error = list.files().at(0).error;
    for (const QString &path : list.arrived()) {
        if (QFileInfo(path).size() != size)
            result.error = QStringLiteral("The file is not whole.");
        QFile::remove(path);
    }
    return result;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    bool isSmoke = false;
    qint64 mib = 2048;
    QString place = QDir::tempPath();
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--smoke") == 0)
            isSmoke = true;
        else if (std::strcmp(argv[i], "--mib") == 0 && i + 1 < argc)
            mib = std::clamp(std::atoi(argv[++i]), 1, 100'000);
        else if (std::strcmp(argv[i], "--folder") == 0 && i + 1 < argc)
            place = QFile::decodeName(argv[++i]);
    }
    if (isSmoke)
        mib = 32;

    const QTemporaryDir folder(place + QStringLiteral("/bench_download"));
    const QString source = folder.filePath(QStringLiteral("storage"));
    const QString target = folder.filePath(QStringLiteral("target"));
    const QString name = QStringLiteral("drive.rld");
    const QString path = source + QLatin1Char('/') + name;
    if (!QDir().mkpath(source) || !QDir().mkpath(target) || !makeFile(path, mib)) {
        std::fprintf(stderr, "A file of %lld MiB can't be made in %s.\n",
                     static_cast<long long>(mib), qPrintable(place));
        return 1;
    }
    SimulatedLogger logger;
    logger.inspect([&source](simulator::LoggerSimulator &s) { s.state().logFolder = source; });

    Best plain;
    Best fetched;
    const std::optional<double> first_MB = residentMemory_MB();
    double most_MB = 0;
    for (int round = 0; round < rounds; ++round) {
        const auto copyPlainly = [&] {
            const QString copy = target + QStringLiteral("/plain");
            plain.add("plain copy", [&] { return plainCopySeconds(path, copy); });
            QFile::remove(copy);
        };
        const auto fetch = [&] {
            fetched.add("download", [&] {
                const Download result = download(logger, name, mib * mebi, target);
                most_MB = std::max(most_MB, result.most_MB);
                if (!result.error.isEmpty())
                    std::fprintf(stderr, "%s\n", qPrintable(result.error));
                return result.error.isEmpty() ? result.seconds : 0;
            });
        };
        // What one leaves to the drive to write slows the next: each comes first in turn.
        if (round % 2 == 0)
            copyPlainly();
        fetch();
        if (round % 2 != 0)
            copyPlainly();
        if (plain.seconds <= 0 || fetched.seconds <= 0)
            return 1;
    }
    const double megabytes = double(mib * mebi) / 1e6;
    std::printf("%-32s %10.0f MB/s\n", "plain copy over loopback", megabytes / plain.seconds);
    std::printf("%-32s %10.0f MB/s\n", "download", megabytes / fetched.seconds);
    if (isSmoke) {
        std::puts("No bar is judged.");
        return 0;
    }
    Bars bars;
    bars.judgeAtLeast("speed, of the plain copy", plain.seconds / fetched.seconds * 100,
                      speedBar * 100, "%");
    if (first_MB)
        bars.judge("growth of memory in all downloads", most_MB - *first_MB, growthBar_MB, "MB");
    else
        std::puts("This system doesn't tell the memory in use.");
    return bars.allMet ? 0 : 1;
}
