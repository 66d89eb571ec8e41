#include "can/models/channelsignalrows.h"

#include "can/models/model_dbc_signals.h"

void ChannelSignalRows::setEditable(bool isEditable)
{
    m_isEditable = isEditable;
    if (rowCount() > 0) // the boxes are drawn anew
        emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
}

bool ChannelSignalRows::isLocked(const QModelIndex &index) const
{
    const auto *model = qobject_cast<const Model_DBC_Signals *>(sourceModel());
    return !m_isEditable && model
           && index.column() != model->columnOf(Model_DBC_Signals::Field::Live);
}

Qt::ItemFlags ChannelSignalRows::flags(const QModelIndex &index) const
{
    const Qt::ItemFlags all = FilterModell_DBC_Signals::flags(index);
    return isLocked(index) ? all & ~(Qt::ItemIsEditable | Qt::ItemIsUserCheckable) : all;
}

bool ChannelSignalRows::setData(const QModelIndex &index, const QVariant &value, int role)
{
    return !isLocked(index) && FilterModell_DBC_Signals::setData(index, value, role);
}
