#pragma once

#include <QMutex>
#include <QSet>
#include <QString>

// Free names for the outputs of one batch of conversions. A name is never given twice, though none
// of the files exists yet. Another process may take a name right after it was found free: who gets
// it asks for the next one then. Conversions on several threads may share one.
class OutputNames
{
public:
    // The next name for what `inputFile` becomes in `folder`: its base name with ".mf4", numbered
    // when that is taken.
    [[nodiscard]] QString outputFile(const QString &inputFile, const QString &folder);
    // The next temporary folder in `folder`: "tmp_" with a number.
    [[nodiscard]] QString temporaryDir(const QString &folder);

private:
    [[nodiscard]] bool isFree(const QString &path) const;
    QString take(const QString &path);

    QMutex m_mutex; // guards all below
    QSet<QString> m_taken;
    int m_outputNumber = 1; // shared by all files of the batch
    int m_temporaryNumber = 1;
};
