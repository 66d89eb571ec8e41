#pragma once

#include "MDF4Conversion/mdf4_conversion_msg_interface.h"
#include "MDF4Conversion/mdf4_datachannel.h"

#include <utility>

// A channel of one conversion and one source. The source tells which entries concern the channel
// and takes the value out of them:
//   bool concerns(const StdLogEntry &)        may keep what it has found for value()
//   bool value(const StdLogEntry &, ExtractedValue &)   false: the channel yields no bytes
//   static QString overflowText(name, conversionName)   for the status about a corrected timestamp
template <class Conversion, class Source>
class ExtractingChannel final : public Conversion
{
public:
    explicit ExtractingChannel(Source source)
        : m_source(std::move(source))
    {
        this->ReqType = m_source.entryType();
        this->ReqNr = m_source.entryNumber();
    }

    bool extractData(const StdLogEntry &entry, RecordBuffer &record) override
    {
        if (!m_source.concerns(entry))
            return false;
        if (this->checkTimestamp(entry.timestamp)) {
            this->context().messages->info(
                Source::overflowText(this->name, Conversion::conversionName));
        }
        ExtractedValue value;
        if (m_source.value(entry, value))
            this->store(value, record);
        return true;
    }

private:
    Source m_source;
};

// The status about a corrected timestamp, for all sources but XCP on ethernet.
[[nodiscard]] inline QString overflowHandledText(const QString &channelName)
{
    return QStringLiteral("TS-Overflow for %1 handled.").arg(channelName.toHtmlEscaped());
}
