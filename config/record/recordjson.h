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
        json.integer(value);
    } else if constexpr (std::is_integral_v<T> && !std::is_same_v<T, bool>) {
        json.integer(qint64(value));
    } else {
        json.value(value);
    }
}

} // namespace detail

// Writes the streamed members as an object, under their field names. Whole numbers have all their
// digits, which not every reader of JSON keeps above 2^53.
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
