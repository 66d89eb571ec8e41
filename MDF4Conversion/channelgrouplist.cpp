#include "MDF4Conversion/channelgrouplist.h"

#include "MDF4Conversion/mdf4_channelgroup.h"

#include <QCoreApplication>

ChannelGroupList::ChannelGroupList(const std::atomic<bool> &cancelled)
    : m_cancelled(cancelled)
{}

ChannelGroupList::~ChannelGroupList() = default;

bool ChannelGroupList::reserve(std::size_t channels)
{
    if (isClosed())
        return false;
    if (m_groupCount == maxGroups || channels > maxChannels - m_channelCount) {
        m_tooMany = true;
        return false;
    }
    ++m_groupCount;
    m_channelCount += channels;
    return true;
}

void ChannelGroupList::add(std::unique_ptr<MDF4_ChannelGroup> group)
{
    m_groups.push_back(std::move(group));
}

ChannelGroupList::Groups ChannelGroupList::take()
{
    return std::move(m_groups);
}

QString ChannelGroupList::failure() const
{
    if (!m_tooMany)
        return QString();
    return QCoreApplication::translate("Conversion",
                                       "The configuration of the log describes more than %1 "
                                       "channel groups or %2 channels, more than a conversion can "
                                       "hold.")
        .arg(maxGroups)
        .arg(maxChannels);
}
