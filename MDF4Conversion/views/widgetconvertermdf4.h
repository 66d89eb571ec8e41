#pragma once

#include "MDF4Conversion/conversionjob.h"
#include "MDF4Conversion/messagerelay.h"
#include "MDF4Conversion/views/widgetconverterbase.h"

class UserPrompt;
class WorkerConvertMDF4;

// Converts to MDF4, on a thread of its own.
class WidgetConverterMdf4 : public WidgetConverterBase
{
    Q_OBJECT

public:
    // The job says what the plan doesn't: names to go on with, threads. Files are the plan's.
    WidgetConverterMdf4(const PlannedConversion &conversion, const ConversionJob &job,
                        UserPrompt &prompt, QWidget *parent = nullptr);
    // Ends a running conversion, for which it waits a few seconds at most.
    ~WidgetConverterMdf4() override;

    void start() override;
    void cancel() override;
    [[nodiscard]] bool isFinished() const override;
    // Shows the next messages. Behind the worker's end the last ones bring the final state.
    void poll() override;
    void disconnectWarnings() override;
    void disconnectStatus() override;
    [[nodiscard]] quint8 state() const override { return m_state; }

public slots:
    // When the worker has ended. The state follows once its messages are shown.
    void setFinalState();

protected:
    [[nodiscard]] QString rowStatus(const QString &count) const override;
    // Lives on a thread of its own; null before the start.
    [[nodiscard]] const WorkerConvertMDF4 *worker() const;

private:
    class Thread;

    void connectWorker();
    void relayOnWorkerThread(void (WorkerConvertMDF4::*signal)(QString), MessageLimits::Kind kind);
    [[nodiscard]] bool showMessages();
    void conclude();
    void cleanUpTemporaryDir();

    UserPrompt &m_prompt;
    ConversionJob m_job;
    // Shared with the connections: the worker may outlive this widget.
    const std::shared_ptr<MessageRelay> m_relay = std::make_shared<MessageRelay>();
    Thread *m_thread = nullptr; // deletes itself; null before the start
    quint8 m_state = conversionstate::notStarted;
    bool m_hasWorkerEnded = false;
    bool m_isOver = false; // and all its messages are shown
};
