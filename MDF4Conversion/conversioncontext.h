#pragma once

#include <QString>

class MDF4_Conversion_Msg_Interface;
class SyncTimeline;
class TemporaryFilePool;

// What all parts of one running conversion share. The objects belong to the conversion and outlive
// its channels and groups.
struct MDF4_ConversionContext
{
    QString inputFile;
    QString outputFile;
    QString temporaryDir;
    MDF4_Conversion_Msg_Interface *messages = nullptr;
    SyncTimeline *cpuTimestamps = nullptr;
    TemporaryFilePool *temporaryFiles = nullptr;
};
