#pragma once

#include "MDF4Conversion/rawlog/drive/schedule.h"
#include "MDF4Conversion/rawlog/drive/vehicle.h"
#include "simulator/recordingfile.h"

#include <QDateTime>
#include <QObject>
#include <QString>

#include <memory>

namespace simulator {

struct LoggerState;

// Records what the configuration says into logs of the storage folder, each with the configuration
// at its head, as long as the logger has a folder and isn't told to stop. What is recorded is what
// is streamed at the same time, entry by entry, without the status that no log needs.
//
// A changed configuration begins another log once it has been left alone for a while; until then the
// old one goes on under the old configuration. Used on the simulator's thread; holds no more than the
// entries of one second.
class LogRecorder : public QObject
{
    Q_OBJECT

public:
    static constexpr int period_ms = 100;                     // of advance()
    static constexpr qint64 quietTime_us = 1'000'000;         // after a change
    static constexpr qint64 longestPause_us = 60'000'000;     // a longer one ends the log
    static constexpr qint64 maxLogBytes = 1024 * 1024 * 1024; // then logging pauses

    // The state outlives the recorder.
    explicit LogRecorder(const LoggerState &state, QObject *parent = nullptr);
    // Finishes the log.
    ~LogRecorder() override;

    // Records until now, the logger's uptime; begins and ends logs. A log that fails or grows to
    // `limit` is finished, and none follows until logging is stopped and started again.
    void advance(qint64 now_us, const QDateTime &utc, qint64 limit = maxLogBytes);

    void configurationChanged() { m_hasChanged = true; }
    // As if the logger were switched off.
    void finish();

    [[nodiscard]] bool isRecording() const { return m_file != nullptr; }

signals:
    void finished(const QString &path);
    void failed(const QString &reason);

private:
    [[nodiscard]] bool isWanted() const;
    [[nodiscard]] bool isConfigurationOld(qint64 now_us);
    void begin(qint64 now_us, const QDateTime &utc);
    void record(qint64 now_us);
    void pause(const QString &failure);

    const LoggerState &m_state;
    drive::Vehicle m_vehicle;
    QString m_folder; // of the log, or of the last one
    std::unique_ptr<RecordingFile> m_file;
    std::unique_ptr<drive::Schedule> m_schedule;
    qint64 m_end_us = 0; // of what is recorded
    bool m_isPaused = false;
    bool m_hasChanged = false; // since the last call
    qint64 m_changed_us = -1;  // by then the configuration had changed; -1: it hasn't
};

} // namespace simulator
