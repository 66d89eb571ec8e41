#pragma once

#include <QByteArray>
#include <queue>

#include <functional>
#include <vector>

namespace drive {

// The logger has been up for 37 s when the drive begins: its clock overflows after 71 minutes.
constexpr qint64 clockAtStart_us = 37'000'000;

// When an entry is recorded. Times count from the start of the drive.
struct Moment
{
    qint64 due_us = 0;        // by the schedule
    qint64 time_us = 0;       // in fact: a little later than due
    quint32 timestamp_us = 0; // the logger's clock at time_us
    quint64 tick = 0;         // how many times this has been recorded before

    [[nodiscard]] double time_s() const { return double(time_us) * 1e-6; }
    [[nodiscard]] double due_s() const { return double(due_us) * 1e-6; }
};

// Makes one entry.
using EntryMaker = std::function<QByteArray(const Moment &)>;

// Records entries at their times, in order. What is added with a period comes again and again.
class Schedule
{
public:
    // What lies before `start_us` is left out.
    explicit Schedule(qint64 start_us = 0)
        : m_start_us(start_us)
    {}

    // The first time at `first_us`, then every `period_us`, by up to `jitter_us` late. The jitter
    // must be less than the period, or the order within the source is lost.
    void every(qint64 period_us, qint64 first_us, qint64 jitter_us, EntryMaker make);
    void once(qint64 time_us, EntryMaker make) { every(0, time_us, 0, std::move(make)); }

    // Appends what is recorded before `end_us` and hasn't been given yet.
    void recordUntil(qint64 end_us, QByteArray &entries);

private:
    struct Recurring
    {
        qint64 period_us; // 0: once
        qint64 first_us;
        qint64 jitter_us;
        EntryMaker make;
    };
    struct Due
    {
        std::size_t index; // into m_recurring
        Moment moment;
    };
    struct Later
    {
        // At one time, what was added first comes first.
        bool operator()(const Due &a, const Due &b) const
        {
            return a.moment.time_us != b.moment.time_us ? a.moment.time_us > b.moment.time_us
                                                        : a.index > b.index;
        }
    };
    void enqueue(std::size_t index, quint64 tick);

    qint64 m_start_us;
    std::vector<Recurring> m_recurring;
    std::priority_queue<Due, std::vector<Due>, Later> m_queue;
};

} // namespace drive
