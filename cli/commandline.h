#pragma once

#include "cli/exitcodes.h"

#include <QString>

class Console;
class QCommandLineParser;

// What the command lines of all programs have in common. The name and version are those of the
// application object.
namespace commandline {

// --help and --version.
void addStandardOptions(QCommandLineParser &parser);
// Prints what --help or --version asks for; false when neither was given.
[[nodiscard]] bool showHelpOrVersion(Console &console, const QCommandLineParser &parser);
// Tells what is wrong and where to find help.
[[nodiscard]] ExitCode usageError(Console &console, const QString &text);
// What the program ends with: output that got lost is told of, and is a failure.
[[nodiscard]] ExitCode finalCode(Console &console, ExitCode code);

} // namespace commandline
