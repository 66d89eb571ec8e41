#include "can/dbcsignals.h"
#include "link/logtrigger.h"

#include <QTest>

#include <memory>

using Signal = StreamingClass_DBC_Signal;
using namespace logtrigger;

namespace {

Signal signalCalled(const char *name, quint8 muxKind = PlainSignal, quint32 message = 0x100)
{
    Signal signal;
    signal.name = QString::fromLatin1(name);
    signal.msg_id = message;
    signal.mux_kind = muxKind;
    signal.factor = 0.5;
    signal.bit_length = 8;
    return signal;
}

void put(TerminalStruct &configuration, int can_nr, Signal signal, bool isRecorded = true)
{
    signal.selection_flags = isRecorded ? Signal::recordFlag : Signal::liveFlag;
    configuration.can[std::size_t(can_nr)].dbc_signals.append(std::make_unique<Signal>(signal));
}

QStringList namesOf(const QVector<Choice> &choices)
{
    QStringList names;
    for (const Choice &choice : choices)
        names += choice.signal.name;
    return names;
}

} // namespace

class tst_LogTrigger : public QObject
{
    Q_OBJECT

private slots:
    void theRecordedSignalsOfTheChannelCanBeChosen();
    void aMultiplexedSignalComesWithItsMultiplexor();
    void aMultiplexedSignalWithoutMultiplexorCanNotBeChosen();
    void aMultiplexorOfAnotherIdentifierLengthIsNotIt();
    void aChannelThatIsNotThereHasNoSignals();
    void theTriggerSignalIsValidWhileTheChannelHasIt();
    void aRemovedSignalIsNotValid();
    void anUntickedSignalIsNotValid();
    void aSignalWithOtherParametersIsNotValid();
    void anUntouchedRecordStaysAsItIs();
    void everyChangeGoesIntoTheRecord();
    void aChosenMultiplexedSignalBringsItsMultiplexor();
    void aPlainSignalClearsTheMultiplexor();
    void aSignalOfTheChannelBeforeIsDropped();
    void aStaleSignalGoesWithTheNextChange();
    void aChoiceBringsItsChannelInPlaceOfOneThatIsNotThere();

private:
    TerminalStruct m_configuration;
};

void tst_LogTrigger::theRecordedSignalsOfTheChannelCanBeChosen()
{
    TerminalStruct configuration;
    put(configuration, 3, signalCalled("speed"));
    put(configuration, 3, signalCalled("live_only"), false);
    put(configuration, 3, signalCalled("torque"));
    put(configuration, 4, signalCalled("other"));
    QCOMPARE(namesOf(choicesOf(configuration, 3)),
             QStringList({QStringLiteral("speed"), QStringLiteral("torque")}));
}

void tst_LogTrigger::aMultiplexedSignalComesWithItsMultiplexor()
{
    TerminalStruct configuration;
    put(configuration, 0, signalCalled("value", MultiplexedSignal));
    put(configuration, 0, signalCalled("selector", MultiplexorSignal), false);
    const QVector<Choice> choices = choicesOf(configuration, 0);
    QCOMPARE(namesOf(choices), QStringList({QStringLiteral("value")}));
    QCOMPARE(choices.first().multiplexor.name, QStringLiteral("selector"));
}

void tst_LogTrigger::aMultiplexedSignalWithoutMultiplexorCanNotBeChosen()
{
    TerminalStruct configuration;
    put(configuration, 0, signalCalled("value", MultiplexedSignal));
    put(configuration, 0, signalCalled("selector", MultiplexorSignal, 0x200), false);
    QVERIFY(choicesOf(configuration, 0).isEmpty());
}

void tst_LogTrigger::aMultiplexorOfAnotherIdentifierLengthIsNotIt()
{
    TerminalStruct configuration;
    Signal selector = signalCalled("selector", MultiplexorSignal);
    selector.extended_id = 1;
    put(configuration, 0, signalCalled("value", MultiplexedSignal));
    put(configuration, 0, selector, false);
    QVERIFY(choicesOf(configuration, 0).isEmpty());
}

void tst_LogTrigger::aChannelThatIsNotThereHasNoSignals()
{
    const TerminalStruct configuration;
    for (const int channel : {-1, 12, 255})
        QVERIFY(choicesOf(configuration, channel).isEmpty());
}

void tst_LogTrigger::theTriggerSignalIsValidWhileTheChannelHasIt()
{
    TerminalStruct configuration;
    put(configuration, 2, signalCalled("speed"));
    configuration.trigger.signal_can = 2;
    configuration.trigger.signal = signalCalled("speed");
    const auto valid = validChoice(configuration, configuration.trigger);
    QVERIFY(valid);
    QCOMPARE(valid->signal.name, QStringLiteral("speed"));
    configuration.trigger.signal_can = 1;
    QVERIFY(!validChoice(configuration, configuration.trigger));
}

