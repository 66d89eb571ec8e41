#pragma once

#include <QByteArray>
#include <QList>

struct StreamingClass_DBC_Signal;

// The text of a DBC file with these signals, in UTF-8. Signals of one message stand together; the
// messages are named after their identifiers.
[[nodiscard]] QByteArray dbcText(const QList<StreamingClass_DBC_Signal *> &signalList);
