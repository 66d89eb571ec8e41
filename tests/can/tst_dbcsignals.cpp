#include "can/dbcsignals.h"
#include "tests/can/signalsamples.h"

#include <QTest>

#include <functional>

using sample::addMultiplexed;
using sample::addMultiplexor;
using sample::addSignal;
using Signal = StreamingClass_DBC_Signal;

class tst_DbcSignals : public QObject
{
    Q_OBJECT

private slots:
    void nameMessageAndWidthOfItsIdentifierMakeASignal();
    void everyFieldButTheFlagsMakesSignalsIdentical_data();
    void everyFieldButTheFlagsMakesSignalsIdentical();
    void flagsAndLiveValuesAreNoPartOfASignal();
    void tickedSignalsAreLoadedInTheirOrder();
    void liveSignalsThatAreNotTickedForRecordingAreNotLoaded();
    void aMultiplexedSignalBringsItsMultiplexor();
    void aMultiplexorIsLoadedOnce();
    void aTickedMultiplexorIsLoadedOnce();
    void ofSeveralMultiplexorsTheFirstIsLoaded();
    void multiplexorsAreBroughtInTheOrderOfTheirMessages();
    void aMissingMultiplexorIsAnErrorThatNamesTheMessage();
    void freshSignalsAreAppended();
    void aReloadedSignalKeepsItsTicksAndMovesToTheEnd();
    void ofSeveralReplacedSignalsTheFirstGivesItsTicks();
    void aSignalThatTheFileHoldsTwiceIsLoadedOnce();
    void signalsOfOtherMessagesAreNotReplaced();
    void aMultiplexorIsReplacedLikeAnyOther();
    void removedSignalsLeaveTheChannel();
    void theLastMultiplexedSignalTakesItsMultiplexorAlong();
    void aMultiplexorOfAnUntouchedMessageStays();
};

namespace {

QStringList names(const QList<Signal *> &records)
{
    QStringList result;
    for (const Signal *record : records)
        result.append(record->name);
    return result;
}

QStringList list(std::initializer_list<const char *> items)
{
    QStringList result;
    for (const char *item : items)
        result.append(QString::fromLatin1(item));
    return result;
}

} // namespace

void tst_DbcSignals::nameMessageAndWidthOfItsIdentifierMakeASignal()
{
    sample::SignalList s;
    const Signal &signal = addSignal(s, "Speed", 0x123);
    Signal other = signal;
    other.factor = 7;
    QVERIFY(can::isSameSignal(signal, other));
    other.msg_id = 0x124;
    QVERIFY(!can::isSameSignal(signal, other));
    other = signal;
    other.extended_id = 1;
    QVERIFY(!can::isSameSignal(signal, other));
    other = signal;
    other.name = QStringLiteral("speed");
    QVERIFY(!can::isSameSignal(signal, other));
}

using Change = std::function<void(Signal &)>;
Q_DECLARE_METATYPE(Change)

void tst_DbcSignals::everyFieldButTheFlagsMakesSignalsIdentical_data()
{
    QTest::addColumn<Change>("change");
    const auto row = [](const char *name, const Change &change) { QTest::newRow(name) << change; };
    row("name", [](Signal &s) { s.name += QLatin1Char('x'); });
    row("unit", [](Signal &s) { s.unit += QLatin1Char('x'); });
    row("description", [](Signal &s) { s.description += QLatin1Char('x'); });
    row("mux_kind", [](Signal &s) { ++s.mux_kind; });
    row("mux_value", [](Signal &s) { ++s.mux_value; });
    row("start_bit", [](Signal &s) { ++s.start_bit; });
    row("bit_length", [](Signal &s) { ++s.bit_length; });
    row("little_endian", [](Signal &s) { s.little_endian = 0; });
    row("is_signed", [](Signal &s) { s.is_signed = 1; });
    row("factor", [](Signal &s) { s.factor += 1; });
    row("offset", [](Signal &s) { s.offset += 1; });
    row("minimum", [](Signal &s) { s.minimum += 1; });
    row("maximum", [](Signal &s) { s.maximum += 1; });
    row("dlc", [](Signal &s) { ++s.dlc; });
    row("msg_id", [](Signal &s) { ++s.msg_id; });
    row("extended_id", [](Signal &s) { s.extended_id = 1; });
}

void tst_DbcSignals::everyFieldButTheFlagsMakesSignalsIdentical()
{
    QFETCH(Change, change);
    sample::SignalList s;
    const Signal &signal = addSignal(s, "Speed");
    Signal other = signal;
    QVERIFY(can::isIdenticalSignal(signal, other));
    change(other);
    QVERIFY(!can::isIdenticalSignal(signal, other));
}

