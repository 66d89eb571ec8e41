#pragma once

#include <QString>
#include <QtGlobal>

#include <deque>
#include <optional>

// How fast bytes arrive, from their count at certain times. Time is passed in.
class TransferPace
{
public:
    // `bytes` have arrived at `now_ms`, on a clock that doesn't go back. Fewer bytes than before
    // begin anew: what a failed file had received doesn't count.
    void add(qint64 now_ms, qint64 bytes);

    // Of the last period; 0 until there is one.
    [[nodiscard]] qint64 bytesPerSecond() const;
    // Until so many more have arrived, at the pace of the last seconds. Nothing while none arrive.
    [[nodiscard]] std::optional<qint64> secondsFor(qint64 bytes) const;

private:
    struct Sample
    {
        qint64 time_ms;
        qint64 bytes;
    };
    [[nodiscard]] static double pace(const Sample &from, const Sample &to);

    std::deque<Sample> m_samples; // oldest first
};

// "987.6 Kbit/s" up to 1,000,000 bytes a second, "8.008 Mbit/s" above.
[[nodiscard]] QString speedText(qint64 bytesPerSecond);
// "3.2 of 12.4 GiB", in the unit that fits the total; bytes.
[[nodiscard]] QString amountText(qint64 received, qint64 total);
// "about 3 minutes 20 seconds".
[[nodiscard]] QString timeLeftText(qint64 seconds);
