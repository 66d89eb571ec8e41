#pragma once

#include "MDF4Conversion/outputlines.h"
#include "MDF4Conversion/rld2xxxmemory.h"
#include "MDF4Conversion/rld2xxxoutput.h"
#include "MDF4Conversion/rld2xxxwatch.h"
#include "MDF4Conversion/views/widgetconverterbase.h"

#include <QElapsedTimer>
#include <QProcess>

class UserPrompt;

// Converts to BLF, ASC or zipped ASC with the separate program rld2xxx, which it watches through
// shared memory.
class WidgetConverterRld2XXX : public WidgetConverterBase
{
    Q_OBJECT

public:
    static constexpr int defaultLockLimit_ms = 10'000;
    static constexpr int defaultClosingNotice_ms = 3'000;

    WidgetConverterRld2XXX(const PlannedConversion &conversion, UserPrompt &prompt,
                           QWidget *parent = nullptr);
    // A process that runs is ended, and what it has made goes.
    ~WidgetConverterRld2XXX() override;

    // How long the process may keep the lock of the shared memory before the conversion is given up.
    void setLockLimit(int milliseconds) { m_lockLimit_ms = milliseconds; }
    // How long the process may close its files before the user is told what is waited for.
    void setClosingNotice(int milliseconds) { m_closingNotice_ms = milliseconds; }

    void start() override;
    void cancel() override;
    // The process has told its end and ended, and the output is in its place, or the conversion was
    // stopped.
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
    [[nodiscard]] bool isWorkDone() const;
    void tellThatItCloses();
    void conclude();
    [[nodiscard]] QString publishOutput();
    void giveUp(const QString &cause);
    void killProcess();
    void stop(quint8 state);

    UserPrompt &m_prompt;
    QProcess m_process;
    mutable Rld2xxxMemory m_memory; // reading asks its thread
    Rld2xxxWatch m_watch;
    Stream m_out{QStringLiteral("black"), {}, {}};
    Stream m_err{QStringLiteral("red"), {}, {}};
    Rld2xxxOutput m_output;
    QElapsedTimer m_closing; // since the process told its end
    int m_lockLimit_ms = defaultLockLimit_ms;
    int m_closingNotice_ms = defaultClosingNotice_ms;
    bool m_isClosingTold = false;
    bool m_isRunning = false;
};
