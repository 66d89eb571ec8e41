#pragma once

#include <QElapsedTimer>
#include <QProcess>
#include <QRandomGenerator>
#include <QThread>

// A random moment of a program's run, the same ones each time. The program begins when it says so, and
// takes as long as the last run that nobody ended.
class KillMoment
{
public:
    static constexpr int kills = 50;
    static constexpr int maxRuns = 4 * kills; // some end before their moment
    static constexpr int end_ms = 30'000;     // no run takes so long

    explicit KillMoment(quint32 seed)
        : m_random(seed)
    {}

    // A run that has just begun, to its end. False if it doesn't end well.
    bool measure(QProcess &program)
    {
        m_clock.start();
        const bool hasEnded = program.waitForFinished(end_ms) && program.exitCode() == 0;
        m_duration_ns = m_clock.nsecsElapsed();
        return hasEnded;
    }

    // Waits in a run that has just begun. False if the run has ended before.
    bool waitIn(QProcess &program)
    {
        m_clock.start();
        const qint64 moment_ns = qint64(m_random.generate64() % quint64(m_duration_ns));
        while (m_clock.nsecsElapsed() < moment_ns) {
            QThread::usleep(50); // the moments of a run of milliseconds lie so close
            if (program.waitForFinished(0)) {
                m_duration_ns = m_clock.nsecsElapsed();
                return false;
            }
        }
        return true;
    }

private:
    QRandomGenerator m_random;
    QElapsedTimer m_clock;
    qint64 m_duration_ns = 1;
};
