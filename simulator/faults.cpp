#include "simulator/faults.h"

namespace simulator {
namespace {

using F = Fault;
using V = FaultValue;

const QVector<FaultRow> rows{
    {F::LateReply, "late-reply", V::Number, "MS", nullptr,
     "command replies and record echoes leave MS milliseconds late"},
    {F::LostReply, "lost-reply", V::Times, "TIMES", "0",
     "commands are carried out, but their replies and echoes never leave"},
    {F::StaleSequence, "stale-sequence", V::Times, "TIMES", "0",
     "replies and echoes carry the sequence number before the one asked for"},
    {F::MalformedReply, "malformed-reply", V::Text, "TEXT", "foo",
     "text replies read TEXT, records come cut in half"},
    {F::ErrorReply, "error-reply", V::Text, "CODE", "-1104",
     "text commands are not carried out and answer ERROR=CODE"},
    {F::SplitReply, "split-reply", V::Number, "BYTES", "1",
     "whatever the command port sends leaves in pieces of BYTES bytes"},
    {F::NoiseBeforeReply, "noise-before-reply", V::Number, "BYTES", "16",
     "BYTES bytes that are no envelope stand ahead of each one"},
    {F::PushWithReply, "push-with-reply", V::Times, "TIMES", "0",
     "the envelope of a reply also holds the GPS record, as a push"},
    {F::CutMessage, "cut-message", V::Times, "TIMES", "0",
     "the last message of an envelope claims more bytes than the envelope has"},
    {F::BrokenEnvelope, "broken-envelope", V::Number, "LENGTH", "100000001",
     "envelopes announce LENGTH bytes, whatever they hold"},
    {F::WrongVersion, "wrong-version", V::Text, "MAJOR.MINOR", "1.60",
     "the software version reads MAJOR.MINOR"},
    {F::WrongCapabilities, "wrong-capabilities", V::Text, "NUMBERS", "1,1,1,12,1,1",
     "the capabilities read NUMBERS, divided by commas"},
    {F::NotReady, "not-ready", V::Times, "TIMES", "0", "the subsystems are reported as not ready"},
    {F::RefusedWrite, "refused-write", V::Times, "TIMES", "0",
     "written records are not taken over; the echo holds the old ones"},
    {F::ChangedWrite, "changed-write", V::Times, "TIMES", "0",
     "written records are taken over with their switches off"},
    {F::RefuseCommandConnection, "refuse-command-connection", V::Times, "TIMES", "0",
     "the command port drops a connection as soon as it stands"},
    {F::DropCommandAfter, "drop-command-after", V::Number, "BYTES", nullptr,
     "the command port drops its connection once BYTES bytes are sent"},
    {F::DropInReply, "drop-in-reply", V::Times, "TIMES", "1",
     "the command port drops its connection in the middle of a reply"},
    {F::RefuseDataConnection, "refuse-data-connection", V::Times, "TIMES", "0",
     "the data port drops a connection as soon as it stands"},
    {F::DropDataAfter, "drop-data-after", V::Number, "BYTES", nullptr,
     "the data port drops its connection once BYTES bytes are sent"},
    {F::DataGarbage, "data-garbage", V::Number, "BYTES", "64",
     "BYTES bytes of noise stand ahead of each batch of entries"},
    {F::DataDamage, "data-damage", V::Number, "BYTES", "1",
     "BYTES bytes of each batch of entries are changed"},
    {F::DataHollow, "data-hollow", V::Times, "TIMES", "0",
     "an entry of each type that lacks the body that it announces follows each batch"},
    {F::DataFlood, "data-flood", V::Number, "FRAMES", "1000000",
     "as many CAN frames a second on twelve channels come on top of the live data"},
    {F::RefuseFileConnection, "refuse-file-connection", V::Times, "TIMES", "0",
     "the file port drops a connection as soon as it stands"},
    {F::ShortFile, "short-file", V::Number, "BYTES", "1",
     "a file's transfer ends BYTES bytes early"},
    {F::LongFile, "long-file", V::Number, "BYTES", "1", "BYTES bytes follow the end of a file"},
    {F::StalledFile, "stalled-file", V::Number, "BYTES", "0",
     "a file's transfer stops after BYTES bytes, but the connection stays"}};

bool fail(QString *error, const QString &text)
{
    if (error)
        *error = text;
    return false;
}

const FaultRow *rowNamed(const QString &name)
{
    for (const FaultRow &row : rows) {
        if (name == QLatin1String(row.name))
            return &row;
    }
    return nullptr;
}

bool isValid(const FaultRow &row, const QString &value, QString *error)
{
    if (row.kind == FaultValue::Text)
        return true;
    bool isNumber = false;
    value.toUInt(&isNumber);
    return isNumber
           || fail(error, QStringLiteral("The fault \"%1\" needs a number, not \"%2\".")
                              .arg(QLatin1String(row.name), value));
}

} // namespace

const QVector<FaultRow> &faultTable()
{
    return rows;
}

const FaultRow &faultRow(Fault fault)
{
    return rows.at(int(fault));
}

std::optional<FaultSetting> parseFault(const QString &text, QString *error)
{
    const int equals = text.indexOf(QLatin1Char('='));
    const QString left = equals < 0 ? text : text.left(equals);
    const FaultRow *row = rowNamed(left.section(QLatin1Char('@'), 0, 0));
    if (!row) {
        fail(error, QStringLiteral("There is no fault \"%1\".").arg(left));
        return {};
    }
    if (equals < 0 && !row->defaultValue) {
        fail(error, QStringLiteral("The fault \"%1\" needs a value.").arg(left));
        return {};
    }
    const QString value =
        equals < 0 ? QString::fromLatin1(row->defaultValue) : text.mid(equals + 1);
    if (!isValid(*row, value, error))
        return {};
    return FaultSetting{row->fault, value, left.section(QLatin1Char('@'), 1)};
}

void FaultSet::set(const FaultSetting &setting)
{
    clear(setting.fault);
    const bool isCounted = faultRow(setting.fault).kind == FaultValue::Times;
    m_active.append({setting, isCounted ? setting.value.toUInt() : 0});
}

void FaultSet::clear(Fault fault)
{
    for (int i = m_active.size() - 1; i >= 0; --i) {
        if (m_active.at(i).setting.fault == fault)
            m_active.remove(i);
    }
}

int FaultSet::indexOf(Fault fault, const QString &word) const
{
    for (int i = 0; i < m_active.size(); ++i) {
        const FaultSetting &setting = m_active.at(i).setting;
        if (setting.fault == fault && (setting.word.isEmpty() || setting.word == word))
            return i;
    }
    return -1;
}

std::optional<FaultSetting> FaultSet::find(Fault fault, const QString &word) const
{
    const int index = indexOf(fault, word);
    return index < 0 ? std::nullopt : std::optional(m_active.at(index).setting);
}

std::optional<quint32> FaultSet::number(Fault fault, const QString &word) const
{
    const auto setting = find(fault, word);
    return setting ? std::optional(setting->value.toUInt()) : std::nullopt;
}

bool FaultSet::happens(Fault fault, const QString &word)
{
    const int index = indexOf(fault, word);
    if (index < 0)
        return false;
    quint32 &timesLeft = m_active[index].timesLeft;
    if (timesLeft == 1)
        m_active.remove(index);
    else if (timesLeft > 1)
        --timesLeft;
    return true;
}

} // namespace simulator
