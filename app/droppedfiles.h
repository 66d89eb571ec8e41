#pragma once

#include <QList>
#include <QStringList>
#include <QUrl>

// What files that are dropped on the window stand for: raw logs to be converted, or one
// configuration to be opened.
struct DroppedFiles
{
    QStringList raw_logs;
    QString configuration;

    // Empty if a file is something else, they are of both kinds, or not on this computer.
    [[nodiscard]] static DroppedFiles of(const QList<QUrl> &urls);
    [[nodiscard]] bool isEmpty() const { return raw_logs.isEmpty() && configuration.isEmpty(); }
};
