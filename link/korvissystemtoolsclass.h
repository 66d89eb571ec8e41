#pragma once

#include <QString>

// Names of files that come from a logger: safe ones, and free ones.
class KorvisSystemToolsClass
{
public:
    // `name`, or if an entry of the folder has it already, in whatever case, the first free one of
    // "a_nr_2.rld", "a_nr_3.rld" and so on ("nr_2_a" for a name without a dot). The lock of a growing
    // "a.rld" has the name, too; what was left growing without a lock hasn't. Empty if the folder
    // doesn't exist. The name is free now; another program may take it before a file is made.
    [[nodiscard]] static QString uniqueFileName(const QString &folder, const QString &name);

    // The name under which a file of the logger is stored: the last component of what the logger
    // calls it, without characters and names that some file system can't hold, and short enough for
    // a number and suffixes to be added. Empty if nothing is left to call it by.
    [[nodiscard]] static QString localNameOf(const QString &remoteName);
};
