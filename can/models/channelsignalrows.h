#pragma once

#include "can/models/filtermodell_dbc_signals.h"

// The signals of a channel as the CAN page shows them: what the logger has to know of can be edited
// only while the configuration can; what is shown live can always be chosen.
class ChannelSignalRows : public FilterModell_DBC_Signals
{
    Q_OBJECT

public:
    using FilterModell_DBC_Signals::FilterModell_DBC_Signals;

    void setEditable(bool isEditable);

    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex &index) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;

private:
    [[nodiscard]] bool isLocked(const QModelIndex &index) const;

    bool m_isEditable = true;
};
