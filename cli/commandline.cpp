#include "cli/commandline.h"

#include "cli/console.h"

#include <QCommandLineParser>
#include <QCoreApplication>

namespace commandline {
namespace {

const QString helpName = QStringLiteral("help");
const QString versionName = QStringLiteral("version");

} // namespace

void addStandardOptions(QCommandLineParser &parser)
{
    // Qt's own help option brings another one along, for programs with windows.
    parser.addOption(
        {{QStringLiteral("h"), helpName}, QStringLiteral("Print a summary of the options.")});
    parser.addOption({{QStringLiteral("v"), versionName}, QStringLiteral("Print the version.")});
}

bool showHelpOrVersion(Console &console, const QCommandLineParser &parser)
{
    if (parser.isSet(helpName))
        console.print(parser.helpText().trimmed());
    else if (parser.isSet(versionName))
        console.print(QStringLiteral("%1 %2").arg(QCoreApplication::applicationName(),
                                                  QCoreApplication::applicationVersion()));
    else
        return false;
    return true;
}

ExitCode usageError(Console &console, const QString &text)
{
    console.error(text);
    console.error(QStringLiteral("Try %1 --help.").arg(QCoreApplication::applicationName()));
    return UsageError;
}

ExitCode finalCode(Console &console, ExitCode code)
{
    const QStringList failures = console.writeFailures();
    for (const QString &failure : failures)
        console.error(failure);
    return failures.isEmpty() ? code : SomeFileFailed;
}

} // namespace commandline
