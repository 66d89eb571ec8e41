#include "can/loadedsignals.h"
#include "tests/can/signalsamples.h"

#include <QTest>

using can::LoadedSignals;
using sample::addSignal;
using State = can::LoadedSignals::State;

class tst_LoadedSignals : public QObject
{
    Q_OBJECT

private slots:
    void aSignalThatTheChannelLacksIsNew();
    void anIdenticalSignalIsLoaded();
    void ticksDoNotMakeASignalDifferent();
    void aSignalWithOtherParametersIsLoadedDifferently();
    void anotherSignalAtTheSamePlaceCountsAsLoadedDifferently();
    void theSamePlaceOfAnotherMessageIsFree();
    void theWidthOfTheIdentifierDoesNotFreeAPlace();
    void ofTheSignalAndItsPlaceTheFirstInTheChannelDecides();
    void ofSeveralRecordsOfTheSignalTheFirstDecides();
    void theChannelsRecordsMayGoAway();
};

void tst_LoadedSignals::aSignalThatTheChannelLacksIsNew()
{
    sample::SignalList file;
    QCOMPARE(LoadedSignals().stateOf(addSignal(file, "a")), State::New);
}

void tst_LoadedSignals::anIdenticalSignalIsLoaded()
{
    sample::SignalList channel;
    const StreamingClass_DBC_Signal &signal = addSignal(channel, "a");
    QCOMPARE(LoadedSignals(channel.items()).stateOf(signal), State::Loaded);
}

void tst_LoadedSignals::ticksDoNotMakeASignalDifferent()
{
    sample::SignalList channel;
    StreamingClass_DBC_Signal signal = addSignal(channel, "a");
    signal.selection_flags = StreamingClass_DBC_Signal::liveFlag;
    QCOMPARE(LoadedSignals(channel.items()).stateOf(signal), State::Loaded);
}

void tst_LoadedSignals::aSignalWithOtherParametersIsLoadedDifferently()
{
    sample::SignalList channel;
    StreamingClass_DBC_Signal signal = addSignal(channel, "a");
    signal.start_bit = 32;
    QCOMPARE(LoadedSignals(channel.items()).stateOf(signal), State::LoadedDifferently);
}

void tst_LoadedSignals::anotherSignalAtTheSamePlaceCountsAsLoadedDifferently()
{
    sample::SignalList channel;
    StreamingClass_DBC_Signal signal = addSignal(channel, "a");
    signal.name = QStringLiteral("b");
    QCOMPARE(LoadedSignals(channel.items()).stateOf(signal), State::LoadedDifferently);
    signal.bit_length = 8;
    QCOMPARE(LoadedSignals(channel.items()).stateOf(signal), State::New);
}

void tst_LoadedSignals::theSamePlaceOfAnotherMessageIsFree()
{
    sample::SignalList channel;
    StreamingClass_DBC_Signal signal = addSignal(channel, "a");
    signal.msg_id = 0x124;
    QCOMPARE(LoadedSignals(channel.items()).stateOf(signal), State::New);
}

void tst_LoadedSignals::theWidthOfTheIdentifierDoesNotFreeAPlace()
{
    sample::SignalList channel;
    StreamingClass_DBC_Signal signal = addSignal(channel, "a");
    signal.extended_id = 1;
    QCOMPARE(LoadedSignals(channel.items()).stateOf(signal), State::LoadedDifferently);
}

void tst_LoadedSignals::ofTheSignalAndItsPlaceTheFirstInTheChannelDecides()
{
    sample::SignalList channel;
    addSignal(channel, "at the same place");
    const StreamingClass_DBC_Signal &signal = addSignal(channel, "a");
    QCOMPARE(LoadedSignals(channel.items()).stateOf(signal), State::LoadedDifferently);
    channel.append(channel.takeAt(0));
    QCOMPARE(LoadedSignals(channel.items()).stateOf(signal), State::Loaded);
}

void tst_LoadedSignals::ofSeveralRecordsOfTheSignalTheFirstDecides()
{
    sample::SignalList channel;
    addSignal(channel, "a").start_bit = 32;
    const StreamingClass_DBC_Signal &second = addSignal(channel, "a");
    QCOMPARE(LoadedSignals(channel.items()).stateOf(second), State::LoadedDifferently);
}

void tst_LoadedSignals::theChannelsRecordsMayGoAway()
{
    sample::SignalList channel;
    const StreamingClass_DBC_Signal signal = addSignal(channel, "a");
    const LoadedSignals loaded(channel.items());
    channel.clear();
    QCOMPARE(loaded.stateOf(signal), State::Loaded);
}

QTEST_GUILESS_MAIN(tst_LoadedSignals)
#include "tst_loadedsignals.moc"
