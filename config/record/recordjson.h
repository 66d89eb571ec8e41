#pragma once

#include "config/record/record.h"

#include <QJsonArray>
#include <QJsonObject>

namespace record {

template <class R>
[[nodiscard]] QJsonObject toJson(const R &record);

namespace detail {

template <class T>
QJsonValue jsonValue(const T &value)
{
    if constexpr (isRecord<T>) {
        return toJson(value);
    } else if constexpr (isArray<T> || isList<T>) {
        QJsonArray array;
        for (const auto &item : value)
            array.append(jsonValue(element(item)));
        return array;
    } else if constexpr (std::is_same_v<T, quint64>) {
        // JSON values hold signed integers, or doubles above them.
        constexpr auto largest = quint64(std::numeric_limits<qint64>::max());
        return value <= largest ? QJsonValue(qint64(value)) : QJsonValue(double(value));
    } else if constexpr (std::is_integral_v<T> && !std::is_same_v<T, bool>) {
        return qint64(value);
    } else {
        return value;
    }
}

} // namespace detail

// The streamed members under their field names.
template <class R>
QJsonObject toJson(const R &record)
{
    QJsonObject object;
    forEachField<R>([&](const auto &f) {
        object.insert(QLatin1String(f.name), detail::jsonValue(record.*f.member));
    });
    return object;
}

} // namespace record
