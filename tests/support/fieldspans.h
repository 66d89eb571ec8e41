#pragma once

#include "config/record/record.h"

#include <QString>

// Finds the field of a record that stands at a position in its bytes, to name it when a test fails.
class FieldSpans
{
public:
    template <class R>
    static QString fieldAt(const R &record, int position)
    {
        FieldSpans spans(position);
        spans.value(record, QString());
        return spans.m_found.isNull() ? QStringLiteral("behind the last field") : spans.m_found;
    }

private:
    explicit FieldSpans(int position)
        : m_position(position)
    {}

    void advance(int size, const QString &path)
    {
        if (m_position >= m_at && m_position < m_at + size)
            m_found = path;
        m_at += size;
    }

    template <class T>
    void value(const T &value, const QString &path)
    {
        if constexpr (record::isRecord<T>) {
            items(value, path);
        } else if constexpr (record::detail::isArray<T> || record::detail::isList<T>) {
            if constexpr (record::detail::isList<T>)
                advance(wordSize, path + QStringLiteral(" count"));
            int index = 0;
            for (const auto &item : value)
                this->value(record::detail::element(item),
                            QStringLiteral("%1[%2]").arg(path).arg(index++));
        } else {
            QByteArray bytes;
            QDataStream out(&bytes, QIODevice::WriteOnly);
            out << value;
            advance(bytes.size(), path);
        }
    }

    template <class R>
    void items(const R &r, const QString &path)
    {
        if constexpr (record::isFramed<R>) {
            advance(wordSize, path + QStringLiteral(" length"));
            advance(wordSize, path + QStringLiteral(" version"));
        }
        record::forEachItem<R>([&](const auto &item) {
            if constexpr (std::is_same_v<std::decay_t<decltype(item)>, record::ZeroByte>)
                advance(1, path + QStringLiteral(".zero byte"));
            else
                value(r.*item.member, path + QLatin1Char('.') + QLatin1String(item.name));
        });
    }

    static constexpr int wordSize = 4;
    int m_position;
    int m_at = 0;
    QString m_found;
};
