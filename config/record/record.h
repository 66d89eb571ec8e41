#pragma once

#include "config/record/field.h"
#include "config/record/items.h"
#include "config/record/ownedlist.h"

#include <QList>

#include <algorithm>
#include <array>
#include <memory>

// Streams, compares, resets and copies every class that lists its fields (see field.h).
//
// A record is a frame: one byte array item, whose bytes are a stream of their own. It begins with
// the record's version (qint32), then come the fields up to what that version has. So whatever
// stands in a record, the next one starts in the right place. All integers are big-endian, unsigned
// ones travel in the item of their width. A list is a qint32 count and its elements.
namespace record {

namespace detail {

template <class T>
inline constexpr bool isArray = false;
template <class T, std::size_t N>
inline constexpr bool isArray<std::array<T, N>> = true;

template <class T>
inline constexpr bool isOwnedList = false;
template <class T>
inline constexpr bool isOwnedList<OwnedList<T>> = true;

template <class T>
inline constexpr bool isValueList = false;
template <class T>
inline constexpr bool isValueList<QList<T>> = true;
template <>
inline constexpr bool isValueList<QStringList> = true;

template <class T>
inline constexpr bool isList = isOwnedList<T> || isValueList<T>;

template <class T>
const T &element(const T &value)
{
    return value;
}
template <class T>
const T &element(T *owned)
{
    return *owned;
}

template <class R, class = void>
struct ResetsUnstreamed : std::false_type
{};
template <class R>
struct ResetsUnstreamed<R, std::void_t<decltype(std::declval<R &>().resetUnstreamed())>>
    : std::true_type
{};

template <class R, class = void>
struct TakesVersion : std::false_type
{};
template <class R>
struct TakesVersion<R, std::void_t<decltype(std::declval<R &>().versionRead(qint32()))>>
    : std::true_type
{};

template <class R>
void writeRecord(QDataStream &out, const R &record);

template <class T>
void writeValue(QDataStream &out, const T &value)
{
    if constexpr (isRecord<T>) {
        writeRecord(out, value);
    } else if constexpr (isArray<T> || isList<T>) {
        if constexpr (isList<T>)
            out << qint32(value.size());
        for (const auto &item : value)
            writeValue(out, element(item));
    } else {
        out << value;
    }
}

template <class R>
void writeItems(QDataStream &out, const R &record)
{
    forEachItem<R>([&out, &record](const auto &item) {
        if constexpr (std::is_same_v<std::decay_t<decltype(item)>, ZeroByte>)
            out << qint8(0);
        else
            writeValue(out, record.*item.member);
    });
}

template <class R>
void writeRecord(QDataStream &out, const R &record)
{
    if constexpr (isFramed<R>) {
        QByteArray frame;
        QDataStream content(&frame, QIODevice::WriteOnly);
        content.setVersion(out.version());
        content << R::streamVersion;
        writeItems(content, record);
        out << frame;
    } else {
        writeItems(out, record);
    }
}

// What one call of read() has met. A record that lacks items still becomes an object of its full
// size, and four bytes are enough to announce one. So their number is limited: without that a file
// of some megabytes would take gigabytes of memory.
struct ReadState
{
    static constexpr int maxShortRecords = 10'000;

    int shortRecords = 0; // whose frames end before their items do

    [[nodiscard]] bool isHostile() const { return shortRecords > maxShortRecords; }
};

template <class R>
qint32 fillRecord(QDataStream &in, R &fresh, ReadState &state);
template <class T>
void readValue(QDataStream &in, T &value, ReadState &state);

// A list ends with its stream, whatever its count says.
template <class T>
void readList(QDataStream &in, T &list, ReadState &state)
{
    qint32 count = 0;
    in >> count;
    for (; count > 0 && !in.atEnd() && !state.isHostile(); --count) {
        if constexpr (isOwnedList<T>) {
            readValue(in, list.add(), state);
        } else {
            typename T::value_type value{};
            readValue(in, value, state);
            list.append(value);
        }
    }
}

// Reads into a default value. Missing items read as zero or null.
template <class T>
void readValue(QDataStream &in, T &value, ReadState &state)
{
    if constexpr (isRecord<T>) {
        fillRecord(in, value, state);
    } else if constexpr (isArray<T>) {
        for (auto &item : value)
            readValue(in, item, state);
    } else if constexpr (isList<T>) {
        readList(in, value, state);
    } else if constexpr (std::is_same_v<T, QString>) {
        value = readString(in);
    } else {
        in >> value;
    }
}

template <class R>
void readItems(QDataStream &in, R &fresh, qint32 version, ReadState &state)
{
    forEachItem<R>([&in, &fresh, version, &state](const auto &item) {
        if constexpr (std::is_same_v<std::decay_t<decltype(item)>, ZeroByte>) {
            qint8 skipped = 0;
            in >> skipped;
        } else if (version >= item.since) {
            auto &value = fresh.*item.member;
            readValue(in, value, state);
            if constexpr (std::is_unsigned_v<std::decay_t<decltype(value)>>) {
                if (value > item.maximum)
                    value = static_cast<std::decay_t<decltype(value)>>(item.maximum);
            }
        }
    });
}

// Reads into a default record; what the version lacks keeps its default. Gives the version.
template <class R>
qint32 fillRecord(QDataStream &in, R &fresh, ReadState &state)
{
    if constexpr (isFramed<R>) {
        const QByteArray frame = readBytes(in);
        QDataStream content(frame);
        content.setVersion(in.version());
        qint32 version = 0;
        content >> version;
        readItems(content, fresh, version, state);
        if (content.status() != QDataStream::Ok)
            ++state.shortRecords;
        if constexpr (TakesVersion<R>::value)
            fresh.versionRead(version);
        return version;
    } else {
        readItems(in, fresh, std::numeric_limits<qint32>::max(), state);
        return 0;
    }
}

// Moves what is streamed and leaves the other members of the target alone.
template <class T>
void moveValue(T &from, T &to)
{
    if constexpr (isRecord<T>) {
        forEachField<T>([&](const auto &f) { moveValue(from.*f.member, to.*f.member); });
    } else if constexpr (isArray<T>) {
        for (std::size_t i = 0; i < from.size(); ++i)
            moveValue(from[i], to[i]);
    } else {
        to = std::move(from);
    }
}

template <class T>
void resetValue(T &pristine, T &value)
{
    if constexpr (isRecord<T>) {
        forEachField<T>([&](const auto &f) {
            if (!f.kept)
                resetValue(pristine.*f.member, value.*f.member);
        });
        if constexpr (ResetsUnstreamed<T>::value)
            value.resetUnstreamed();
    } else if constexpr (isArray<T>) {
        for (std::size_t i = 0; i < pristine.size(); ++i)
            resetValue(pristine[i], value[i]);
    } else {
        value = std::move(pristine);
    }
}

template <class T>
bool equalValues(const T &a, const T &b)
{
    if constexpr (isRecord<T>) {
        bool equal = true;
        forEachField<T>(
            [&](const auto &f) { equal = equal && equalValues(a.*f.member, b.*f.member); });
        return equal;
    } else if constexpr (isArray<T> || isOwnedList<T>) {
        return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const auto &x, const auto &y) {
            return equalValues(element(x), element(y));
        });
    } else {
        return a == b;
    }
}

} // namespace detail

