#pragma once

#include <QString>
#include <QVector>

// What a conversion found and did, for whoever started it.
struct ConversionSummary
{
    struct Channel
    {
        QString name;
        QString unit;
        quint64 samples = 0;
    };
    struct Group
    {
        QString name;
        QVector<Channel> channels;
        quint64 samples = 0;
        quint64 first_us = 0; // on the logger's clock
        quint64 last_us = 0;
    };

    QVector<Group> groups; // those with samples, in the order of the file
    quint64 entries = 0;
    quint64 skippedBytes = 0;
    quint64 droppedRecords = 0;
    quint64 startOffset_us = 0; // smallest timestamp, taken off all records
    quint64 lastTime_us = 0;    // largest timestamp
    quint64 utcStart_us = 0;    // 0 when the log doesn't tell
    quint64 statusCount = 0;
    quint64 warningCount = 0;
    quint64 errorCount = 0;
    QString outputFile;     // the name that it got, when it was written
    QString temporaryDir;   // that held its temporary files; empty if it didn't get that far
    bool written = false;   // the output file exists and is whole
    bool cancelled = false; // on request
};
