#pragma once

#include <QAbstractTableModel>
#include <QString>
#include <QVariant>

#include <functional>
#include <utility>
#include <vector>

// One column of a table: how a row fills its cell, and what an edit does to the row.
template <class Row>
struct TableColumn
{
    QString title;
    Qt::Alignment alignment = Qt::AlignCenter;
    QString tool_tip; // of the head
    std::function<QVariant(const Row &)> text;
    // What an editor begins with and what sorting compares; none: the text.
    std::function<QVariant(const Row &)> value;
    // Takes what the editor gives; false refuses it. None: the cell is read-only.
    std::function<bool(Row &, const QVariant &)> set;
    bool has_editor = true;                      // false: only the program sets the cell
    std::function<bool(const Row &)> is_checked; // none: the cell has no check box
    std::function<void(Row &, bool)> check;      // none: the box can't be changed
};

// A table over rows that belong to somebody else. Behaviour stands in the list of columns; a
// derived model says which rows there are, and hears of edits. Lives on the GUI thread.
template <class Row>
class ColumnTableModel : public QAbstractTableModel
{
public:
    using Column = TableColumn<Row>;

    explicit ColumnTableModel(std::vector<Column> columns, QObject *parent = nullptr)
        : QAbstractTableModel(parent)
        , m_columns(std::move(columns))
    {}

    int columnCount(const QModelIndex &parent = {}) const final
    {
        return parent.isValid() ? 0 : int(m_columns.size());
    }
    int rowCount(const QModelIndex &parent = {}) const final
    {
        return parent.isValid() ? 0 : numberOfRows();
    }

    QVariant headerData(int section, Qt::Orientation orientation, int role) const final
    {
        if (orientation == Qt::Vertical)
            return role == Qt::DisplayRole ? QVariant(section + 1) : QVariant();
        if (section < 0 || section >= int(m_columns.size()))
            return {};
        const Column &column = m_columns[std::size_t(section)];
        switch (role) {
        case Qt::DisplayRole:
            return column.title;
        case Qt::ToolTipRole:
            return column.tool_tip.isEmpty() ? QVariant() : QVariant(column.tool_tip);
        default:
            return {};
        }
    }

    QVariant data(const QModelIndex &index, int role) const final
    {
        if (!isCell(index))
            return {};
        const Column &column = columnOf(index);
        const Row &row = rowAt(index.row());
        switch (role) {
        case Qt::DisplayRole:
            return column.text ? column.text(row) : QVariant();
        case Qt::EditRole:
            if (column.value)
                return column.value(row);
            return column.text ? column.text(row) : QVariant();
        case Qt::CheckStateRole:
            if (!column.is_checked)
                return {};
            return column.is_checked(row) ? Qt::Checked : Qt::Unchecked;
        case Qt::TextAlignmentRole:
            return int(column.alignment | Qt::AlignVCenter);
        default:
            return otherData(index.row(), index.column(), role);
        }
    }

    Qt::ItemFlags flags(const QModelIndex &index) const final
    {
        if (!isCell(index))
            return Qt::NoItemFlags;
        Qt::ItemFlags flags = Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren;
        if (columnOf(index).set && columnOf(index).has_editor)
            flags |= Qt::ItemIsEditable;
        if (columnOf(index).check)
            flags |= Qt::ItemIsUserCheckable;
        return flags;
    }

    bool setData(const QModelIndex &index, const QVariant &value, int role) final
    {
        if (!isCell(index))
            return false;
        const Column &column = columnOf(index);
        Row &row = rowAt(index.row());
        if (role == Qt::CheckStateRole && column.check) {
            column.check(row, value.toInt() == Qt::Checked);
        } else if (role != Qt::EditRole || !column.set || !column.set(row, value)) {
            return false;
        }
        edited(index.row(), index.column());
        return true;
    }

protected:
    [[nodiscard]] virtual int numberOfRows() const = 0;
    // A row that exists. The model doesn't own it, so it can be changed through a const model.
    [[nodiscard]] virtual Row &rowAt(int row) const = 0;
    // Other roles, such as the background.
    [[nodiscard]] virtual QVariant otherData(int row, int column, int role) const
    {
        Q_UNUSED(row)
        Q_UNUSED(column)
        Q_UNUSED(role)
        return {};
    }
    // The user has changed the cell. A model of which other cells change with it tells of the row.
    virtual void edited(int row, int column)
    {
        emit dataChanged(index(row, column), index(row, column));
    }
    void tellRowChanged(int row) { emit dataChanged(index(row, 0), index(row, columnCount() - 1)); }

private:
    [[nodiscard]] bool isCell(const QModelIndex &index) const
    {
        return index.isValid() && index.model() == this && index.row() < numberOfRows()
               && index.column() < int(m_columns.size());
    }
    [[nodiscard]] const Column &columnOf(const QModelIndex &index) const
    {
        return m_columns[std::size_t(index.column())];
    }

    const std::vector<Column> m_columns;
};
