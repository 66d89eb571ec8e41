#pragma once

#include "config/record/record.h"

namespace record {

// Fills a record with values that differ from field to field, for checks of the stream form. The
// values follow from a running number n, which starts at 1 and counts every value in wire order:
//   8 bit: n     16 bit: 256 + n % 256     32 bit: 0x81000000 + n     64 bit: 0x8100000000000000 + n
//   double: n + 0.25     bool: whether n is odd     text: "µ" and n
// Lists get two elements, unless stated otherwise.
class SampleValues
{
public:
    explicit SampleValues(int listSize = 2)
        : m_listSize(listSize)
    {}

    template <class R>
    void fill(R &record)
    {
        forEachField<R>([&](const auto &f) { set(record.*f.member); });
    }

private:
    template <class T>
    void set(T &value)
    {
        if constexpr (isRecord<T>) {
            fill(value);
        } else if constexpr (detail::isArray<T>) {
            for (auto &item : value)
                set(item);
        } else if constexpr (detail::isOwnedList<T>) {
            value.clear();
            for (int i = 0; i < m_listSize; ++i)
                set(value.add());
        } else if constexpr (detail::isValueList<T>) {
            value.clear();
            for (int i = 0; i < m_listSize; ++i) {
                typename T::value_type item;
                set(item);
                value.append(item);
            }
        } else {
            setSingle(value, ++m_n);
        }
    }

    static void setSingle(bool &value, quint32 n) { value = n % 2 != 0; }
    static void setSingle(double &value, quint32 n) { value = n + 0.25; }
    static void setSingle(QString &value, quint32 n) { value = QChar(0x00B5) + QString::number(n); }
    template <class Integer>
    static void setSingle(Integer &value, quint32 n)
    {
        if constexpr (sizeof(Integer) == 1)
            value = static_cast<Integer>(n);
        else if constexpr (sizeof(Integer) == 2)
            value = static_cast<Integer>(0x100 + n % 0x100);
        else if constexpr (sizeof(Integer) == 4)
            value = static_cast<Integer>(0x81000000 + n);
        else
            value = static_cast<Integer>(0x8100000000000000 + n);
    }

    int m_listSize;
    quint32 m_n = 0;
};

} // namespace record
