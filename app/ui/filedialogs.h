#pragma once

#include "app/ui/userprompt.h"

#include <optional>

// File pickers that begin where the user was last: each remembers the chosen path under its key,
// in the program's settings. Under the fallback key lies the place to begin the first time. A file
// dialog's extension reads "name (*.extension)". Empty when the user cancels.
class FileDialogs
{
public:
    explicit FileDialogs(UserPrompt &prompt)
        : m_prompt(prompt)
    {}

    QString getExistingDirWithKey(const QString &key, const std::optional<QString> &fallbackKey,
                                  const QString &title);
    QString getOpenFileNameWithKey(const QString &key, const std::optional<QString> &fallbackKey,
                                   const QString &title, const QString &extension);
    // Remembers the first of the files.
    QStringList getOpenFileNamesWithKey(const QString &key,
                                        const std::optional<QString> &fallbackKey,
                                        const QString &title, const QString &extension);
    // With a proposed name the picker begins in the folder of what was saved last, at that name: what
    // lies under the fallback key may be a file that must not be written over.
    QString getSaveFileNameWithKey(const QString &key, const std::optional<QString> &fallbackKey,
                                   const QString &title, const QString &extension,
                                   const QString &proposedName = {});

private:
    UserPrompt &m_prompt;
};
