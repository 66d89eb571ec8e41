#include "can/canfilters.h"
#include "can/dbcdecoding.h"
#include "can/dbclines.h"
#include "can/dbcnumbers.h"
#include "can/dbcpasses.h"

#include <QHash>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

namespace {

using Signal = StreamingClass_DBC_Signal;

constexpr std::string_view commentKeyword = "CM_";
constexpr std::string_view valueTableKeyword = "VAL_";
constexpr std::string_view namedTableKeyword = "VAL_TABLE_";
constexpr std::string_view valueTypeKeyword = "SIG_VALTYPE_";
constexpr std::string_view multiplexValuesKeyword = "SG_MUL_VAL_";

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

// "SG_MUL_VAL_ identifier name multiplexor 1-1, 3-5;" is about more than the one value that the line
// of the signal has room for.
bool hasSeveralValues(std::string_view line)
{
    constexpr int wordsInFront = 4;
    dbc::Words words(line.substr(0, line.rfind(';')));
    for (int i = 0; i < wordsInFront; ++i)
        (void)words.next();
    const std::string_view range = words.next();
    const std::size_t dash = range.find('-');
    const bool isOneValue =
        dash != std::string_view::npos && range.substr(0, dash) == range.substr(dash + 1);
    return !range.empty() && !(isOneValue && words.next().empty());
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

// Finds records by message and name. Several records may have both in common. A sorted list, and no
// hash table: names that are made to collide cost a comparison here, there a walk over all of them.
class SignalIndex
{
public:
    explicit SignalIndex(const QList<Signal *> &records)
        : m_records(records)
    {}

    // The first of those records; null for none.
    [[nodiscard]] Signal *find(quint32 identifier, const QString &name)
    {
        if (m_entries.empty())
            build();
        const quint64 key = keyOf(identifier, name);
        auto entry = std::lower_bound(
            m_entries.begin(), m_entries.end(), key, [&name](const Entry &each, quint64 wanted) {
                return each.key != wanted ? each.key < wanted : each.record->name < name;
            });
        const bool isFound =
            entry != m_entries.end() && entry->key == key && entry->record->name == name;
        return isFound ? entry->record : nullptr;
    }

    // The others get the description of the first.
    void copyDescriptions() const
    {
        const Entry *previous = nullptr;
        for (const Entry &entry : m_entries) {
            if (previous && !isLess(*previous, entry))
                entry.record->description = previous->record->description;
            previous = &entry;
        }
    }

private:
    struct Entry
    {
        quint64 key;
        Signal *record;
    };

    // Most comparisons end with this number, without a look at the names.
    static quint64 keyOf(quint32 identifier, const QString &name)
    {
        return quint64(identifier) << 32 | qHash(name);
    }

    static bool isLess(const Entry &a, const Entry &b)
    {
        return a.key != b.key ? a.key < b.key : a.record->name < b.record->name;
    }

    void build()
    {
        m_entries.reserve(std::size_t(m_records.size()));
        for (Signal *record : m_records)
            m_entries.push_back({keyOf(record->msg_id, record->name), record});
        std::stable_sort(m_entries.begin(), m_entries.end(), isLess);
    }

    const QList<Signal *> &m_records;
    std::vector<Entry> m_entries; // made when the first comment asks
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
            text = withoutEnd(statement).substr(firstQuote + 1);
        }
    }

    // Without the last two characters, which are the quote and the semicolon if nothing stands
    // between them.
    static std::string_view withoutEnd(std::string_view statement)
    {
        statement.remove_suffix(1);
        return statement.substr(0, dbc::characterStart(statement, statement.size() - 1));
    }

    std::array<std::string_view, 4> part; // CM_, SG_, identifier, name
    std::string_view text;
    bool isWhole = false; // something stands behind the name
    bool hasText = false;
};

class CommentPass
{
public:
    CommentPass(std::string_view text, const QList<Signal *> &records, DbcSummary &summary,
                const dbc::PositionCheck &check)
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
        if (isStatement(line, namedTableKeyword))
            ++m_summary.named_value_tables;
        if (isStatement(line, valueTypeKeyword))
            takeValueType(line);
        if (isStatement(line, multiplexValuesKeyword) && hasSeveralValues(line))
            ++m_summary.multiplexor_ranges;
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
        Signal *record = nullptr;
        if (comment.isWhole) {
            const std::optional<quint32> identifier = dbc::toUnsigned(comment.part[2]);
            if (!identifier)
                return false;
            record = m_index.find(*identifier & can::maxExtendedId, dbc::toText(comment.part[3]));
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

QString dbc::readComments(std::string_view text, const QList<Signal *> &records,
                          DbcSummary &summary, const PositionCheck &check)
{
    return CommentPass(text, records, summary, check).run();
}
