#pragma once

#include "config/record/jsonwriter.h"
#include "config/record/record.h"

namespace record {

template <class R>
void writeJson(JsonWriter &json, const R &record);

namespace detail {

template <class T>
void writeJsonValue(JsonWriter &json, const T &value)
{
    if constexpr (isRecord<T>) {
        writeJson(json, value);
    } else if constexpr (isArray<T> || isList<T>) {
        json.beginArray();
        for (const auto &item : value)
            writeJsonValue(json, element(item));
        json.end();
    } else if constexpr (std::is_same_v<T, quint64>) {
        json.value(double(value));
    } else if constexpr (std::is_integral_v<T> && !std::is_same_v<T, bool>) {
        json.value(qint64(value));
    } else {
        json.value(value);
    }
}

} // namespace detail

// Writes the streamed members as an object, under their field names. Numbers are those of JSON:
// 64-bit values are exact up to 2^53.
template <class R>
void writeJson(JsonWriter &json, const R &record)
{
    json.beginObject();
    forEachField<R>([&](const auto &f) {
        json.key(QString::fromLatin1(f.name));
        detail::writeJsonValue(json, record.*f.member);
    });
    json.end();
}

} // namespace record
