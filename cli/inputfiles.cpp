#include "cli/inputfiles.h"

#include "cli/console.h"

#include <QDir>
#include <QFileInfo>
#include <QRegExp>
#include <QSet>

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace {

bool isPattern(const QString &text)
{
    return text.contains(QLatin1Char('*')) || text.contains(QLatin1Char('?'))
           || text.contains(QLatin1Char('['));
}

QString joined(const QString &folder, const QString &name)
{
    if (folder.isEmpty())
        return name;
    return folder.endsWith(QLatin1Char('/')) ? folder + name : folder + QLatin1Char('/') + name;
}

#ifdef Q_OS_WIN
constexpr QDir::Filters asTheShell{};
#else
constexpr QDir::Filters asTheShell = QDir::CaseSensitive;
#endif

// Entries of a folder whose names match a pattern. A name that can't be a QString, which Qt leaves
// out, comes into the failures instead.
class Listing
{
public:
    Listing(const QStringList &patterns, QDir::Filters filters)
        : m_patterns(patterns)
        , m_filters(filters)
    {}

    // Appends the paths in `folder`, sorted by name.
    void read(const QString &folder, QStringList &paths, QStringList &failures) const
    {
        const QString path = folder.isEmpty() ? QStringLiteral(".") : folder;
        for (const QString &name : QDir(path).entryList(m_patterns, m_filters, QDir::Name))
            paths.append(joined(folder, name));
#ifndef Q_OS_WIN
        readUndecodable(path, folder, failures);
#endif
    }

private:
#ifndef Q_OS_WIN
    void readUndecodable(const QString &path, const QString &folder, QStringList &failures) const
    {
        std::error_code error;
        std::filesystem::directory_iterator entry(QFile::encodeName(path).toStdString(), error);
        for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
            const std::string bytes = entry->path().filename().string();
            const QString name = QString::fromStdString(bytes);
            if (name.toStdString() != bytes && matches(name) && isWanted(*entry))
                failures.append(notUtf8Text(joined(folder, name)));
        }
    }

    [[nodiscard]] bool isWanted(const std::filesystem::directory_entry &entry) const
    {
        std::error_code error;
        return m_filters.testFlag(QDir::Files) ? entry.is_regular_file(error)
                                               : entry.is_directory(error);
    }

    // As QDir does.
    [[nodiscard]] bool matches(const QString &name) const
    {
        const Qt::CaseSensitivity sensitivity =
            m_filters.testFlag(QDir::CaseSensitive) ? Qt::CaseSensitive : Qt::CaseInsensitive;
        return !name.startsWith(QLatin1Char('.'))
               && std::any_of(m_patterns.begin(), m_patterns.end(), [&](const QString &pattern) {
                      return QRegExp(pattern, sensitivity, QRegExp::Wildcard).exactMatch(name);
                  });
    }
#endif

    QStringList m_patterns;
    QDir::Filters m_filters;
};

// The files that match, part by part.
QStringList expanded(const QString &pattern, QStringList &failures)
{
    QStringList parts = QDir::fromNativeSeparators(pattern).split(QLatin1Char('/'));
    const bool isRooted = parts.first().isEmpty();
    QStringList found{isRooted ? QStringLiteral("/") : QString()};
    if (isRooted)
        parts.removeFirst();
    while (!parts.isEmpty()) {
        const QString part = parts.takeFirst();
        const QDir::Filters filters =
            parts.isEmpty() ? QDir::Filters(QDir::Files) : QDir::Dirs | QDir::NoDotAndDotDot;
        const Listing listing({part}, filters | asTheShell);
        QStringList next;
        for (const QString &folder : qAsConst(found)) {
            if (QFileInfo::exists(joined(folder, part)))
                next.append(joined(folder, part));
            else if (isPattern(part))
                listing.read(folder, next, failures);
        }
        found = next;
    }
    return found;
}

// The files that an argument stands for; else the reason why there is none, or which are left out.
QStringList filesOf(const QString &argument, const QStringList &patterns, QStringList &failures)
{
    const QFileInfo info(argument);
    const int failuresBefore = failures.size();
    QStringList files;
    QString reason;
    if (info.isDir()) {
        Listing(patterns, QDir::Files).read(argument, files, failures);
        reason = QStringLiteral("there is no %1 in this folder")
                     .arg(patterns.join(QStringLiteral(" or ")));
    } else if (info.exists()) {
        files.append(argument);
    } else if (isNotUtf8(argument)) {
        failures.append(notUtf8Text(argument));
    } else if (isPattern(argument)) {
        files = expanded(argument, failures);
        reason = QStringLiteral("no file matches");
    } else {
        reason = QStringLiteral("the file does not exist");
    }
    if (files.isEmpty() && failures.size() == failuresBefore)
        failures.append(QStringLiteral("%1: %2").arg(displayName(argument), reason));
    return files;
}

} // namespace

bool isNotUtf8(const QString &path)
{
    return path.contains(QChar(QChar::ReplacementCharacter)) && !QFileInfo::exists(path);
}

QString notUtf8Text(const QString &path)
{
    return QStringLiteral("%1: its name is not valid UTF-8").arg(displayName(path));
}

InputFiles inputFiles(const QStringList &arguments, const QStringList &patterns)
{
    InputFiles result;
    QSet<QString> known;
    for (const QString &argument : arguments) {
        for (const QString &file : filesOf(argument, patterns, result.failures)) {
            const QString canonical = QFileInfo(file).canonicalFilePath();
            if (known.contains(canonical))
                continue;
            known.insert(canonical);
            result.files.append(file);
        }
    }
    return result;
}
