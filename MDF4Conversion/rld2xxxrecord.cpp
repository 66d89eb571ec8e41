#include "MDF4Conversion/rld2xxxrecord.h"

#include <QtEndian>

#include <algorithm>
#include <cstring>

namespace {

constexpr std::size_t versionAt = 0;
constexpr std::size_t reservedAt = 4;
constexpr std::size_t countersAt = 8;
constexpr std::size_t finishedAt = 64;
constexpr std::size_t stateAt = 66;

constexpr std::size_t placeOf(Rld2xxxRecord::Counter counter)
{
    return countersAt + static_cast<std::size_t>(counter) * sizeof(quint64);
}

static_assert(placeOf(Rld2xxxRecord::Counter::WrittenElements) + sizeof(quint64) == finishedAt);
static_assert(stateAt + 1 == Rld2xxxRecord::size);

} // namespace

Rld2xxxRecord Rld2xxxRecord::fromMemory(const void *memory)
{
    Rld2xxxRecord record;
    std::memcpy(record.m_bytes.data(), memory, size);
    return record;
}

void Rld2xxxRecord::toMemory(void *memory) const
{
    std::memcpy(memory, m_bytes.data(), size);
}

void Rld2xxxRecord::clear()
{
    std::fill_n(m_bytes.begin() + versionAt, sizeof(quint32), uchar(0));
    std::fill(m_bytes.begin() + countersAt, m_bytes.end(), uchar(0));
    static_assert(reservedAt + sizeof(quint32) == countersAt);
}

quint32 Rld2xxxRecord::version() const
{
    return qFromLittleEndian<quint32>(m_bytes.data() + versionAt);
}

void Rld2xxxRecord::setVersion(quint32 version)
{
    qToLittleEndian(version, m_bytes.data() + versionAt);
}

quint64 Rld2xxxRecord::counter(Counter counter) const
{
    return qFromLittleEndian<quint64>(m_bytes.data() + placeOf(counter));
}

void Rld2xxxRecord::setCounter(Counter counter, quint64 value)
{
    qToLittleEndian(value, m_bytes.data() + placeOf(counter));
}

bool Rld2xxxRecord::isFinished() const
{
    return m_bytes[finishedAt] != 0;
}

quint8 Rld2xxxRecord::state() const
{
    return m_bytes[stateAt];
}

void Rld2xxxRecord::finish(quint8 state)
{
    m_bytes[finishedAt] = 1;
    m_bytes[stateAt] = state;
}
