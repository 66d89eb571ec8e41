#pragma once

#include <QString>
#include <QStringList>

// Compares an MF4 file, read back block by block, with the frames of the raw log that it was made
// of. Neither side uses the code of the conversion: frames are decoded bit by bit here.
struct ConversionCheck
{
    QString failure;   // what is wrong first; null when all samples are there
    QStringList found; // a line for each signal
    double length_s = 0;
    quint64 samples = 0;
};

// Every recorded DBC signal of the log's configuration must have one sample with the right value for
// each frame that holds it.
[[nodiscard]] ConversionCheck checkConversion(const QString &rawLog, const QString &mf4);
