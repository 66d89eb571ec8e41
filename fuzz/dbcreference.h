#pragma once

#include "config/streamingclass_dbc_signal.h"

#include <QString>

#include <vector>

// What a DBC file says, read by the rules word for word on QString, without any care for speed: an
// oracle for the parser.
struct DbcReading
{
    QString error;
    std::vector<StreamingClass_DBC_Signal> records;
};

[[nodiscard]] DbcReading readByTheRules(const QString &text);
