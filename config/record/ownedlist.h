#pragma once

#include <QList>

#include <memory>
#include <utility>

// A QList of pointers that owns what it holds. Moves, but does not copy: a deep copy of records
// goes through record::copy. As with QList<T *>, a const list still gives access to mutable
// elements.
template <class T>
class OwnedList
{
public:
    OwnedList() = default;
    OwnedList(OwnedList &&other) noexcept { swap(other); }
    OwnedList &operator=(OwnedList &&other) noexcept
    {
        OwnedList taken(std::move(other));
        swap(taken);
        return *this;
    }
    OwnedList(const OwnedList &) = delete;
    OwnedList &operator=(const OwnedList &) = delete;
    ~OwnedList() { clear(); }

    [[nodiscard]] int size() const { return m_items.size(); }
    [[nodiscard]] bool isEmpty() const { return m_items.isEmpty(); }
    [[nodiscard]] T *at(int index) const { return m_items.at(index); }
    [[nodiscard]] const QList<T *> &items() const { return m_items; }
    [[nodiscard]] auto begin() const { return m_items.cbegin(); }
    [[nodiscard]] auto end() const { return m_items.cend(); }

    // Appends a default element.
    T &add() { return *append(std::make_unique<T>()); }

    T *append(std::unique_ptr<T> item)
    {
        m_items.append(item.get());
        return item.release();
    }

    [[nodiscard]] std::unique_ptr<T> takeAt(int index)
    {
        return std::unique_ptr<T>(m_items.takeAt(index));
    }
    void removeAt(int index) { delete m_items.takeAt(index); }

    void clear()
    {
        qDeleteAll(m_items);
        m_items.clear();
    }

    void swap(OwnedList &other) noexcept { m_items.swap(other.m_items); }

private:
    QList<T *> m_items;
};
