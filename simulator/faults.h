#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

// The ways in which the simulated logger misbehaves on demand.
namespace simulator {

enum class Fault {
    LateReply,
    LostReply,
    StaleSequence,
    MalformedReply,
    ErrorReply,
    SplitReply,
    NoiseBeforeReply,
    PushWithReply,
    CutMessage,
    BrokenEnvelope,
    WrongVersion,
    WrongCapabilities,
    NotReady,
    RefusedWrite,
    ChangedWrite,
    RefuseCommandConnection,
    DropCommandAfter,
    DropInReply,
    RefuseDataConnection,
    DropDataAfter,
    DataGarbage,
    DataDamage,
    DataHollow,
    DataFlood,
    RefuseFileConnection,
    ShortFile,
    LongFile,
    StalledFile
};

enum class FaultValue {
    Times,  // how often; 0, which is also the default, for ever
    Number, // 0 to 4294967295
    Text
};

struct FaultRow
{
    Fault fault;
    const char *name;
    FaultValue kind;
    const char *placeholder;  // of the value in a help text
    const char *defaultValue; // null: the value has to be given
    const char *help;
};

// Every fault, in the order of Fault.
[[nodiscard]] const QVector<FaultRow> &faultTable();
[[nodiscard]] const FaultRow &faultRow(Fault fault);

// One fault that is switched on.
struct FaultSetting
{
    Fault fault;
    QString value; // as the kind of the row says
    // The command (its word) or the message type (decimal) to which a fault of the command port is
    // confined, or "push" for what the logger sends unasked; empty: all of them.
    QString word;
};

// Reads NAME[@WORD][=VALUE]. Nothing, and a text for the user, when it isn't one.
[[nodiscard]] std::optional<FaultSetting> parseFault(const QString &text, QString *error = nullptr);

// The faults that are switched on. A later setting replaces an earlier one of the same fault.
class FaultSet
{
public:
    void set(const FaultSetting &setting);
    void clear(Fault fault);
    void clear() { m_active.clear(); }

    // The setting, when the fault is on and not confined to another word.
    [[nodiscard]] std::optional<FaultSetting> find(Fault fault, const QString &word = {}) const;
    [[nodiscard]] bool isOn(Fault fault, const QString &word = {}) const
    {
        return find(fault, word).has_value();
    }
    // The value of a fault that is on.
    [[nodiscard]] std::optional<quint32> number(Fault fault, const QString &word = {}) const;

    // Whether a fault of a number of times happens now; the last time switches it off.
    [[nodiscard]] bool happens(Fault fault, const QString &word = {});

private:
    struct Active
    {
        FaultSetting setting;
        quint32 timesLeft; // 0: for ever
    };
    [[nodiscard]] int indexOf(Fault fault, const QString &word) const;

    QVector<Active> m_active;
};

} // namespace simulator
