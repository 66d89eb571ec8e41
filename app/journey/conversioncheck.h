#pragma once

#include <QString>
#include <QStringList>

#include <vector>

struct TerminalStruct;

// How often a CAN message is sent.
struct MessageCycle
{
    int channel;
    bool extended;
    quint32 id;
    qint64 period_us;
};

// What a log has to hold.
struct ExpectedLog
{
    const TerminalStruct &configuration; // that the user chose; outlives this
    std::vector<MessageCycle> cycles;    // of every message with a recorded signal
};

// Compares an MF4 file, read back block by block, with the frames of the raw log that it was made
// of, and these with what was chosen and how often it is sent. Frames are decoded bit by bit here,
// without the code of the conversion. Both read the log by the same class; a frame that it dropped
// leaves a gap.
struct ConversionCheck
{
    QString failure;   // what is wrong first; null when all samples are there
    QStringList found; // a line for each signal
    double length_s = 0;
    quint64 samples = 0;
};

// Every DBC signal that is recorded by the expected configuration must stand in the log's head as it
// was chosen, its message must have come all the time, and the signal must have one sample with the
// right value for each frame that holds it.
[[nodiscard]] ConversionCheck checkConversion(const QString &rawLog, const QString &mf4,
                                              const ExpectedLog &expected);