void tst_DbcSignals::flagsAndLiveValuesAreNoPartOfASignal()
{
    sample::SignalList s;
    const Signal &signal = addSignal(s, "Speed");
    Signal other = signal;
    other.selection_flags = Signal::recordFlag | Signal::liveFlag;
    other.live_value = 12.5;
    other.live_seen = true;
    QVERIFY(can::isIdenticalSignal(signal, other));
}

void tst_DbcSignals::tickedSignalsAreLoadedInTheirOrder()
{
    sample::SignalList s;
    addSignal(s, "b", 0x200, Signal::recordFlag);
    addSignal(s, "not ticked", 0x100);
    addSignal(s, "a", 0x100, Signal::recordFlag);
    const can::SignalsToLoad load = can::signalsToLoad(s.items());
    QCOMPARE(names(load.records), list({"b", "a"}));
    QCOMPARE(load.selected, 2);
    QCOMPARE(load.error, QString());
}

void tst_DbcSignals::liveSignalsThatAreNotTickedForRecordingAreNotLoaded()
{
    sample::SignalList s;
    addSignal(s, "live", 0x100, Signal::liveFlag);
    QCOMPARE(can::signalsToLoad(s.items()).selected, 0);
    QVERIFY(can::signalsToLoad(s.items()).records.isEmpty());
}

void tst_DbcSignals::aMultiplexedSignalBringsItsMultiplexor()
{
    sample::SignalList s;
    addMultiplexor(s, "Page");
    addMultiplexed(s, "Torque", 3, 0x123, Signal::recordFlag);
    const can::SignalsToLoad load = can::signalsToLoad(s.items());
    QCOMPARE(names(load.records), list({"Torque", "Page"}));
    QCOMPARE(load.selected, 1);
    QCOMPARE(load.error, QString());
    QCOMPARE(s.at(0)->selection_flags, quint8(0));
}

void tst_DbcSignals::aMultiplexorIsLoadedOnce()
{
    sample::SignalList s;
    addMultiplexor(s, "Page");
    addMultiplexed(s, "a", 1, 0x123, Signal::recordFlag);
    addMultiplexed(s, "b", 2, 0x123, Signal::recordFlag);
    QCOMPARE(names(can::signalsToLoad(s.items()).records), list({"a", "b", "Page"}));
}

void tst_DbcSignals::aTickedMultiplexorIsLoadedOnce()
{
    sample::SignalList s;
    addMultiplexor(s, "Page").selection_flags = Signal::recordFlag;
    addMultiplexed(s, "a", 1, 0x123, Signal::recordFlag);
    QCOMPARE(names(can::signalsToLoad(s.items()).records), list({"Page", "a"}));
}

void tst_DbcSignals::ofSeveralMultiplexorsTheFirstIsLoaded()
{
    sample::SignalList s;
    addMultiplexed(s, "a", 1, 0x123, Signal::recordFlag);
    addMultiplexor(s, "other message", 0x124);
    addMultiplexor(s, "first", 0x123);
    addMultiplexor(s, "second", 0x123);
    QCOMPARE(names(can::signalsToLoad(s.items()).records), list({"a", "first"}));
}

void tst_DbcSignals::multiplexorsAreBroughtInTheOrderOfTheirMessages()
{
    sample::SignalList s;
    for (const quint32 id : {0x300u, 0x100u, 0x200u}) {
        addMultiplexor(s, QByteArray::number(id, 16).constData(), id);
        addMultiplexed(s, "m", 1, id, Signal::recordFlag);
    }
    QCOMPARE(names(can::signalsToLoad(s.items()).records),
             list({"m", "m", "m", "100", "200", "300"}));
}

void tst_DbcSignals::aMissingMultiplexorIsAnErrorThatNamesTheMessage()
{
    sample::SignalList s;
    addMultiplexor(s, "Page", 0x100);
    addMultiplexed(s, "with", 1, 0x100, Signal::recordFlag);
    addMultiplexed(s, "without", 1, 0x18FEF1AB, Signal::recordFlag);
    const can::SignalsToLoad load = can::signalsToLoad(s.items());
    QCOMPARE(load.error, QStringLiteral("No Multiplexor found within Msg.ID 18FEF1AB."));
    QCOMPARE(load.selected, 2);
    QCOMPARE(names(load.records), list({"with", "without", "Page"}));
    s.removeAt(2);
    addMultiplexed(s, "without", 1, 0x7B, Signal::recordFlag);
    QCOMPARE(can::signalsToLoad(s.items()).error,
             QStringLiteral("No Multiplexor found within Msg.ID 0000007B."));
}

