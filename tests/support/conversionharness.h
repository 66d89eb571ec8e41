#pragma once

#include "MDF4Conversion/conversionjob.h"
#include "MDF4Conversion/conversionsummary.h"
#include "MDF4Conversion/workerconvertmdf4.h"
#include "config/terminalstruct.h"
#include "tests/support/mdf4reader.h"

#include <QByteArray>
#include <QStringList>
#include <QTemporaryDir>
#include <QVector>

#include <functional>
#include <vector>

// What a conversion told and what it left.
struct ConversionResult
{
    QStringList statuses;
    QStringList warnings;
    QStringList errors;
    QStringList messages; // all of them in order, with "Status: ", "Warning: ", "Error: " in front
    QVector<int> progress;
    ConversionSummary summary;
    QByteArray bytes;      // of the output file; empty when there is none
    mdf4reader::File file; // as read back
    QString readFailure;   // why the output can't be read; empty when it can
    std::vector<std::vector<unsigned char>> records; // by group

    [[nodiscard]] QStringList groupNames() const; // by the summary, in the order of the file
    [[nodiscard]] QStringList channelNames(int group) const; // without the time channel
    [[nodiscard]] const mdf4reader::Channel &channel(int group, const char *name) const;
    // One value for each record: as stored, as stored bits, converted, or the text.
    [[nodiscard]] QVector<double> raw(int group, const char *name) const;
    [[nodiscard]] QVector<quint64> bits(int group, const char *name) const;
    [[nodiscard]] QVector<double> physical(int group, const char *name) const;
    [[nodiscard]] QStringList texts(int group, const char *name) const;
    // Stored times of the records in us.
    [[nodiscard]] QVector<quint64> times(int group) const;

    // The only status that contains `part`; empty when there is none or more than one.
    [[nodiscard]] QString status(const QString &part) const;

private:
    template <class T, class Read>
    QVector<T> perRecord(int group, const char *name, Read read) const;
};

// Writes a raw log of a configuration and entries, converts it and reads the output back. With
// ZDS_KEEP_MF4 in the environment the outputs stay in the folder that it names.
class ConversionHarness
{
public:
    ConversionHarness();

    TerminalStruct configuration{QStringLiteral("Test")};
    ConversionJob job; // paths lie in folder()
    // Called before process(), for what a test wants to do to the worker.
    std::function<void(WorkerConvertMDF4 &)> prepare;
    std::function<void(const QString &)> onStatus;

    void add(const QByteArray &entry) { m_entries += entry; }
    // Replaces the configuration block by these bytes.
    void setConfigurationBlock(const QByteArray &block) { m_block = block; }
    // The block says that it has this main version.
    void setMainVersion(qint32 version);

    // The bytes of the log.
    [[nodiscard]] QByteArray log() const;
    [[nodiscard]] QString folder() const { return m_folder.path(); }
    // Files and folders in the folder, hidden ones too.
    [[nodiscard]] QStringList leftFiles() const;

    ConversionResult convert();
    // Converts whatever stands at job.inputFile.
    ConversionResult convertFile();

private:
    QTemporaryDir m_folder;
    QByteArray m_entries;
    QByteArray m_block;
};
