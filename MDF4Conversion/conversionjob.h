#pragma once

#include <QString>

// What a conversion is asked to do.
struct ConversionJob
{
    QString inputFile;
    QString outputFile;
    QString temporaryDir; // made by the conversion and removed with it
    QString author;
    QString department;
    int threads = 1; // that compress; the file is the same whatever their number
};

// The user that the environment names: USERNAME where it is set, else USER.
[[nodiscard]] QString environmentUser();
