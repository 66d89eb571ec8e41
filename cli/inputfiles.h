#pragma once

#include <QString>
#include <QStringList>

// The files that arguments of a command line stand for.
struct InputFiles
{
    QStringList files;
    QStringList failures; // arguments that stand for nothing, with the reason
};

// A file that exists is taken as it is, whatever characters its name has. A folder stands for the
// files in it that match one of `patterns`; a name with *, ? or [ for the files that match it, in
// every part of the path. In the order of the arguments, each file once.
[[nodiscard]] InputFiles inputFiles(const QStringList &arguments, const QStringList &patterns);
