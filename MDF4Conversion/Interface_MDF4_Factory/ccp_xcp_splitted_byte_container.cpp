#include "MDF4Conversion/Interface_MDF4_Factory/ccp_xcp_splitted_byte_container.h"

#include <QDebug>

#include <algorithm>

int CCP_XCP_Splitted_Byte_Container::addReceivedByte(int pos, const quint8 *data, int len)
{
    int result = 0;
    const int end = qMin(pos + len, int(m_values.size()));
    for (int i = qMax(pos, 0); i < end; ++i) {
        const auto place = size_t(i);
        const quint8 byte = data[i - pos];
        if (m_received[place] != 0) {
            qWarning() << "CCP_XCP_Splitted_Byte_Container::addReceivedByte -> This byte" << byte
                       << "at pos:" << i << "was already received!";
            result |= AlreadyReceived;
        }
        m_values[place] = byte;
        m_received[place] = 1;
    }
    const bool complete = std::find(m_received.begin(), m_received.end(), 0) == m_received.end();
    return result | (complete ? Complete : Incomplete);
}

void CCP_XCP_Splitted_Byte_Container::clear()
{
    std::fill(m_values.begin(), m_values.end(), quint8(0));
    std::fill(m_received.begin(), m_received.end(), quint8(0));
}
