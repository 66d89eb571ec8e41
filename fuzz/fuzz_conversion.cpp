// The input is a raw log: reading and converting it must end with a whole file or with none.

#include "MDF4Conversion/workerconvertmdf4.h"

#include <QDir>
#include <QFile>
#include <QLoggingCategory>
#include <QTemporaryDir>

#include <cstdint>
#include <cstdlib>

namespace {

struct Folder
{
    Folder() { QLoggingCategory::setFilterRules(QStringLiteral("default=false")); }
    QTemporaryDir dir;
};

void require(bool condition)
{
    if (!condition)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const Folder folder;
    ConversionJob job;
    job.inputFile = folder.dir.filePath(QStringLiteral("in.rld"));
    job.outputFile = folder.dir.filePath(QStringLiteral("out.mf4"));
    job.temporaryDir = folder.dir.filePath(QStringLiteral("tmp_1"));
    QFile input(job.inputFile);
    require(input.open(QIODevice::WriteOnly | QIODevice::Truncate));
    input.write(reinterpret_cast<const char *>(data), qint64(size));
    input.close();

    WorkerConvertMDF4 worker(job);
    worker.process();
    require(worker.summary().written == QFile::exists(job.outputFile));
    QFile::remove(job.outputFile);
    QFile::remove(job.inputFile);
    require(
        QDir(folder.dir.path()).isEmpty(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden));
    return 0;
}
