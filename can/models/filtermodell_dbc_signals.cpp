#include "can/models/filtermodell_dbc_signals.h"

#include "can/models/model_dbc_signals.h"

#include <QtNumeric>

#include <algorithm>
#include <numeric>

namespace {

// What is no number comes before all that are.
double numberOf(const QVariant &value)
{
    const double number = value.isValid() ? value.toDouble() : -qInf();
    return qIsNaN(number) ? -qInf() : number;
}

// By letters where the value is text, otherwise by number.
int compare(const QVariant &a, const QVariant &b)
{
    if (a.type() == QVariant::String)
        return a.toString().compare(b.toString(), Qt::CaseInsensitive);
    const double x = numberOf(a);
    const double y = numberOf(b);
    return x < y ? -1 : (y < x ? 1 : 0);
}

} // namespace

FilterModell_DBC_Signals::FilterModell_DBC_Signals(QObject *parent)
    : QSortFilterProxyModel(parent)
{
    setDynamicSortFilter(false);
    setSortRole(Model_DBC_Signals::sortRole);
}

void FilterModell_DBC_Signals::setSourceModel(QAbstractItemModel *sourceModel)
{
    disconnect(m_sourceReset);
    m_ranks.clear();
    // Before the base class hears of it, which makes the view ask for rows.
    if (sourceModel)
        m_sourceReset = connect(sourceModel, &QAbstractItemModel::modelAboutToBeReset, this,
                                [this] { m_ranks.clear(); });
    QSortFilterProxyModel::setSourceModel(sourceModel);
}

void FilterModell_DBC_Signals::sort(int column, Qt::SortOrder order)
{
    m_ranks.clear();
    QSortFilterProxyModel::sort(column, order);
}

void FilterModell_DBC_Signals::set_sorting_up(bool sort_up)
{
    sort(sortColumn(), sort_up ? Qt::AscendingOrder : Qt::DescendingOrder);
}

void FilterModell_DBC_Signals::set_sorting_string(int column_nr, QString sort_string,
                                                  bool sort_only_checked_fields)
{
    m_column = column_nr;
    m_text = sort_string.trimmed();
    m_isAnywhere = m_text.startsWith(QLatin1Char('*'));
    if (m_isAnywhere)
        m_text.remove(0, 1);
    m_isOnlyChecked = sort_only_checked_fields;
    invalidate(); // all rows at once; row by row takes seconds for large files
}

bool FilterModell_DBC_Signals::filterAcceptsRow(int source_row,
                                                const QModelIndex &source_parent) const
{
    const auto cell = [this, source_row, &source_parent](int column, int role) {
        return sourceModel()->index(source_row, column, source_parent).data(role);
    };
    if (m_isOnlyChecked && cell(0, Qt::CheckStateRole).toInt() != Qt::Checked)
        return false;
    if (m_text.isEmpty())
        return true;
    const QString text = cell(m_column, Qt::DisplayRole).toString();
    return m_isAnywhere ? text.contains(m_text, Qt::CaseInsensitive)
                        : text.startsWith(m_text, Qt::CaseInsensitive);
}

bool FilterModell_DBC_Signals::lessThan(const QModelIndex &left, const QModelIndex &right) const
{
    const auto row = std::size_t(left.row());
    const auto otherRow = std::size_t(right.row());
    if (std::max(row, otherRow) >= m_ranks.size())
        rank();
    return m_ranks[row] < m_ranks[otherRow];
}

void FilterModell_DBC_Signals::rank() const
{
    const int rows = sourceModel()->rowCount();
    std::vector<QVariant> values;
    values.reserve(std::size_t(rows));
    for (int row = 0; row < rows; ++row)
        values.push_back(sourceModel()->index(row, sortColumn()).data(sortRole()));

    std::vector<std::size_t> order(values.size());
    std::iota(order.begin(), order.end(), std::size_t(0));
    std::stable_sort(order.begin(), order.end(), [&values](std::size_t a, std::size_t b) {
        return compare(values[a], values[b]) < 0;
    });

    m_ranks.assign(values.size(), 0);
    int next = 0;
    for (std::size_t i = 1; i < order.size(); ++i) {
        if (compare(values[order[i - 1]], values[order[i]]) < 0)
            ++next;
        m_ranks[order[i]] = next;
    }
}
