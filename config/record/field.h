#pragma once

#include <QtGlobal>

#include <limits>
#include <tuple>
#include <type_traits>

// The description of a record's items, from which write, read, equality, reset, copy and JSON
// follow. A record is a class with
//   static constexpr qint32 streamVersion    its current version; a class without it has no frame
//                                            and stands bare in its parent
//   static constexpr auto fields()           std::make_tuple of field() and zeroByte(), wire order
// and, where needed, the member functions
//   void resetUnstreamed()                   empties on a reset what the list doesn't name
//   void versionRead(qint32)                 takes the version of the stream that was read
// Defaults are the member initialisers.
namespace record {

inline constexpr qint32 anyVersion = std::numeric_limits<qint32>::min();

template <class R, class T>
struct Field
{
    const char *name; // also the key in JSON
    T R::*member;
    qint32 since = anyVersion; // first record version that has the item
    quint64 maximum = std::numeric_limits<quint64>::max();
    bool kept = false;
    bool repeated = false;

    // A larger value in a stream is read as this one.
    [[nodiscard]] constexpr Field clampedTo(quint64 limit) const
    {
        static_assert(std::is_unsigned_v<T>);
        Field changed = *this;
        changed.maximum = limit;
        return changed;
    }

    // A reset of the record leaves the member as it is.
    [[nodiscard]] constexpr Field keptWhenMissing() const
    {
        Field changed = *this;
        changed.kept = true;
        return changed;
    }

    // The item stands in the stream once more; the last one read wins.
    [[nodiscard]] constexpr Field again() const
    {
        Field changed = *this;
        changed.repeated = true;
        return changed;
    }
};

template <class R, class T>
constexpr Field<R, T> field(const char *name, T R::*member, qint32 since = anyVersion)
{
    return {name, member, since};
}

// A byte without a member: written as 0, skipped when read.
struct ZeroByte
{};

constexpr ZeroByte zeroByte()
{
    return {};
}

template <class T, class = void>
struct IsRecord : std::false_type
{};
template <class T>
struct IsRecord<T, std::void_t<decltype(T::fields())>> : std::true_type
{};
template <class T>
inline constexpr bool isRecord = IsRecord<T>::value;

template <class T, class = void>
struct IsFramed : std::false_type
{};
template <class T>
struct IsFramed<T, std::void_t<decltype(T::streamVersion)>> : std::true_type
{};
template <class T>
inline constexpr bool isFramed = IsFramed<T>::value;

// Calls visit(item) for every field and zero byte of R, in wire order.
template <class R, class Visitor>
constexpr void forEachItem(Visitor &&visit)
{
    std::apply([&visit](const auto &...item) { (visit(item), ...); }, R::fields());
}

// Calls visit(field) once for every member of R that is streamed.
template <class R, class Visitor>
constexpr void forEachField(Visitor &&visit)
{
    forEachItem<R>([&visit](const auto &item) {
        if constexpr (!std::is_same_v<std::decay_t<decltype(item)>, ZeroByte>) {
            if (!item.repeated)
                visit(item);
        }
    });
}

} // namespace record
