#pragma once

#include "MDF4Conversion/outputlines.h"
#include "MDF4Conversion/rld2xxxmemory.h"
#include "MDF4Conversion/rld2xxxoutput.h"
#include "MDF4Conversion/rld2xxxwatch.h"
#include "MDF4Conversion/views/widgetconverterbase.h"

#include <QElapsedTimer>
#include <QProcess>

// Converts to BLF, ASC or zipped ASC with the separate program rld2xxx, which it watches through
// shared memory.
class WidgetConverterRld2XXX : public WidgetConverterBase
{
    Q_OBJECT

public:
    explicit WidgetConverterRld2XXX(const PlannedConversion &conversion, QWidget *parent = nullptr);
    // A process that runs is ended; one that has told its end may close its files first.
    ~WidgetConverterRld2XXX() override;

    void start() override;
    void cancel() override;
    // The process has told its end and the output is in its place, or the conversion was stopped.
    [[nodiscard]] bool isFinished() const override { return !m_isRunning; }
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

    void connectProcess();
    void collect(Stream &stream, const QByteArray &bytes);
    void collectRest();
    void showOutput();
    void appendStartError(const QString &cause);
    void evaluateRecord();
    [[nodiscard]] bool hasToldItsEnd() const;
    [[nodiscard]] bool hasClosedItsFiles();
    void conclude();
    [[nodiscard]] bool publishOutput();
    void killProcess();
    void stop(quint8 state);

    QProcess m_process;
    mutable Rld2xxxMemory m_memory; // reading takes its lock
    Rld2xxxWatch m_watch;
    Stream m_out{QStringLiteral("black"), {}, {}};
    Stream m_err{QStringLiteral("red"), {}, {}};
    Rld2xxxOutput m_output;
    QElapsedTimer m_closing; // since the process told its end
    bool m_isRunning = false;
};
