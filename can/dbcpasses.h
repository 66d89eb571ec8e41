#pragma once

#include "can/dbcsummary.h"
#include "config/streamingclass_dbc_signal.h"

#include <QList>

#include <functional>
#include <string_view>

// The two walks over the UTF-8 text of a DBC file. They give the text of the first error, which ends
// the walk; an empty one for none.
namespace dbc {

// Called in front of each line, with its start; the walk ends when it returns false.
using PositionCheck = std::function<bool(std::size_t position)>;

// Appends a record for each signal; the list's owner owns it. Counts messages and signals.
[[nodiscard]] QString readSignals(std::string_view text,
                                  QList<StreamingClass_DBC_Signal *> &records, DbcSummary &summary,
                                  const PositionCheck &check);

// Gives the records their descriptions. Counts what is passed over.
[[nodiscard]] QString readComments(std::string_view text,
                                   const QList<StreamingClass_DBC_Signal *> &records,
                                   DbcSummary &summary, const PositionCheck &check);

// A line as it is shown in messages: cut to 2000 bytes when it is longer.
[[nodiscard]] QString shownLine(std::string_view line);

} // namespace dbc
