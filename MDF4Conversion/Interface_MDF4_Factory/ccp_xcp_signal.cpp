#include "MDF4Conversion/Interface_MDF4_Factory/ccp_xcp_signal.h"

#include "MDF4Conversion/entryselection.h"
#include "a2l/records/a2lconstants.h"
#include "a2l/records/a2lmeasurement.h"

#include <QDebug>

#include <algorithm>
#include <map>

namespace {

constexpr int bitsOfDataTypes[] = {8, 8, 16, 16, 32, 32, 64, 64, 32, 64};
constexpr quint32 a2lExtendedIdFlag = 1U << 31;
constexpr int canDtoBytes = 8;

quint32 lookupIdOfA2l(quint32 canId)
{
    return canId & a2lExtendedIdFlag ? (canId & rawlog::extendedIdMask) | rawlog::extendedIdFlag
                                     : canId & rawlog::standardIdMask;
}

// A shift by 64 or more leaves nothing.
quint64 shiftedLeft(quint64 value, quint32 count)
{
    return count < 64 ? value << count : 0;
}

quint64 shiftedRight(quint64 value, quint32 count)
{
    return count < 64 ? value >> count : 0;
}

// False for a data type without an extraction.
bool kindOfDataType(quint8 dataType, ExtractedValue::Kind &kind)
{
    switch (dataType) {
    case A2lDataType::UByte:
    case A2lDataType::UWord:
    case A2lDataType::ULong:
    case A2lDataType::UInt64:
        kind = ExtractedValue::Unsigned;
        return true;
    case A2lDataType::SByte:
    case A2lDataType::SWord:
    case A2lDataType::SLong:
    case A2lDataType::SInt64:
        kind = ExtractedValue::Signed;
        return true;
    case A2lDataType::Float32:
        kind = ExtractedValue::Float;
        return true;
    case A2lDataType::Float64:
        kind = ExtractedValue::Double;
        return true;
    default:
        return false;
    }
}

} // namespace

can::BitOrder bitOrderOfByteOrder(int byteOrderKey)
{
    static const std::map<int, can::BitOrder> orders = {
        {0, can::BitOrder::Intel},          // LITTLE_ENDIAN
        {1, can::BitOrder::WholeBigEndian}, // BIG_ENDIAN
        {2, can::BitOrder::Intel},          // MSB_LAST
        {3, can::BitOrder::WholeBigEndian}, // MSB_FIRST
    };
    return orders.at(byteOrderKey);
}

int bytesOfDataType(quint8 a2lDataType)
{
    return a2lDataType < std::size(bitsOfDataTypes) ? bitsOfDataTypes[a2lDataType] / 8 : 0;
}

CCP_XCP_Signal::CCP_XCP_Signal(Link link, quint8 number, quint32 canId,
                               const A2lMeasurement &measurement)
    : m_link(link)
    , m_number(number)
    , m_canId(lookupIdOfA2l(canId))
    , m_dataType(measurement.data_type)
    , m_size(bytesOfDataType(measurement.data_type))
    , m_order(bitOrderOfByteOrder(measurement.byte_order))
    , m_mask(static_cast<quint64>(measurement.bit_mask))
    , m_operation(measurement.bit_operation)
    , m_shift(static_cast<quint32>(qMin<quint64>(measurement.shift_count, 64)))
    , m_bytes(m_size)
    , m_measurement(&measurement)
{}

void CCP_XCP_Signal::addPart(const Part &part, bool splitted, bool splitKnown)
{
    m_splitted = m_splitted || splitted;
    m_splitKnown = m_splitKnown && splitKnown;
    // Of the pieces of a longer value at the same address.
    if (splitted && part.valuePosition >= m_size)
        return;
    m_parts.push_back(part);
}

CCP_XCP_Signal CCP_XCP_Signal::withFirstPartOnly() const
{
    CCP_XCP_Signal signal = *this;
    signal.m_parts.resize(1);
    return signal;
}

