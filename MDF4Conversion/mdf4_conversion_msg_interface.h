#pragma once

#include <QString>

// Where a conversion sends its messages, on the thread of the conversion only. Texts are rich text:
// what comes from a log, a path or the system stands escaped in them.
class MDF4_Conversion_Msg_Interface
{
public:
    virtual ~MDF4_Conversion_Msg_Interface() = default;

    virtual void info(const QString &text) = 0;
    virtual void warning(const QString &text) = 0;
    virtual void error(const QString &text) = 0;
    // Both percentages run from 0 to 100, one after the other.
    virtual void progress(int parsingPercentage, int writingPercentage) = 0;
};
