#include "link/loggerstorage.h"

#include "link/protocol/commands.h"
#include "link/protocol/reply.h"

#include <algorithm>

namespace loggerstorage {

namespace {

std::optional<qint64> bytesIn(const QString &text)
{
    bool isNumber = false;
    const qint64 bytes = text.toLongLong(&isNumber);
    return isNumber && bytes >= 0 ? std::optional(bytes) : std::nullopt;
}

// Nothing but the list: without the key, the line end and what is behind a NUL byte.
QString listIn(const QByteArray &reply)
{
    const int end = reply.indexOf('\0');
    QString text = QString::fromLatin1(end < 0 ? reply : reply.left(end));
    text.remove(0, text.indexOf(QLatin1Char('=')) + 1);
    if (text.endsWith(QLatin1String("\r\n")))
        text.chop(2);
    return text.trimmed();
}

File fileIn(const QString &entry)
{
    const int comma = entry.lastIndexOf(QLatin1Char(','));
    if (comma < 0)
        return {entry, {}, {}};
    const QString size = entry.mid(comma + 1);
    return {entry.left(comma), size, bytesIn(size)};
}

} // namespace

// From the end, so that a list without an end costs no more than what is taken of it.
Listing filesIn(const QByteArray &reply)
{
    using protocol::Command;
    constexpr int headBytes = 4096; // tell whether this is a list; its values aren't divided here
    const auto outcome = protocol::evaluateGetReply(
        reply.left(headBytes), protocol::commandRow(Command::GetLogFiles).word(),
        protocol::replyKeyOf(Command::GetLogFiles), protocol::ValueCount::atLeast(1));
    Listing listing;
    listing.error = outcome.error;
    if (!outcome)
        return listing;

    const QString list = listIn(reply);
    int end = list.size();
    while (end > 0) {
        const int begin = list.lastIndexOf(QLatin1Char(';'), end - 1) + 1;
        if (begin < end && listing.files.size() < Listing::maxFiles)
            listing.files.append(fileIn(list.mid(begin, end - begin)));
        else if (begin < end)
            ++listing.left_out;
        end = begin - 1;
    }
    std::reverse(listing.files.begin(), listing.files.end());
    return listing;
}

QString shownName(const QString &name)
{
    constexpr int maxShown = 255;
    QString shown = name.size() > maxShown ? name.left(maxShown) + QStringLiteral("...") : name;
    for (QChar &character : shown)
        if (character.category() == QChar::Other_Control)
            character = QChar::ReplacementCharacter;
    return shown;
}

std::optional<DiscSpace> discSpaceIn(const QStringList &values)
{
    const auto free = bytesIn(values.value(0));
    const auto total = bytesIn(values.value(1));
    return free && total ? std::optional(DiscSpace{*free, *total}) : std::nullopt;
}

QString sizeText(qint64 bytes)
{
    struct Unit
    {
        int shift;
        const char *text;
    };
    static constexpr Unit units[] = {{30, " [GiB]"}, {20, " [MiB]"}, {10, " [KiB]"}};
    const auto unit = std::find_if(std::begin(units), std::end(units) - 1,
                                   [bytes](const Unit &u) { return bytes >> u.shift > 0; });
    return QString::number(bytes >> unit->shift) + QLatin1String(unit->text);
}

} // namespace loggerstorage
