#pragma once

#include "app/ui/columntablemodel.h"
#include "can/canframe.h"
#include "can/canrxlist.h"

#include <QHash>

#include <unordered_map>

// A row of the list of received frames, and what the next frame is compared with.
struct CanRxRow : can::RxListItem
{
    quint32 timestamp_us = 0;
    bool hasPredecessor = false; // the next frame follows the last one without a gap
};

// The frames that a channel received, one row for each identifier. Frames are added first and told
// to the views together, for there may be a hundred thousand in a second. Lives on the GUI thread.
class Model_CAN_Rx_List_Items : public ColumnTableModel<CanRxRow>
{
public:
    static constexpr int maxRows = 600;

    explicit Model_CAN_Rx_List_Items(QObject *parent = nullptr);

    // An identifier that finds no room any more is counted only.
    void addFrame(const can::ReceivedFrame &frame);
    // Tells the views of all frames that were added since the last call.
    void publish();
    void clear_list();

    // Frames are missing between those that came and those to come: the next one of an identifier
    // says nothing about the period.
    void noteGap();

    // Texts by can::identifierKey(), for rows that there are or will be.
    void setComments(const QHash<quint64, QString> &comments);

    // Of the row of the model.
    [[nodiscard]] const can::RxListItem &itemAt(int row) const { return rowAt(row); }
    // Frames that have no row.
    [[nodiscard]] quint64 framesNotListed() const { return m_framesNotListed; }

protected:
    [[nodiscard]] int numberOfRows() const override { return m_published; }
    [[nodiscard]] CanRxRow &rowAt(int row) const override { return m_rows[std::size_t(row)]; }
    [[nodiscard]] QVariant otherData(int row, int column, int role) const override;

private:
    [[nodiscard]] CanRxRow *rowOf(const can::ReceivedFrame &frame);

    mutable std::vector<CanRxRow> m_rows; // the base changes rows through a const model
    int m_published = 0;                  // rows that the views know
    std::unordered_map<quint64, int> m_rowOfIdentifier;
    QHash<quint64, QString> m_comments;
    // Rows that views know and that have changed; none: first is behind last.
    int m_firstChanged = maxRows;
    int m_lastChanged = -1;
    quint64 m_framesNotListed = 0;
};
