#include "can/canfilters.h"
#include "can/dbcdecoding.h"
#include "can/dbclines.h"
#include "can/dbcnumbers.h"
#include "can/dbcpasses.h"

#include <QHash>
#include <QPair>

#include <array>
#include <string>

namespace {

constexpr std::string_view commentKeyword = "CM_";
constexpr std::string_view valueTableKeyword = "VAL_";
constexpr std::string_view valueTypeKeyword = "SIG_VALTYPE_";

bool startsWith(std::string_view text, std::string_view head)
{
    return text.substr(0, head.size()) == head;
}

// The line, simplified, starts with the keyword and a blank. `line` is trimmed.
bool isStatement(std::string_view line, std::string_view keyword)
{
    return line.size() > keyword.size() && startsWith(line, keyword)
           && dbc::spaceLength(line, keyword.size()) != 0;
}

// A line with the number that it has in the file.
struct NumberedLine
{
    explicit NumberedLine(const dbc::Lines &lines)
        : text(lines.line())
        , number(lines.number())
    {}

    [[nodiscard]] QString shownNumber() const { return QString::number(number); }
    [[nodiscard]] QString shown() const { return dbc::shownLine(text); }

    std::string_view text;
    int number;
};

// Finds records by message and name. Several records may have both in common.
class SignalIndex
{
public:
    explicit SignalIndex(const QList<StreamingClass_DBC_Signal *> &records)
        : m_records(records)
    {}

    // The first of those records; null for none.
    [[nodiscard]] StreamingClass_DBC_Signal *find(quint32 identifier, std::string_view name)
    {
        if (m_first.isEmpty()) {
            m_first.reserve(m_records.size());
            for (StreamingClass_DBC_Signal *record : m_records) {
                StreamingClass_DBC_Signal *&first = m_first[keyOf(*record)];
                if (!first)
                    first = record;
            }
        }
        return m_first.value({identifier, dbc::toText(name)});
    }

    // The others get the description of the first.
    void copyDescriptions() const
    {
        if (m_first.size() == m_records.size())
            return;
        for (StreamingClass_DBC_Signal *record : m_records) {
            if (const StreamingClass_DBC_Signal *first = m_first.value(keyOf(*record)))
                record->description = first->description;
        }
    }

private:
    using Key = QPair<quint32, QString>;

    [[nodiscard]] static Key keyOf(const StreamingClass_DBC_Signal &record)
    {
        return {record.msg_id, record.name};
    }

    const QList<StreamingClass_DBC_Signal *> &m_records;
    QHash<Key, StreamingClass_DBC_Signal *> m_first; // made when the first comment asks
};

// "CM_ SG_ identifier name "text";" in words that are apart by one blank.
struct SignalComment
{
    explicit SignalComment(std::string_view statement)
    {
        std::size_t start = 0;
        for (std::string_view &each : part) {
            const std::size_t blank = statement.find(' ', start);
            if (blank == std::string_view::npos)
                return;
            each = statement.substr(start, blank - start);
            start = blank + 1;
        }
        isWhole = true;
        const std::size_t firstQuote = statement.find('"');
        const std::size_t lastQuote = statement.rfind('"');
        if (firstQuote != std::string_view::npos && firstQuote < lastQuote) {
            hasText = true;
            text = statement.substr(firstQuote + 1, statement.size() - firstQuote - 1 - endLength);
        }
    }

    static constexpr std::size_t endLength = 2; // of the quote and the semicolon

    std::array<std::string_view, 4> part; // CM_, SG_, identifier, name
    std::string_view text;
    bool isWhole = false; // something stands behind the name
    bool hasText = false;
};

class CommentPass
{
public:
    CommentPass(std::string_view text, const QList<StreamingClass_DBC_Signal *> &records,
                DbcSummary &summary, const dbc::PositionCheck &check)
        : m_lines(text)
        , m_index(records)
        , m_summary(summary)
        , m_check(check)
    {}

    [[nodiscard]] QString run()
    {
        QString error;
        while (error.isEmpty() && nextLine())
            error = takeLine();
        m_index.copyDescriptions();
        return error;
    }

private:
    [[nodiscard]] bool nextLine() { return m_check(m_lines.position()) && m_lines.next(); }

    [[nodiscard]] QString takeLine()
    {
        const std::string_view line = dbc::trimmed(m_lines.line());
        if (isStatement(line, commentKeyword))
            return takeComment();
        if (isStatement(line, valueTableKeyword))
            return takeValueTable();
        if (isStatement(line, valueTypeKeyword))
            takeValueType(line);
        return {};
    }

    [[nodiscard]] QString takeValueTable()
    {
        const NumberedLine first(m_lines);
        while (!lineEndsStatement()) {
            if (nextLine())
                continue;
            const NumberedLine last(m_lines);
            return QStringLiteral("DBC-File: Invalid Signal-ValueTable structure, \r\n"
                                  "line number %1 ( %2 )\r\nline number %3 ( %4 )")
                .arg(first.shownNumber(), first.shown(), last.shownNumber(), last.shown());
        }
        ++m_summary.value_tables;
        return {};
    }

    [[nodiscard]] QString takeComment()
    {
        const NumberedLine first(m_lines);
        m_statement.clear();
        dbc::appendSimplified(m_statement, m_lines.line());
        while (!lineEndsStatement()) {
            if (!nextLine())
                return QStringLiteral("DBC-File: Invalid Description structure, \r\n"
                                      "line number %1 ( %2 )")
                    .arg(first.shownNumber(), first.shown());
            m_statement += "\r\n";
            dbc::appendSimplified(m_statement, m_lines.line());
        }
        if (!startsWith(m_statement, "CM_ SG_ ")) {
            ++m_summary.other_comments;
            return {};
        }
        if (takeSignalComment(SignalComment(m_statement)))
            return {};
        return QStringLiteral("DBC-File: Invalid Signal-Description MessageNr, \r\n"
                              "line number %1 ( %2 )")
            .arg(first.shownNumber(), first.shown());
    }

    // False when the identifier is none.
    [[nodiscard]] bool takeSignalComment(const SignalComment &comment)
    {
        StreamingClass_DBC_Signal *record = nullptr;
        if (comment.isWhole) {
            const std::optional<quint32> identifier = dbc::toUnsigned(comment.part[2]);
            if (!identifier)
                return false;
            record = m_index.find(*identifier & can::maxExtendedId, comment.part[3]);
        }
        if (record && comment.hasText)
            record->description = dbc::toText(comment.text);
        else
            ++m_summary.comments_without_signal;
        return true;
    }

    // "SIG_VALTYPE_ identifier name : type;" with 1 for a float and 2 for a double.
    void takeValueType(std::string_view line)
    {
        if (line.back() == ';')
            line = dbc::trimmed(line.substr(0, line.size() - 1));
        if (line.back() == '1' || line.back() == '2')
            ++m_summary.float_types;
    }

    [[nodiscard]] bool lineEndsStatement() const
    {
        const std::string_view line = dbc::trimmed(m_lines.line());
        return !line.empty() && line.back() == ';';
    }

    dbc::Lines m_lines;
    SignalIndex m_index;
    DbcSummary &m_summary;
    const dbc::PositionCheck &m_check;
    std::string m_statement; // the comment in hand: its lines simplified, with CR LF between them
};

} // namespace

QString dbc::readComments(std::string_view text, const QList<StreamingClass_DBC_Signal *> &records,
                          DbcSummary &summary, const PositionCheck &check)
{
    return CommentPass(text, records, summary, check).run();
}
