#pragma once

#include <QString>
#include <QVector>

#include <optional>

// The folder in which the simulated logger keeps its files. Only regular files directly in it can
// be reached: no folders, links or hidden files, nothing that is being recorded, and nothing outside.
namespace simulator {

struct StoredFile
{
    QString name;
    qint64 size = 0; // bytes
};

// By name. Empty without a folder.
[[nodiscard]] QVector<StoredFile> storedFiles(const QString &folder);

// The path of the file of this name; nothing when the folder has none.
[[nodiscard]] std::optional<QString> storedFilePath(const QString &folder, const QString &name);

} // namespace simulator
