#include "can/canfilters.h"
#include "can/dbcdecoding.h"
#include "can/dbclines.h"
#include "can/dbcmessages.h"
#include "can/dbcnumbers.h"
#include "can/dbcpasses.h"
#include "can/dbcsignalline.h"

#include <array>
#include <memory>
#include <string>

namespace {

using dbc::Fault;

constexpr quint32 extendedFlag = quint32(1) << 31; // of an identifier in the file
constexpr std::string_view messageKeyword = "BO_";
constexpr std::string_view signalKeyword = "SG_";
// The name of the message under which signals of no message stand.
constexpr std::string_view noMessage = "VECTOR__INDEPENDENT_SIG_MSG";

// The start of a line's first word, once colons are removed: as much as tells the keywords apart,
// and one character more that tells whether the word is longer.
class FirstWord
{
public:
    explicit FirstWord(std::string_view line)
    {
        std::size_t length = 0;
        for (std::size_t i = 0; i < line.size() && m_size < m_start.size(); i += length) {
            length = dbc::spaceLength(line, i);
            if (length != 0 && m_size != 0)
                return;
            if (length != 0)
                continue;
            length = 1;
            if (line[i] != ':')
                m_start[m_size++] = line[i];
        }
    }

    [[nodiscard]] bool is(std::string_view keyword) const { return start() == keyword; }
    [[nodiscard]] bool beginsWith(std::string_view keyword) const
    {
        return start().substr(0, keyword.size()) == keyword;
    }

private:
    [[nodiscard]] std::string_view start() const { return {m_start.data(), m_size}; }

    std::array<char, 4> m_start{};
    std::size_t m_size = 0;
};

class SignalPass
{
public:
    SignalPass(QList<StreamingClass_DBC_Signal *> &records, DbcSummary &summary)
        : m_records(records)
        , m_summary(summary)
    {}

    [[nodiscard]] Fault takeLine(std::string_view line)
    {
        const FirstWord first(line);
        if (first.is(messageKeyword))
            return takeMessage(line);
        if (first.is(signalKeyword) && m_isInMessage)
            return takeSignal(line);
        if (first.is(signalKeyword))
            ++m_summary.ignored_signals;
        if (!first.beginsWith(messageKeyword))
            m_isInMessage = m_isOfNoMessage = false;
        return nullptr;
    }

private:
    // "BO_ identifier name DLC sender"
    [[nodiscard]] Fault takeMessage(std::string_view line)
    {
        dbc::copyWithoutColons(m_line, line);
        dbc::Words words(m_line);
        std::array<std::string_view, 5> word;
        for (std::string_view &each : word)
            each = words.next();
        if (word.back().empty())
            return "Invalid Message-Structure";
        m_isOfNoMessage = word[2] == noMessage;
        if (m_isOfNoMessage)
            return nullptr;
        const std::optional<quint32> identifier = dbc::toUnsigned(word[1]);
        if (!identifier)
            return "Unable to parse Message-ID";
        const auto dlc = dbc::toField<quint8>(word[3]);
        if (!dlc)
            return "Unable to parse DLC";
        m_isExtended = (*identifier & extendedFlag) != 0;
        m_identifier = m_isExtended ? *identifier & can::maxExtendedId : *identifier;
        m_dlc = *dlc;
        m_isInMessage = true;
        ++m_summary.messages;
        return nullptr;
    }

    [[nodiscard]] Fault takeSignal(std::string_view line)
    {
        dbc::copyWithoutColons(m_line, line);
        auto record = std::make_unique<StreamingClass_DBC_Signal>();
        record->msg_id = m_identifier;
        record->extended_id = m_isExtended ? 1 : 0;
        record->dlc = m_dlc;
        if (const Fault fault = dbc::readSignalLine(m_line, *record))
            return fault;
        count(*record);
        m_records.append(record.get());
        (void)record.release();
        return nullptr;
    }

    void count(const StreamingClass_DBC_Signal &signal)
    {
        ++m_summary.signal_count;
        m_summary.signals_of_no_message += m_isOfNoMessage ? 1 : 0;
        m_summary.oversized_signals += can::fitsItsMessage(signal) ? 0 : 1;
    }

    QList<StreamingClass_DBC_Signal *> &m_records;
    DbcSummary &m_summary;
    std::string m_line; // the line in hand, without colons
    bool m_isInMessage = false;
    bool m_isOfNoMessage = false; // what follows belongs to no message, whatever the current one is
    // The current message.
    quint32 m_identifier = 0;
    bool m_isExtended = false;
    quint8 m_dlc = 0;
};

} // namespace

QString dbc::shownLine(std::string_view line)
{
    constexpr std::size_t longest = 2000;
    if (line.size() <= longest)
        return toText(line);
    return toText(line.substr(0, characterStart(line, longest))) + QStringLiteral("...");
}

QString dbc::readSignals(std::string_view text, QList<StreamingClass_DBC_Signal *> &records,
                         DbcSummary &summary, const PositionCheck &check)
{
    SignalPass pass(records, summary);
    Lines lines(text);
    while (check(lines.position()) && lines.next()) {
        if (const Fault fault = pass.takeLine(lines.line()))
            return QStringLiteral("DBC-File: %1, line number %2 \r\n( %3 )")
                .arg(QString::fromLatin1(fault), QString::number(lines.number()),
                     shownLine(lines.line()));
    }
    return {};
}
