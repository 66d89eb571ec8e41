#pragma once

#include "can/models/model_dbc_signals.h"

// What the columns of a signal table are made of.
namespace dbcsignalcolumns {

using Column = TableColumn<StreamingClass_DBC_Signal>;
using Field = Model_DBC_Signals::Field;

[[nodiscard]] std::vector<Field> fieldsOf(Model_DBC_Signals::Layout layout);
[[nodiscard]] std::vector<Column> columnsOf(Model_DBC_Signals::Layout layout);

// What sorting by the field compares.
[[nodiscard]] QVariant sortValue(const StreamingClass_DBC_Signal &signal, Field field);

// Whether the logger has to know of an edit of the field.
[[nodiscard]] bool isForLogger(Field field);

// All of the signal that the columns don't show, and a last line, as escaped rich text.
[[nodiscard]] QString toolTip(const StreamingClass_DBC_Signal &signal, const QString &lastLine);

} // namespace dbcsignalcolumns
