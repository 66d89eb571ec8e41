#include "simulator/logreplay.h"

#include "MDF4Conversion/rawlog/entrybuilder.h"
#include "MDF4Conversion/rawlog/entrytypes.h"

#include <QtEndian>

namespace simulator {
namespace {

constexpr qint64 second_us = 1'000'000;
constexpr qint64 longestPause_us = 10 * second_us; // a longer one is a jump of the clock
constexpr qint64 pauseAtEnd_us = 50'000;
constexpr int maxBatchBytes = 1024 * 1024;

void appendLe(QByteArray &bytes, quint32 value)
{
    char raw[sizeof value];
    qToLittleEndian(value, raw);
    bytes.append(raw, int(sizeof raw));
}

rawlog::BodyHead bodyHead(const StdLogEntry &entry)
{
    const rawlog::EntryKind *kind = rawlog::entryKind(entry.type);
    return kind ? kind->bodyHead : rawlog::BodyHead::None;
}

bool hasTimestamp(const StdLogEntry &entry)
{
    const rawlog::BodyHead head = bodyHead(entry);
    return head == rawlog::BodyHead::Timestamp || head == rawlog::BodyHead::TimestampAndId;
}

} // namespace

QByteArray bytesOf(const StdLogEntry &entry)
{
    QByteArray body;
    switch (bodyHead(entry)) {
    case rawlog::BodyHead::None:
        break;
    case rawlog::BodyHead::Ignored:
        appendLe(body, 0);
        break;
    case rawlog::BodyHead::TimestampAndId:
        appendLe(body, entry.timestamp);
        appendLe(body, entry.id);
        break;
    case rawlog::BodyHead::Timestamp:
        appendLe(body, entry.timestamp);
        break;
    }
    for (const quint8 byte : entry.data)
        body.append(char(byte));
    return rawlog::entryBytes({entry.type, entry.number, entry.sub, entry.info}, body);
}

LogReplay::LogReplay(const QString &path)
    : m_path(path)
    , m_reader(std::make_unique<LogFileReader>(path))
{}

QString LogReplay::failure() const
{
    if (configuration() && m_reader->failure().isEmpty())
        return {};
    const QString cause = m_reader->failure();
    return QStringLiteral("%1: %2").arg(
        m_path, cause.isEmpty() ? QStringLiteral("This is no raw log.") : cause);
}

void LogReplay::restart(qint64 now_us)
{
    m_due_us = now_us;
    m_lastCall_us = now_us;
    m_hasClock = false;
}

// The next complete entry; at the end of the log the first one again.
bool LogReplay::readNext()
{
    for (int pass = 0; pass < 2; ++pass) {
        bool atEnd = false;
        while (!atEnd) {
            m_entry.clear();
            m_reader->next(m_entry, atEnd);
            if (!atEnd && m_entry.isComplete()) {
                noteTime();
                return true;
            }
        }
        m_reader = std::make_unique<LogFileReader>(m_path);
        m_hasClock = false;
        m_due_us += pauseAtEnd_us;
    }
    return false;
}

// Clocks of the logger's processors differ a little: what lies before the last entry is due with
// it.
void LogReplay::noteTime()
{
    if (!hasTimestamp(m_entry))
        return;
    const auto since_us = qint64(qint32(m_entry.timestamp - m_lastTimestamp_us));
    if (!m_hasClock || since_us > 0)
        m_lastTimestamp_us = m_entry.timestamp;
    if (m_hasClock && since_us > 0 && since_us <= longestPause_us)
        m_due_us += since_us;
    m_hasClock = true;
}

QByteArray LogReplay::entriesUntil(qint64 now_us)
{
    if (now_us - m_lastCall_us > second_us)
        m_due_us += now_us - m_lastCall_us; // nobody listened
    m_lastCall_us = now_us;
    QByteArray entries;
    while (entries.size() < maxBatchBytes) {
        if (!m_hasEntry && !readNext())
            break;
        m_hasEntry = m_due_us > now_us;
        if (m_hasEntry)
            break;
        entries += bytesOf(m_entry);
    }
    return entries;
}

} // namespace simulator
