#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

// What a logger tells of its storage. Names and sizes are whatever it sends.
namespace loggerstorage {

struct File
{
    QString name;               // as the logger wants to hear it again; no path
    QString size_text;          // as it came
    std::optional<qint64> size; // bytes, not negative; none: the text is no such number
};

struct Listing
{
    static constexpr int maxFiles = 10'000;

    QVector<File> files; // in the order of the reply; of too many the last ones
    int left_out = 0;    // ahead of them
    QString error;       // for the user; with it there are no files
};

// Reads the reply to sys_get_logfiles(): "logfiles=name,size;name,size;". A name may hold commas, a
// size can't: the last one divides them. What has no comma is a file without a size.
[[nodiscard]] Listing filesIn(const QByteArray &reply);

// The name for a line of a list or box: of bounded length, without control characters.
[[nodiscard]] QString shownName(const QString &name);

// Whole MiB in these bytes.
[[nodiscard]] constexpr qint64 mebibytes(qint64 bytes)
{
    return bytes / (1024 * 1024);
}

struct DiscSpace
{
    qint64 free = 0; // bytes
    qint64 total = 0;
};

// Reads the values of the reply to sys_get_disc_space_info(). None if there are fewer than two
// numbers.
[[nodiscard]] std::optional<DiscSpace> discSpaceIn(const QStringList &values);

// Bytes in whole " [GiB]", " [MiB]" or " [KiB]": the largest unit of which there is one.
[[nodiscard]] QString sizeText(qint64 bytes);

} // namespace loggerstorage
