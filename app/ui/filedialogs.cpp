#include "app/ui/filedialogs.h"

#include "app/ui/settingsstore.h"

#include <QDir>
#include <QFileInfo>

namespace {

QString startPath(const QString &key, const std::optional<QString> &fallbackKey)
{
    const SettingsStore store;
    const QString saved = store.value(key).toString();
    return saved.isEmpty() && fallbackKey.has_value() ? store.value(*fallbackKey).toString()
                                                      : saved;
}

// A folder is picked in a folder: where the path is a file's, in the one that holds it.
QString folderOf(const QString &path)
{
    const QFileInfo info(path);
    return info.isFile() ? info.absolutePath() : path;
}

// The name in the folder of a path. What isn't a folder is taken for a file, even if it is gone.
QString beside(const QString &path, const QString &name)
{
    if (path.isEmpty())
        return name;
    const QFileInfo info(path);
    return QDir(info.isDir() ? path : info.absolutePath()).filePath(name);
}

QString remembered(const QString &key, const QString &chosen)
{
    if (!chosen.isEmpty())
        SettingsStore().setValue(key, chosen);
    return chosen;
}

} // namespace

QString FileDialogs::getExistingDirWithKey(const QString &key,
                                           const std::optional<QString> &fallbackKey,
                                           const QString &title)
{
    return remembered(key, m_prompt.pickFolder(title, folderOf(startPath(key, fallbackKey))));
}

QString FileDialogs::getOpenFileNameWithKey(const QString &key,
                                            const std::optional<QString> &fallbackKey,
                                            const QString &title, const QString &extension)
{
    return remembered(key, m_prompt.pickFile(title, startPath(key, fallbackKey), extension));
}

QStringList FileDialogs::getOpenFileNamesWithKey(const QString &key,
                                                 const std::optional<QString> &fallbackKey,
                                                 const QString &title, const QString &extension)
{
    const QStringList chosen = m_prompt.pickFiles(title, startPath(key, fallbackKey), extension);
    remembered(key, chosen.value(0));
    return chosen;
}

QString FileDialogs::getSaveFileNameWithKey(const QString &key,
                                            const std::optional<QString> &fallbackKey,
                                            const QString &title, const QString &extension,
                                            const QString &proposedName)
{
    QString start = startPath(key, fallbackKey);
    if (!proposedName.isEmpty())
        start = beside(start, proposedName);
    return remembered(key, m_prompt.pickFileToSave(title, start, extension));
}
