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
        return double(value);
    } else if constexpr (std::is_integral_v<T> && !std::is_same_v<T, bool>) {
        return qint64(value);
    } else {
        return value;
    }
}

} // namespace detail

// The streamed members under their field names. Numbers are those of JSON: 64-bit values are exact
// up to 2^53.
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
