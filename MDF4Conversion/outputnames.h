#pragma once

#include <QSet>
#include <QString>

// Free names for the outputs of one batch of conversions. A name is never given twice, though none
// of the files exists yet.
class OutputNames
{
public:
    struct Mdf4Names
    {
        QString outputFile;
        QString temporaryDir;
    };

    // The names for converting `inputFile` into `folder`: its base name with ".mf4", numbered when
    // that is taken, and a temporary folder "tmp_" with a number.
    [[nodiscard]] Mdf4Names mdf4Names(const QString &inputFile, const QString &folder);

private:
    [[nodiscard]] bool isFree(const QString &path) const;
    QString take(const QString &path);

    QSet<QString> m_taken;
    int m_outputNumber = 1; // shared by all files of the batch
    int m_temporaryNumber = 1;
};
