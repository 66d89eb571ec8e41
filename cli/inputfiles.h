#pragma once

#include <QString>
#include <QStringList>

// The files that arguments of a command line stand for.
struct InputFiles
{
    QStringList files;
    QStringList failures; // what stands for nothing or can't be opened, with the reason
};

// A file that exists is taken as it is, whatever characters its name has. A folder stands for the
// files in it that match one of `patterns`; a name with *, ? or [ for the files that match it, in
// every part of the path. Patterns mind the case of letters where the shell of the system does,
// folders don't. In the order of the arguments, each file once, under whatever names it comes.
[[nodiscard]] InputFiles inputFiles(const QStringList &arguments, const QStringList &patterns);

// Whether a path of the command line holds bytes that are no UTF-8, and so was lost on its way.
[[nodiscard]] bool isNotUtf8(const QString &path);
// The failure of such a path.
[[nodiscard]] QString notUtf8Text(const QString &path);