void tst_LogTrigger::aRemovedSignalIsNotValid()
{
    TerminalStruct configuration;
    put(configuration, 0, signalCalled("speed"));
    configuration.trigger.signal = signalCalled("speed");
    configuration.can[0].dbc_signals.clear();
    QVERIFY(!validChoice(configuration, configuration.trigger));
}

void tst_LogTrigger::anUntickedSignalIsNotValid()
{
    TerminalStruct configuration;
    put(configuration, 0, signalCalled("speed"), false);
    configuration.trigger.signal = signalCalled("speed");
    QVERIFY(!validChoice(configuration, configuration.trigger));
}

void tst_LogTrigger::aSignalWithOtherParametersIsNotValid()
{
    TerminalStruct configuration;
    put(configuration, 0, signalCalled("speed"));
    configuration.trigger.signal = signalCalled("speed");
    configuration.trigger.signal.factor = 0.25;
    QVERIFY(!validChoice(configuration, configuration.trigger));
}

void tst_LogTrigger::anUntouchedRecordStaysAsItIs()
{
    TerminalStruct configuration;
    LogTriggerCfg &held = configuration.trigger;
    held.mode = 7;
    held.digital_option = 3;
    held.digital_number = 2;
    held.delay = -5;
    held.stop_if_lower = 9;
    held.signal_value = 1e-12;
    held.signal_can = 200;
    const Input shown{true, 0, 0.0, true, 11};
    QVERIFY(edited(configuration, shown, shown, {}) == held);
}

void tst_LogTrigger::everyChangeGoesIntoTheRecord()
{
    const TerminalStruct configuration;
    const LogTriggerCfg record = edited(configuration, {}, {true, 30, -1.5, true, 4}, {});
    QCOMPARE(int(record.mode), 1);
    QCOMPARE(record.delay, 30);
    QCOMPARE(record.signal_value, -1.5);
    QCOMPARE(int(record.stop_if_lower), 1);
    QCOMPARE(int(record.signal_can), 4);
}

void tst_LogTrigger::aChosenMultiplexedSignalBringsItsMultiplexor()
{
    TerminalStruct configuration;
    put(configuration, 0, signalCalled("value", MultiplexedSignal));
    put(configuration, 0, signalCalled("selector", MultiplexorSignal), false);
    const LogTriggerCfg record = edited(configuration, {}, {}, choicesOf(configuration, 0).first());
    QCOMPARE(record.signal.name, QStringLiteral("value"));
    QCOMPARE(record.multiplexor.name, QStringLiteral("selector"));
}

void tst_LogTrigger::aPlainSignalClearsTheMultiplexor()
{
    TerminalStruct configuration;
    put(configuration, 0, signalCalled("speed"));
    configuration.trigger.multiplexor = signalCalled("selector", MultiplexorSignal);
    const LogTriggerCfg record = edited(configuration, {}, {}, choicesOf(configuration, 0).first());
    QCOMPARE(record.signal.name, QStringLiteral("speed"));
    QVERIFY(record.multiplexor == Signal());
}

void tst_LogTrigger::aSignalOfTheChannelBeforeIsDropped()
{
    TerminalStruct configuration;
    put(configuration, 0, signalCalled("speed"));
    Input now;
    now.can_nr = 1;
    const LogTriggerCfg record =
        edited(configuration, {}, now, choicesOf(configuration, 0).first());
    QCOMPARE(int(record.signal_can), 1);
    QVERIFY(record.signal == Signal());
}

void tst_LogTrigger::aStaleSignalGoesWithTheNextChange()
{
    TerminalStruct configuration;
    configuration.trigger.signal = signalCalled("removed");
    Input now;
    now.delay_s = 10;
    const LogTriggerCfg record =
        edited(configuration, {}, now, validChoice(configuration, configuration.trigger));
    QVERIFY(record.signal == Signal());
    QCOMPARE(record.delay, 10);
}

void tst_LogTrigger::aChoiceBringsItsChannelInPlaceOfOneThatIsNotThere()
{
    TerminalStruct configuration;
    put(configuration, 11, signalCalled("speed"));
    configuration.trigger.signal_can = 200;
    Input shown;
    shown.can_nr = 11; // the nearest one that the widget can show
    const LogTriggerCfg record =
        edited(configuration, shown, shown, choicesOf(configuration, 11).first());
    QCOMPARE(int(record.signal_can), 11);
    QCOMPARE(record.signal.name, QStringLiteral("speed"));
}

QTEST_GUILESS_MAIN(tst_LogTrigger)
#include "tst_logtrigger.moc"
