#pragma once

#include <QObject>

// Self test of the stream form, run by hand: writes and reads filled records and compares them.
class StreamingTest : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    // Logs one line for each class and the result, which it returns.
    bool run() const;
};