// Writes the record in its frame. Nothing but the stream's status tells of a failure.
template <class R>
void write(QDataStream &out, const R &record)
{
    detail::writeRecord(out, record);
}

// Reads a record. Missing items read as zero or null, fields that the stream's version lacks get
// their defaults, members that aren't streamed stay as they are. The record changes as one, at the
// end. Lists end early behind ten thousand records that lack items: such a stream is no record.
template <class R>
void read(QDataStream &in, R &record)
{
    R fresh;
    detail::ReadState state;
    const qint32 version = detail::fillRecord(in, fresh, state);
    forEachField<R>([&](const auto &f) {
        if (!isFramed<R> || version >= f.since)
            detail::moveValue(fresh.*f.member, record.*f.member);
        else
            detail::resetValue(fresh.*f.member, record.*f.member);
    });
    if constexpr (detail::TakesVersion<R>::value)
        record.versionRead(version);
}

// Reads into a new record.
template <class R>
[[nodiscard]] std::unique_ptr<R> readNew(QDataStream &in)
{
    auto record = std::make_unique<R>();
    read(in, *record);
    return record;
}

// Sets all that is streamed to its defaults, but for the fields that are kept.
template <class R>
void reset(R &record)
{
    R pristine;
    detail::resetValue(pristine, record);
}

// Compares all that is streamed.
template <class R>
[[nodiscard]] bool equal(const R &a, const R &b)
{
    return detail::equalValues(a, b);
}

// The record in its frame.
template <class R>
[[nodiscard]] QByteArray toBytes(const R &record)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setVersion(dataStreamVersion);
    write(out, record);
    return bytes;
}

// Reads the frame at the start of the bytes. False when it isn't whole: then the record is read as
// if its frame were empty.
template <class R>
bool fromBytes(const QByteArray &bytes, R &record)
{
    static_assert(isFramed<R>, "only a frame tells where it ends");
    QDataStream in(bytes);
    in.setVersion(dataStreamVersion);
    read(in, record);
    return frameIsWhole(bytes);
}

// A deep copy of all that is streamed; what isn't is reset.
template <class R>
void copy(const R &from, R &to)
{
    reset(to);
    fromBytes(toBytes(from), to);
}

} // namespace record

template <class R>
std::enable_if_t<record::isRecord<R>, QDataStream &> operator<<(QDataStream &out, const R &value)
{
    record::write(out, value);
    return out;
}

template <class R>
std::enable_if_t<record::isRecord<R>, QDataStream &> operator>>(QDataStream &in, R &value)
{
    record::read(in, value);
    return in;
}

template <class R>
[[nodiscard]] std::enable_if_t<record::isRecord<R>, bool> operator==(const R &a, const R &b)
{
    return record::equal(a, b);
}

template <class R>
[[nodiscard]] std::enable_if_t<record::isRecord<R>, bool> operator!=(const R &a, const R &b)
{
    return !record::equal(a, b);
}

// The streaming code of a record is long, and every file that streams a configuration needs that of
// all its records. So it is compiled once: the header says RECORD_CODE_ELSEWHERE behind the class,
// one source file of the library says RECORD_CODE_HERE.
#define RECORD_CODE(specifier, R)                                                                  \
    specifier template void record::detail::writeRecord(QDataStream &, const R &);                 \
    specifier template qint32 record::detail::fillRecord(QDataStream &, R &,                       \
                                                         record::detail::ReadState &);             \
    specifier template void record::detail::moveValue(R &, R &);                                   \
    specifier template void record::detail::resetValue(R &, R &);                                  \
    specifier template bool record::detail::equalValues(const R &, const R &);                     \
    specifier template void record::read(QDataStream &, R &);
#define RECORD_CODE_ELSEWHERE(R) RECORD_CODE(extern, R)
#define RECORD_CODE_HERE(R) RECORD_CODE(, R)
