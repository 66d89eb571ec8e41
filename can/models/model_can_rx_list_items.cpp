#include "can/models/model_can_rx_list_items.h"

#include <QFontDatabase>

#include <algorithm>

namespace {

enum Column { Id, Dlc, Data, Period, Count, Comment };

using Columns = std::vector<TableColumn<CanRxRow>>;

Columns columns()
{
    const auto number = [](quint64 value) { return QVariant(qulonglong(value)); };
    Columns list(6);
    list[Id].title = QStringLiteral("ID");
    list[Id].tool_tip = QStringLiteral("Identifier, hexadecimal: 3 digits, 8 for one of 29 bits");
    list[Id].text = [](const CanRxRow &row) { return can::identifierText(row.id, row.extended); };
    list[Id].value = [number](const CanRxRow &row) {
        return number(can::identifierKey(row.id, row.extended));
    };

    list[Dlc].title = QStringLiteral("DLC");
    list[Dlc].tool_tip = QStringLiteral("Length of the last frame's data in bytes, 0 to 64");
    list[Dlc].text = [](const CanRxRow &row) { return row.data.size(); };

    list[Data].title = QStringLiteral("Data");
    list[Data].alignment = Qt::AlignLeft;
    list[Data].tool_tip = QStringLiteral("Bytes of the last frame, hexadecimal");
    list[Data].text = [](const CanRxRow &row) { return can::dataText(row.data); };

    list[Period].title = QStringLiteral("Period [uSec]");
    list[Period].alignment = Qt::AlignRight;
    list[Period].tool_tip =
        QStringLiteral("Time between the last two frames of the identifier, in microseconds");
    list[Period].text = [number](const CanRxRow &row) {
        return row.period_us ? number(*row.period_us) : QVariant();
    };

    list[Count].title = QStringLiteral("Count");
    list[Count].alignment = Qt::AlignRight;
    list[Count].tool_tip = QStringLiteral("Frames of the identifier since the list was cleared");
    list[Count].text = [number](const CanRxRow &row) { return number(row.count); };

    list[Comment].title = QStringLiteral("Comment");
    list[Comment].alignment = Qt::AlignLeft;
    list[Comment].tool_tip =
        QStringLiteral("Signals of the channel that frames of the identifier carry");
    list[Comment].text = [](const CanRxRow &row) { return can::commentText(row); };
    return list;
}

// In us, also where the clock wraps. More than half of its range is a clock that was set back: none.
std::optional<quint32> periodBetween(quint32 earlier_us, quint32 later_us)
{
    const quint32 period = later_us - earlier_us;
    return period < 1U << 31 ? std::optional(period) : std::nullopt;
}

} // namespace

Model_CAN_Rx_List_Items::Model_CAN_Rx_List_Items(QObject *parent)
    : ColumnTableModel(columns(), parent)
{}

CanRxRow *Model_CAN_Rx_List_Items::rowOf(const can::ReceivedFrame &frame)
{
    const quint64 key = can::identifierKey(frame.id, frame.extended);
    const auto found = m_rowOfIdentifier.find(key);
    if (found != m_rowOfIdentifier.end()) {
        const int row = found->second;
        if (row < m_published) {
            m_firstChanged = std::min(m_firstChanged, row);
            m_lastChanged = std::max(m_lastChanged, row);
        }
        return &m_rows[std::size_t(row)];
    }
    if (m_rows.size() == maxRows)
        return nullptr;
    m_rowOfIdentifier.emplace(key, int(m_rows.size()));
    CanRxRow &row = m_rows.emplace_back();
    row.id = frame.id;
    row.extended = frame.extended;
    row.comment = m_comments.value(key);
    return &row;
}

void Model_CAN_Rx_List_Items::addFrame(const can::ReceivedFrame &frame)
{
    CanRxRow *row = rowOf(frame);
    if (!row) {
        ++m_framesNotListed;
        return;
    }
    if (row->hasPredecessor)
        row->period_us = periodBetween(row->timestamp_us, frame.timestamp_us);
    row->timestamp_us = frame.timestamp_us;
    row->hasPredecessor = true;
    row->remote = frame.remote;
    row->data.resize(int(frame.data.size));
    std::copy_n(frame.data.data, frame.data.size, row->data.begin());
    ++row->count;
}

// The identifier and the comment of a row stay, so a table that is sorted by them isn't sorted
// again.
void Model_CAN_Rx_List_Items::publish()
{
    if (m_lastChanged >= 0)
        emit dataChanged(index(m_firstChanged, Dlc), index(m_lastChanged, Count));
    m_firstChanged = maxRows;
    m_lastChanged = -1;
    const int rows = int(m_rows.size());
    if (rows > m_published) {
        beginInsertRows({}, m_published, rows - 1);
        m_published = rows;
        endInsertRows();
    }
}

void Model_CAN_Rx_List_Items::clear_list()
{
    beginResetModel();
    m_rows.clear();
    m_rowOfIdentifier.clear();
    m_published = 0;
    m_firstChanged = maxRows;
    m_lastChanged = -1;
    m_framesNotListed = 0;
    endResetModel();
}

void Model_CAN_Rx_List_Items::noteGap()
{
    for (CanRxRow &row : m_rows)
        row.hasPredecessor = false;
}

void Model_CAN_Rx_List_Items::setComments(const QHash<quint64, QString> &comments)
{
    m_comments = comments;
    for (CanRxRow &row : m_rows)
        row.comment = comments.value(can::identifierKey(row.id, row.extended));
    if (m_published > 0)
        emit dataChanged(index(0, Comment), index(m_published - 1, Comment));
}

QVariant Model_CAN_Rx_List_Items::otherData(int, int column, int role) const
{
    if (role == Qt::FontRole && (column == Id || column == Data))
        return QFontDatabase::systemFont(QFontDatabase::FixedFont);
    return {};
}