void tst_DbcSignals::freshSignalsAreAppended()
{
    sample::SignalList channel;
    addSignal(channel, "old");
    sample::SignalList fresh;
    addSignal(fresh, "new", 0x123, Signal::recordFlag);
    addSignal(fresh, "newer", 0x123);
    can::insertSignals(channel, sample::released(fresh));
    QCOMPARE(names(channel.items()), list({"old", "new", "newer"}));
    QCOMPARE(channel.at(1)->selection_flags, Signal::recordFlag);
    QCOMPARE(channel.at(2)->selection_flags, quint8(0));
}

void tst_DbcSignals::aReloadedSignalKeepsItsTicksAndMovesToTheEnd()
{
    sample::SignalList channel;
    addSignal(channel, "a", 0x123, Signal::liveFlag);
    addSignal(channel, "b", 0x123, Signal::recordFlag);
    sample::SignalList fresh;
    addSignal(fresh, "a", 0x123, Signal::recordFlag).factor = 4;
    can::insertSignals(channel, sample::released(fresh));
    QCOMPARE(names(channel.items()), list({"b", "a"}));
    QCOMPARE(channel.at(1)->selection_flags, Signal::liveFlag);
    QCOMPARE(channel.at(1)->factor, 4.0);
}

void tst_DbcSignals::ofSeveralReplacedSignalsTheFirstGivesItsTicks()
{
    sample::SignalList channel;
    addSignal(channel, "a", 0x123, Signal::liveFlag);
    addSignal(channel, "a", 0x123, Signal::recordFlag);
    sample::SignalList fresh;
    addSignal(fresh, "a");
    can::insertSignals(channel, sample::released(fresh));
    QCOMPARE(names(channel.items()), list({"a"}));
    QCOMPARE(channel.at(0)->selection_flags, Signal::liveFlag);
}

void tst_DbcSignals::aSignalThatTheFileHoldsTwiceIsLoadedOnce()
{
    sample::SignalList channel;
    sample::SignalList fresh;
    addSignal(fresh, "a", 0x123, Signal::recordFlag);
    addSignal(fresh, "a", 0x123).factor = 4;
    can::insertSignals(channel, sample::released(fresh));
    QCOMPARE(channel.size(), 1);
    QCOMPARE(channel.at(0)->factor, 4.0);
    QCOMPARE(channel.at(0)->selection_flags, Signal::recordFlag);
}

void tst_DbcSignals::signalsOfOtherMessagesAreNotReplaced()
{
    sample::SignalList channel;
    addSignal(channel, "a", 0x123);
    addSignal(channel, "a", 0x124);
    sample::SignalList fresh;
    addSignal(fresh, "a", 0x123).extended_id = 1;
    addSignal(fresh, "A", 0x123);
    can::insertSignals(channel, sample::released(fresh));
    QCOMPARE(names(channel.items()), list({"a", "a", "a", "A"}));
}

void tst_DbcSignals::aMultiplexorIsReplacedLikeAnyOther()
{
    sample::SignalList channel;
    addMultiplexor(channel, "Page").bit_length = 4;
    addMultiplexed(channel, "a", 1, 0x123, Signal::recordFlag);
    sample::SignalList fresh;
    addMultiplexed(fresh, "b", 2, 0x123, Signal::recordFlag);
    addMultiplexor(fresh, "Page").bit_length = 8;
    can::insertSignals(channel, sample::released(fresh));
    QCOMPARE(names(channel.items()), list({"a", "b", "Page"}));
    QCOMPARE(channel.at(2)->bit_length, quint16(8));
}

void tst_DbcSignals::removedSignalsLeaveTheChannel()
{
    sample::SignalList channel;
    Signal &a = addSignal(channel, "A");
    addSignal(channel, "B");
    Signal &c = addSignal(channel, "C");
    can::removeSignals(channel, {&c, &a});
    QCOMPARE(names(channel.items()), list({"B"}));
}

void tst_DbcSignals::theLastMultiplexedSignalTakesItsMultiplexorAlong()
{
    sample::SignalList channel;
    addMultiplexor(channel, "Mux");
    Signal &first = addMultiplexed(channel, "First", 1);
    Signal &second = addMultiplexed(channel, "Second", 2);
    addSignal(channel, "Plain");
    can::removeSignals(channel, {&first});
    QCOMPARE(names(channel.items()), list({"Mux", "Second", "Plain"}));
    can::removeSignals(channel, {&second});
    QCOMPARE(names(channel.items()), list({"Plain"}));
}

void tst_DbcSignals::aMultiplexorOfAnUntouchedMessageStays()
{
    sample::SignalList channel;
    addMultiplexor(channel, "Mux", 0x200);
    Signal &other = addSignal(channel, "Other", 0x100);
    can::removeSignals(channel, {&other});
    QCOMPARE(names(channel.items()), list({"Mux"}));
}

QTEST_GUILESS_MAIN(tst_DbcSignals)
#include "tst_dbcsignals.moc"
