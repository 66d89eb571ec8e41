#include "cli/inputfiles.h"

#include "cli/console.h"

#include <QDir>
#include <QFileInfo>

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

QStringList entriesOf(const QString &folder, const QString &pattern, QDir::Filters filters)
{
    const QDir dir(folder.isEmpty() ? QStringLiteral(".") : folder);
    QStringList paths;
    for (const QString &name : dir.entryList({pattern}, filters, QDir::Name))
        paths.append(joined(folder, name));
    return paths;
}

// The files that match, part by part.
QStringList expanded(const QString &pattern)
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
        QStringList next;
        for (const QString &folder : qAsConst(found)) {
            if (QFileInfo::exists(joined(folder, part)))
                next.append(joined(folder, part));
            else if (isPattern(part))
                next += entriesOf(folder, part, filters);
        }
        found = next;
    }
    return found;
}

QStringList filesIn(const QString &folder, const QStringList &patterns)
{
    QStringList paths;
    for (const QString &name : QDir(folder).entryList(patterns, QDir::Files, QDir::Name))
        paths.append(joined(folder, name));
    return paths;
}

} // namespace

InputFiles inputFiles(const QStringList &arguments, const QStringList &patterns)
{
    InputFiles result;
    for (const QString &argument : arguments) {
        const QFileInfo info(argument);
        QStringList files{argument};
        QString failure;
        if (info.isDir()) {
            files = filesIn(argument, patterns);
            failure = QStringLiteral("there is no %1 in this folder")
                          .arg(patterns.join(QStringLiteral(" or ")));
        } else if (!info.exists() && isPattern(argument)) {
            files = expanded(argument);
            failure = QStringLiteral("no file matches");
        } else if (!info.exists()) {
            files.clear();
            failure = QStringLiteral("the file does not exist");
        }
        if (files.isEmpty())
            result.failures.append(QStringLiteral("%1: %2").arg(displayName(argument), failure));
        for (const QString &file : qAsConst(files)) {
            if (!result.files.contains(file))
                result.files.append(file);
        }
    }
    return result;
}
