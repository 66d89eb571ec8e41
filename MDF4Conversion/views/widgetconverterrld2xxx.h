#pragma once

#include "MDF4Conversion/outputlines.h"
#include "MDF4Conversion/rld2xxxmemory.h"
#include "MDF4Conversion/rld2xxxwatch.h"
#include "MDF4Conversion/views/widgetconverterbase.h"

#include <QDateTime>
#include <QProcess>

// Converts to BLF, ASC or zipped ASC with the separate program rld2xxx, which it watches through
// shared memory.
class WidgetConverterRld2XXX : public WidgetConverterBase
{
    Q_OBJECT

public:
    explicit WidgetConverterRld2XXX(const PlannedConversion &conversion, QWidget *parent = nullptr);
    // A process that runs is ended; one that has finished its conversion may close its files first.
    ~WidgetConverterRld2XXX() override;

    void start() override;
    void cancel() override;
    [[nodiscard]] bool isFinished() const override;
    void poll() override;
    void disconnectWarnings() override {}
    void disconnectStatus() override {}
    [[nodiscard]] quint8 state() const override;

protected:
    [[nodiscard]] QString rowStatus(const QString &) const override;

private:
    // What the process writes on one of its streams.
    struct Stream
    {
        QString color;
        OutputLines splitter;
        QStringList lines; // not shown yet
    };
    // Of the output, to tell whether the process has touched it.
    struct FileStamp
    {
        bool exists = false;
        qint64 size = 0;
        QDateTime modified;

        static FileStamp of(const QString &path);
        [[nodiscard]] bool operator==(const FileStamp &other) const;
    };

    void connectProcess();
    void collect(Stream &stream, const QByteArray &bytes);
    void collectRest();
    void showOutput();
    void evaluateRecord();
    void stop(quint8 state);
    void removeUnfinishedOutput();

    QProcess m_process;
    mutable Rld2xxxMemory m_memory; // reading takes its lock
    Rld2xxxWatch m_watch;
    Stream m_out{QStringLiteral("black"), {}, {}};
    Stream m_err{QStringLiteral("red"), {}, {}};
    FileStamp m_outputBefore;
};
