#include "link/korvissystemtoolsclass.h"

#include "MDF4Conversion/growingfile.h"

#include <QDir>
#include <QSet>

#include <algorithm>

namespace {

// File systems hold names of 255 bytes or UTF-16 units. The rest is for "_nr_N" and suffixes.
constexpr int maxNameBytes = 200;

QString numbered(const QString &name, int number)
{
    const int dot = name.lastIndexOf(QLatin1Char('.'));
    if (dot < 0)
        return QStringLiteral("nr_%1_").arg(number) + name;
    return name.left(dot) + QStringLiteral("_nr_%1").arg(number) + name.mid(dot);
}

// Windows refuses these; categories "other" are control and format characters, halves of
// surrogate pairs, and what no font shows.
bool isUnfit(QChar character)
{
    return QStringLiteral("<>:\"|?*").contains(character)
           || (character.category() >= QChar::Other_Control
               && character.category() <= QChar::Other_NotAssigned);
}

// Devices of Windows, which it finds in every folder and behind every extension.
bool isDeviceName(const QString &name)
{
    const QString stem = name.section(QLatin1Char('.'), 0, 0).trimmed().toUpper();
    static const QSet<QString> devices{
        QStringLiteral("CON"),    QStringLiteral("PRN"),    QStringLiteral("AUX"),
        QStringLiteral("NUL"),    QStringLiteral("CONIN$"), QStringLiteral("CONOUT$"),
        QStringLiteral("CLOCK$"),
    };
    const bool isPort =
        stem.size() == 4
        && (stem.startsWith(QLatin1String("COM")) || stem.startsWith(QLatin1String("LPT")))
        && stem.at(3).digitValue() >= 0; // superscript digits count, too
    return isPort || devices.contains(stem);
}

// Takes what is too much from in front of the extension.
QString shortened(const QString &name)
{
    const int dot = name.lastIndexOf(QLatin1Char('.'));
    QString stem = dot > 0 ? name.left(dot) : name;
    QString extension = dot > 0 ? name.mid(dot) : QString();
    if (extension.toUtf8().size() > maxNameBytes / 4) {
        stem = name;
        extension.clear();
    }
    const int room = maxNameBytes - extension.toUtf8().size();
    while (stem.toUtf8().size() > room)
        stem.chop(1);
    return stem + extension;
}

} // namespace

QString KorvisSystemToolsClass::uniqueFileName(const QString &folder, const QString &name)
{
    const QDir directory(folder);
    if (folder.isEmpty() || !directory.exists())
        return {};
    QSet<QString> taken;
    const QStringList entries =
        directory.entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    for (const QString &entry : entries)
        taken << entry.toCaseFolded() << growingfile::nameKeptBy(entry).toCaseFolded();
    QString candidate = name;
    for (int number = 2; taken.contains(candidate.toCaseFolded()); ++number)
        candidate = numbered(name, number);
    return candidate;
}

QString KorvisSystemToolsClass::localNameOf(const QString &remoteName)
{
    const int slash = std::max(remoteName.lastIndexOf(QLatin1Char('/')),
                               remoteName.lastIndexOf(QLatin1Char('\\')));
    // More than any file system takes; the rest isn't worth looking at.
    QString name = remoteName.mid(slash + 1).trimmed().right(4 * maxNameBytes);
    if (name.isEmpty() || name == QLatin1String(".") || name == QLatin1String(".."))
        return {};
    std::replace_if(name.begin(), name.end(), isUnfit, QLatin1Char('_'));
    name = shortened(name);
    if (name.endsWith(QLatin1Char('.')) || name.endsWith(QLatin1Char(' ')))
        name.back() = QLatin1Char('_'); // Windows would drop it
    if (growingfile::isReserved(name))
        name += QLatin1Char('_');
    return isDeviceName(name) ? QLatin1Char('_') + name : name;
}
