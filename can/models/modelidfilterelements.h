#pragma once

#include "app/ui/columntablemodel.h"
#include "config/canidfilterelement.h"
#include "config/record/ownedlist.h"

// The rows of a channel's hardware identifier filter, to be edited. Owns a copy of them.
class ModelIDFilterElements : public ColumnTableModel<CanIdFilterElement>
{
    Q_OBJECT

public:
    enum Column { Type, Match, IdLength, Id1, Id2 };

    explicit ModelIDFilterElements(QObject *parent = nullptr);

    void setRows(const OwnedList<CanIdFilterElement> &rows);
    void copyRowsTo(OwnedList<CanIdFilterElement> &rows) const;

    // A new row at the index: Classic, Accept, 11-bit, ID-1 0, ID-2 all 29 bits.
    void insertNew(int row);
    bool removeRows(int row, int count, const QModelIndex &parent = {}) override;

protected:
    [[nodiscard]] int numberOfRows() const override { return m_rows.size(); }
    [[nodiscard]] CanIdFilterElement &rowAt(int row) const override { return m_rows[row]; }
    [[nodiscard]] QVariant otherData(int row, int column, int role) const override;
    // Keeps both identifiers within the length that the row has.
    void edited(int row, int column) override;

private:
    mutable QList<CanIdFilterElement> m_rows; // ColumnTableModel takes rows for somebody else's
};
