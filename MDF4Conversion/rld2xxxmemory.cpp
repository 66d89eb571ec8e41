#include "MDF4Conversion/rld2xxxmemory.h"

#include "MDF4Conversion/conversionbatch.h"

#include <QUuid>

class Rld2xxxMemory::Lock
{
public:
    explicit Lock(Rld2xxxMemory &owner)
        : m_memory(owner.m_memory)
        , m_isTaken(owner.m_isShared && owner.m_memory.lock())
    {}
    ~Lock()
    {
        if (m_isTaken)
            m_memory.unlock();
    }
    Lock(const Lock &) = delete;
    Lock &operator=(const Lock &) = delete;

private:
    QSharedMemory &m_memory;
    const bool m_isTaken;
};

bool Rld2xxxMemory::create(const QString &inputFile)
{
    if (m_memory.isAttached())
        return true;
    m_memory.setKey(QUuid::createUuid().toString() + QLatin1Char('-')
                    + conversionbatch::baseNameOf(inputFile));
    return m_memory.create(int(Rld2xxxRecord::size));
}

void Rld2xxxMemory::clear()
{
    m_isShared = true;
    if (!m_memory.data())
        return;
    const Lock lock(*this);
    Rld2xxxRecord record = Rld2xxxRecord::fromMemory(m_memory.constData());
    record.clear();
    record.toMemory(m_memory.data());
}

std::optional<Rld2xxxRecord> Rld2xxxMemory::read()
{
    if (!m_memory.data())
        return std::nullopt;
    const Lock lock(*this);
    return Rld2xxxRecord::fromMemory(m_memory.constData());
}

void Rld2xxxMemory::finish(quint8 state)
{
    if (!m_memory.data())
        return;
    const Lock lock(*this);
    Rld2xxxRecord record = Rld2xxxRecord::fromMemory(m_memory.constData());
    record.finish(state);
    record.toMemory(m_memory.data());
}
