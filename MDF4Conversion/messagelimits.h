#pragma once

#include <array>
#include <cstddef>

// How many lines of each kind are kept: a log may raise millions of messages. Each kind has its own
// counter, which goes on up to the limit and stops.
class MessageLimits
{
public:
    enum class Kind { Plain, Status, Warning, Error };
    enum class Verdict {
        Show,
        ShowAsLast, // this line reaches the limit, no further one is shown
        Drop
    };

    [[nodiscard]] static constexpr int limit(Kind kind) { return limits[index(kind)]; }
    [[nodiscard]] int count(Kind kind) const { return m_counts[index(kind)]; }

    // Counts a line in.
    [[nodiscard]] Verdict admit(Kind kind)
    {
        int &lines = m_counts[index(kind)];
        if (lines == limit(kind))
            return Verdict::Drop;
        ++lines;
        return lines == limit(kind) ? Verdict::ShowAsLast : Verdict::Show;
    }

private:
    static constexpr std::size_t index(Kind kind) { return static_cast<std::size_t>(kind); }

    static constexpr std::array limits{10'000, 25'000, 1'000, 100}; // in the order of Kind

    std::array<int, limits.size()> m_counts{};
};
