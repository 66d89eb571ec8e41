#pragma once

#include <QString>

#include <atomic>
#include <cstddef>
#include <memory>
#include <vector>

class MDF4_ChannelGroup;

// The channel groups of a conversion while they are built from the configuration of a log. A
// configuration may lie: it describes no more of them than a conversion can hold, else it is given
// up. Used on the thread of the conversion.
class ChannelGroupList
{
public:
    using Groups = std::vector<std::unique_ptr<MDF4_ChannelGroup>>;

    static constexpr std::size_t maxGroups = 65536;
    static constexpr std::size_t maxChannels = 262144; // of all groups together

    // `cancelled` may be set by any thread and outlives this.
    explicit ChannelGroupList(const std::atomic<bool> &cancelled);
    ~ChannelGroupList();

    // Asked before a group of so many channels is made. False when the configuration asks for too
    // much or the conversion is cancelled, from then on for good: building ends there.
    [[nodiscard]] bool reserve(std::size_t channels);
    [[nodiscard]] bool isClosed() const { return m_tooMany || m_cancelled; }

    void add(std::unique_ptr<MDF4_ChannelGroup> group);
    // All that was added.
    [[nodiscard]] Groups take();

    // Why the groups can't be had, for the user; empty as long as they can.
    [[nodiscard]] QString failure() const;

private:
    const std::atomic<bool> &m_cancelled;
    Groups m_groups;
    std::size_t m_groupCount = 0;
    std::size_t m_channelCount = 0;
    bool m_tooMany = false;
};