bool CCP_XCP_Signal::isComplete() const
{
    if (!m_splitKnown)
        return false;
    if (!m_splitted)
        return m_parts.size() == 1 && m_parts.front().Len >= m_size;
    std::vector<bool> present(size_t(m_size), false);
    for (const Part &part : m_parts) {
        for (int i = part.valuePosition; i < qMin(part.valuePosition + part.Len, m_size); ++i)
            present[size_t(i)] = true;
    }
    return std::find(present.begin(), present.end(), false) == present.end();
}

std::vector<quint8> CCP_XCP_Signal::pids() const
{
    std::vector<quint8> result;
    for (const Part &part : m_parts)
        result.push_back(part.PID);
    std::sort(result.begin(), result.end());
    result.erase(std::unique(result.begin(), result.end()), result.end());
    return result;
}

quint8 CCP_XCP_Signal::entryType() const
{
    return m_link == Can ? rawlog::RLD_CAN : rawlog::RLD_ETH;
}

bool CCP_XCP_Signal::addressedBy(const StdLogEntry &entry) const
{
    if (entry.type != entryType() || entry.number != m_number || entry.data.empty())
        return false;
    if (m_link == Ethernet)
        return entry.sub == rawlog::ethSubXcp;
    return lookupId(entry.id) == m_canId && entry.info == canDtoBytes;
}

bool CCP_XCP_Signal::isForThisSignal(const StdLogEntry &entry)
{
    if (!addressedBy(entry))
        return false;
    for (const Part &part : m_parts) {
        const size_t first = size_t(part.Pos) + 1;
        if (part.PID != entry.data.front() || first + part.Len > entry.data.size())
            continue;
        if (!m_splitted) {
            m_hit = part;
            return true;
        }
        const int result =
            m_bytes.addReceivedByte(part.valuePosition, entry.data.data() + first, part.Len);
        if (result & CCP_XCP_Splitted_Byte_Container::AlreadyReceived)
            qWarning() << "Measurement:" << m_measurement->name << " - Inconsistent data?!";
        if (result & CCP_XCP_Splitted_Byte_Container::Complete)
            return true;
    }
    return false;
}

quint64 CCP_XCP_Signal::withBitOperation(quint64 raw) const
{
    const quint64 masked = raw & m_mask;
    switch (m_operation) {
    case A2lBitOperation::Invert:
        return ~masked;
    case A2lBitOperation::LeftShift:
        return shiftedLeft(masked, m_shift);
    case A2lBitOperation::RightShift:
        return shiftedRight(masked, m_shift);
    case A2lBitOperation::LeftShiftAndInvert:
        return ~shiftedLeft(masked, m_shift);
    case A2lBitOperation::RightShiftAndInvert:
        return ~shiftedRight(masked, m_shift);
    default:
        return masked;
    }
}

bool CCP_XCP_Signal::value(const StdLogEntry &entry, ExtractedValue &result)
{
    const auto bits = static_cast<quint32>(m_size) * 8;
    quint64 raw = 0;
    if (m_splitted) {
        raw =
            can::extractBits({m_bytes.values().data(), m_bytes.values().size()}, 0, bits, m_order);
        m_bytes.clear();
    } else {
        const quint32 position = (quint32(m_hit.Pos) + 1) * 8;
        raw = can::extractBits({entry.data.data(), entry.data.size()}, position, bits, m_order);
    }
    if (!kindOfDataType(m_dataType, result.kind)) {
        qCritical("%s", m_link == Can
                            ? "MDF4_DataChannel_Linear_CCP_XCP::extractData() landed in default "
                              "dataType!"
                            : "MDF4_DataChannel_Linear_ETH_XCP::extractData() landed in default "
                              "dataType!");
        return false;
    }
    const quint64 changed = withBitOperation(raw) & can::lowBits(bits);
    result.bits =
        result.kind == ExtractedValue::Signed ? can::signExtended(changed, bits) : changed;
    return true;
}
