#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

// The text of a plain INI file (UTF-8): `;` starts a comment, `=` or `:` divides key from value, `[`
// and `]` enclose a section. Sections and keys are not case-sensitive. A value between double quotes
// is taken as it stands, with "" for one quote. Comments and unknown keys survive a change.
class IniFile
{
public:
    IniFile() = default;
    // Takes any bytes; a line that is neither section, comment nor key is kept, and means nothing.
    explicit IniFile(const QByteArray &text);

    [[nodiscard]] QByteArray text() const;

    // The last line counts where a key stands twice.
    [[nodiscard]] std::optional<QString> value(const QString &section, const QString &key) const;
    // Line breaks in a value become blanks: a value is one line.
    void setValue(const QString &section, const QString &key, const QString &value);
    void remove(const QString &section, const QString &key);

private:
    struct Line
    {
        QString section; // the section that the line stands in, or opens
        QString key;     // empty: no key in this line
        QString value;
        QString text; // as in the file
    };

    [[nodiscard]] std::vector<Line>::iterator endOfSection(const QString &section);

    std::vector<Line> m_lines;
};
