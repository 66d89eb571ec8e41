#include "can/models/model_dbc_signals.h"

#include "can/models/dbcsignalcolumns.h"

#include <algorithm>

using Signal = StreamingClass_DBC_Signal;

Model_DBC_Signals::Model_DBC_Signals(const QList<Signal *> &signalList, Layout layout,
                                     QObject *parent)
    : ColumnTableModel(dbcsignalcolumns::columnsOf(layout), parent)
    , m_layout(layout)
    , m_fields(dbcsignalcolumns::fieldsOf(layout))
{
    setSignals(signalList);
}

void Model_DBC_Signals::setSignals(const QList<Signal *> &signalList)
{
    QVector<Signal *> rows;
    QVector<can::SignalKey> keys;
    rows.reserve(signalList.size());
    keys.reserve(signalList.size());
    for (Signal *signal : signalList) {
        if (signal->mux_kind == MultiplexorSignal)
            continue;
        rows.append(signal);
        keys.append(can::keyOf(*signal));
    }
    if (keys == m_keys) {
        m_rows.swap(rows);
        if (!m_rows.isEmpty())
            emit dataChanged(index(0, 0), index(m_rows.size() - 1, columnCount() - 1));
        return;
    }
    beginResetModel();
    m_rows.swap(rows);
    m_keys.swap(keys);
    endResetModel();
}

void Model_DBC_Signals::setChannelSignals(const QList<Signal *> &channelSignals)
{
    m_loaded = can::LoadedSignals(channelSignals);
    if (!m_rows.isEmpty())
        emit dataChanged(index(0, 0), index(m_rows.size() - 1, columnCount() - 1));
}

int Model_DBC_Signals::columnOf(Field field) const
{
    const auto found = std::find(m_fields.begin(), m_fields.end(), field);
    return found == m_fields.end() ? -1 : int(found - m_fields.begin());
}

void Model_DBC_Signals::valuesChanged()
{
    const int column = columnOf(Field::Value);
    if (column >= 0 && !m_rows.isEmpty())
        emit dataChanged(index(0, column), index(m_rows.size() - 1, column), {Qt::DisplayRole});
}

QVariant Model_DBC_Signals::background(int row) const
{
    switch (m_loaded.stateOf(*m_rows.at(row))) {
    case can::LoadedSignals::State::New:
        break;
    case can::LoadedSignals::State::Loaded:
        return loadedColour();
    case can::LoadedSignals::State::LoadedDifferently:
        return loadedDifferentlyColour();
    }
    return {};
}

QString Model_DBC_Signals::loadedState(int row) const
{
    switch (m_loaded.stateOf(*m_rows.at(row))) {
    case can::LoadedSignals::State::New:
        break;
    case can::LoadedSignals::State::Loaded:
        return loadedText();
    case can::LoadedSignals::State::LoadedDifferently:
        return loadedDifferentlyText();
    }
    return {};
}

QVariant Model_DBC_Signals::otherData(int row, int column, int role) const
{
    switch (role) {
    case sortRole:
        return dbcsignalcolumns::sortValue(*m_rows.at(row), m_fields.at(std::size_t(column)));
    case Qt::BackgroundRole:
        return background(row);
    case Qt::ForegroundRole: // readable on the light colours, whatever the palette
        return background(row).isValid() ? QVariant(QColor(Qt::black)) : QVariant();
    case Qt::ToolTipRole:
        return dbcsignalcolumns::toolTip(*m_rows.at(row), loadedState(row));
    case Qt::AccessibleDescriptionRole: // for those who don't see the colour
        return loadedState(row);
    default:
        return {};
    }
}

void Model_DBC_Signals::edited(int row, int column)
{
    m_keys[row] = can::keyOf(*m_rows.at(row));
    ColumnTableModel::edited(row, column);
    if (m_layout == Layout::CanView)
        emit dbcModelChanged(dbcsignalcolumns::isForLogger(m_fields.at(std::size_t(column))));
}
