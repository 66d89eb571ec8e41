#include "app/state/inifile.h"

#include <algorithm>

namespace {

bool sameName(const QString &a, const QString &b)
{
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

// The part of a line in front of a comment; a `;` between quotes starts none.
QString withoutComment(const QString &line)
{
    bool quoted = false;
    for (int i = 0; i < line.size(); ++i) {
        if (line.at(i) == QLatin1Char('"'))
            quoted = !quoted;
        else if (line.at(i) == QLatin1Char(';') && !quoted)
            return line.left(i);
    }
    return line;
}

QString unquoted(const QString &value)
{
    const QLatin1Char quote('"');
    if (value.size() < 2 || !value.startsWith(quote) || !value.endsWith(quote))
        return value;
    return value.mid(1, value.size() - 2).replace(QStringLiteral("\"\""), QStringLiteral("\""));
}

QString quotedIfNeeded(QString value)
{
    value.replace(QLatin1Char('\r'), QLatin1Char(' ')).replace(QLatin1Char('\n'), QLatin1Char(' '));
    if (value == value.trimmed() && !value.contains(QLatin1Char('"'))
        && !value.contains(QLatin1Char(';')))
        return value;
    value.replace(QLatin1Char('"'), QStringLiteral("\"\""));
    return QLatin1Char('"') + value + QLatin1Char('"');
}

int positionOfDivider(const QString &content)
{
    const auto isDivider = [](QChar c) { return c == QLatin1Char('=') || c == QLatin1Char(':'); };
    const auto divider = std::find_if(content.begin(), content.end(), isDivider);
    return divider == content.end() ? -1 : static_cast<int>(divider - content.begin());
}

} // namespace

IniFile::IniFile(const QByteArray &text)
{
    QString all = QString::fromUtf8(text);
    if (all.startsWith(QChar::ByteOrderMark))
        all.remove(0, 1);
    QStringList lines = all.split(QLatin1Char('\n'));
    if (lines.last().isEmpty())
        lines.removeLast();
    QString section;
    for (QString &text_of_line : lines) {
        if (text_of_line.endsWith(QLatin1Char('\r')))
            text_of_line.chop(1);
        Line line{section, {}, {}, text_of_line};
        const QString content = withoutComment(text_of_line).trimmed();
        if (content.startsWith(QLatin1Char('[')) && content.endsWith(QLatin1Char(']'))) {
            section = content.mid(1, content.size() - 2).trimmed();
            line.section = section;
        } else if (const int divider = positionOfDivider(content); divider > 0) {
            line.key = content.left(divider).trimmed();
            line.value = unquoted(content.mid(divider + 1).trimmed());
        }
        m_lines.push_back(line);
    }
}

QByteArray IniFile::text() const
{
    QString all;
    for (const Line &line : m_lines)
        all += line.text + QLatin1Char('\n');
    return all.toUtf8();
}

std::optional<QString> IniFile::value(const QString &section, const QString &key) const
{
    const auto line = std::find_if(m_lines.rbegin(), m_lines.rend(), [&](const Line &l) {
        return sameName(l.section, section) && sameName(l.key, key);
    });
    if (line == m_lines.rend())
        return std::nullopt;
    return line->value;
}

std::vector<IniFile::Line>::iterator IniFile::endOfSection(const QString &section)
{
    const auto last = std::find_if(m_lines.rbegin(), m_lines.rend(),
                                   [&](const Line &l) { return sameName(l.section, section); });
    return last.base();
}

void IniFile::setValue(const QString &section, const QString &key, const QString &value)
{
    const QString written = quotedIfNeeded(value);
    const Line line{section, key, unquoted(written), key + QStringLiteral(" = ") + written};
    const auto held = std::find_if(m_lines.rbegin(), m_lines.rend(), [&](const Line &l) {
        return sameName(l.section, section) && sameName(l.key, key);
    });
    if (held != m_lines.rend()) {
        *held = line;
        return;
    }
    auto position = endOfSection(section);
    if (position == m_lines.begin()) { // there is no such section yet
        m_lines.push_back({section, {}, {}, QLatin1Char('[') + section + QLatin1Char(']')});
        position = m_lines.end();
    }
    m_lines.insert(position, line);
}

void IniFile::remove(const QString &section, const QString &key)
{
    const auto isIt = [&](const Line &l) {
        return sameName(l.section, section) && sameName(l.key, key);
    };
    m_lines.erase(std::remove_if(m_lines.begin(), m_lines.end(), isIt), m_lines.end());
}
