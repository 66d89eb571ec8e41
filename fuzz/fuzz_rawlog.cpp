// The input is a raw log: its configuration is decoded and every entry parsed.

#include "MDF4Conversion/rawlog/logfilereader.h"

#include <QFile>
#include <QLoggingCategory>
#include <QTemporaryDir>

#include <cstdint>
#include <cstdlib>
#include <memory>

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

// The parser alone, on memory that ends with the input.
void parseOneEntry(const uint8_t *data, size_t size)
{
    const std::unique_ptr<uint8_t[]> exact(new uint8_t[size]);
    std::copy(data, data + size, exact.get());
    StdLogEntry entry;
    entry.rebuild(exact.get(), size);
    require(entry.data.size() <= size);
}

void readLog(const QString &path)
{
    LogFileReader reader(path);
    require(reader.isOpen() == (reader.configuration() != nullptr));
    if (!reader.isOpen())
        return;
    StdLogEntry entry;
    bool atEnd = false;
    qint64 position = reader.position();
    for (reader.next(entry, atEnd); !atEnd; reader.next(entry, atEnd)) {
        require(reader.position() > position && reader.position() <= reader.fileSize());
        require(entry.data.size() <= entry.length);
        position = reader.position();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const Folder folder;
    const QString path = folder.dir.filePath(QStringLiteral("in.rld"));
    QFile input(path);
    require(input.open(QIODevice::WriteOnly | QIODevice::Truncate));
    input.write(reinterpret_cast<const char *>(data), qint64(size));
    input.close();
    readLog(path);
    parseOneEntry(data, size);
    return 0;
}
