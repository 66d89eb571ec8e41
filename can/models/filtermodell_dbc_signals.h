#pragma once

#include <QSortFilterProxyModel>

#include <vector>

// Filters and sorts a Model_DBC_Signals. Both happen when they are asked for, never by themselves:
// a row must not move away from under the cursor because it was ticked.
class FilterModell_DBC_Signals : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    explicit FilterModell_DBC_Signals(QObject *parent = nullptr);

    void setSourceModel(QAbstractItemModel *sourceModel) override;
    // By a column of the source, as it is now; -1 restores the order of the source.
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

public slots:
    // Sorts again by the same column.
    void set_sorting_up(bool sort_up);
    // Shows the rows whose cell begins with the text, or with "*text" contains it, in any case of
    // letters. With no text or "*" all rows, of which the ticked ones only if so wished.
    void set_sorting_string(int column_nr, QString sort_string, bool sort_only_checked_fields);

protected:
    [[nodiscard]] bool filterAcceptsRow(int source_row,
                                        const QModelIndex &source_parent) const override;
    [[nodiscard]] bool lessThan(const QModelIndex &left, const QModelIndex &right) const override;

private:
    void rank() const;

    int m_column = 0;
    QString m_text; // without the star
    bool m_isAnywhere = false;
    bool m_isOnlyChecked = false;
    // Rank of each source row at the time of sorting, so that edits don't reorder rows and text is
    // compared once for all filtering that follows. Empty: not known yet.
    mutable std::vector<int> m_ranks;
    QMetaObject::Connection m_sourceReset;
};
