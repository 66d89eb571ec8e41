#include "a2l/records/a2lconstants.h"
#include "can/canfilters.h"
#include "tests/can/signalsamples.h"

#include <QTest>

#include <functional>

using can::FilterList;
using can::SelectedOnly;
using sample::addSignal;
using Signal = StreamingClass_DBC_Signal;

class tst_CanFilters : public QObject
{
    Q_OBJECT

private slots:
    void aSignalGivesAnExactMatchOnItsMessage();
    void aSignalOfAnExtendedMessageGivesA29BitFilter();
    void bitsAboveTheIdentifierAreNoneOfIt();
    void fiveSignalsOfOneMessageCostOneFilter();
    void anExtendedAndAStandardMessageOfTheSameNumberCostTwoFilters();
    void filtersStandInTheOrderOfTheSignals();
    void selectedOnlyLeavesOutWhatIsNeitherRecordedNorLive();
    void aDaqListGivesAFilterOnItsIdentifier_data();
    void aDaqListGivesAFilterOnItsIdentifier();
    void aModuleThatIsNotOnCanGivesNoFilters();
    void mergingKeepsTheOrderOfTheFirstList();
    void mergingRemovesRepeatedElementsOfBothLists();
    void mergingComparesAllFields();
    void a2lFiltersStandBeforeThoseOfSignals();
    void aFilterThatBothSidesNeedCountsOnce();
    void theChannelsOwnRowsCountWhereNothingElseDoes();
    void oneSignalAndTenOwnRowsGiveOneFilter();
    void ownRowsCountWhileNoSignalIsSelected();
    void signalsOrDaqListsTakeTheFiltersFromTheUser();
    void aFullChannelKeepsItsFlags();
    void messagesAboveTheLimitLoseTheirFlagsLastOnesFirst();
    void allSignalsOfADroppedMessageLoseBothFlags();
    void messagesOfSignalsWithoutFlagsAreNotCounted();
    void theLastMessageIsThatOfTheLastSelectedSignal();
    void daqListsAloneCanFillTheHardware();
    void aThousandMessagesTooManyAreCleared();
};

namespace {

QString text(const CanIdFilterElement &filter)
{
    return QStringLiteral("%1 %2 %3 %4 %5")
        .arg(filter.extended ? QStringLiteral("29") : QStringLiteral("11"))
        .arg(filter.filter_type)
        .arg(filter.reject)
        .arg(filter.id1, 0, 16)
        .arg(filter.id2, 0, 16);
}

QStringList texts(const FilterList &filters)
{
    QStringList result;
    for (const CanIdFilterElement &filter : filters)
        result.append(text(filter));
    return result;
}

CanIdFilterElement element(quint32 id1, quint32 id2 = 0x7FF, quint8 type = 2)
{
    CanIdFilterElement filter;
    filter.filter_type = type;
    filter.id1 = id1;
    filter.id2 = id2;
    return filter;
}

void addDaq(TerminalCanCfg &channel, quint32 id)
{
    channel.a2l.config.active_interface = ACTIVE_A2L_IF_CCP_XCP_O_CAN;
    channel.a2l.config.cfg.daq_lists.add().can_id = id;
}

void addOwnRow(TerminalCanCfg &channel, quint32 id)
{
    channel.filters.add() = element(id);
}

// Signals of the messages 0x100, 0x101, ... in turn.
void addMessages(TerminalCanCfg &channel, int count, quint8 flags = Signal::recordFlag)
{
    for (int i = 0; i < count; ++i)
        addSignal(channel.dbc_signals, "s", 0x100 + quint32(i), flags);
}

} // namespace

void tst_CanFilters::aSignalGivesAnExactMatchOnItsMessage()
{
    sample::SignalList list;
    addSignal(list, "a", 0x123);
    QCOMPARE(texts(can::filtersFromSignals(list.items(), SelectedOnly::No)),
             QStringList(QStringLiteral("11 2 0 123 7ff")));
}

void tst_CanFilters::bitsAboveTheIdentifierAreNoneOfIt()
{
    sample::SignalList list;
    addSignal(list, "a", 0x6000'0123);
    addSignal(list, "b", 0x123);
    QCOMPARE(texts(can::filtersFromSignals(list.items(), SelectedOnly::No)),
             QStringList(QStringLiteral("11 2 0 123 7ff")));
}

void tst_CanFilters::aSignalOfAnExtendedMessageGivesA29BitFilter()
{
    sample::SignalList list;
    addSignal(list, "a", 0x18FEF100).extended_id = 1;
    QCOMPARE(texts(can::filtersFromSignals(list.items(), SelectedOnly::No)),
             QStringList(QStringLiteral("29 2 0 18fef100 1fffffff")));
}

void tst_CanFilters::fiveSignalsOfOneMessageCostOneFilter()
{
    sample::SignalList list;
    for (const char *name : {"a", "b", "c", "d", "e"})
        addSignal(list, name, 0x123);
    QCOMPARE(can::filtersFromSignals(list.items(), SelectedOnly::No).size(), std::size_t(1));
}

void tst_CanFilters::anExtendedAndAStandardMessageOfTheSameNumberCostTwoFilters()
{
    sample::SignalList list;
    addSignal(list, "a", 0x123).extended_id = 1;
    addSignal(list, "a", 0x123);
    QCOMPARE(
        texts(can::filtersFromSignals(list.items(), SelectedOnly::No)),
        (QStringList{QStringLiteral("29 2 0 123 1fffffff"), QStringLiteral("11 2 0 123 7ff")}));
}

void tst_CanFilters::filtersStandInTheOrderOfTheSignals()
{
    sample::SignalList list;
    for (const quint32 id : {0x300u, 0x100u, 0x300u, 0x200u})
        addSignal(list, "s", id);
    QCOMPARE(texts(can::filtersFromSignals(list.items(), SelectedOnly::No)),
             (QStringList{QStringLiteral("11 2 0 300 7ff"), QStringLiteral("11 2 0 100 7ff"),
                          QStringLiteral("11 2 0 200 7ff")}));
}

void tst_CanFilters::selectedOnlyLeavesOutWhatIsNeitherRecordedNorLive()
{
    sample::SignalList list;
    addSignal(list, "neither", 0x100);
    addSignal(list, "recorded", 0x101, Signal::recordFlag);
    addSignal(list, "live", 0x102, Signal::liveFlag);
    addSignal(list, "other bit", 0x103, 0x80);
    QCOMPARE(texts(can::filtersFromSignals(list.items(), SelectedOnly::Yes)),
             (QStringList{QStringLiteral("11 2 0 101 7ff"), QStringLiteral("11 2 0 102 7ff")}));
}

void tst_CanFilters::aDaqListGivesAFilterOnItsIdentifier_data()
{
    QTest::addColumn<quint32>("id");
    QTest::addColumn<QString>("filter");
    QTest::newRow("11-bit") << 0x7E1u << QStringLiteral("11 2 0 7e1 7ff");
    QTest::newRow("29-bit") << 0x98DAF110u << QStringLiteral("29 2 0 18daf110 1fffffff");
    QTest::newRow("11-bit, too large") << 0x1FE1u << QStringLiteral("11 2 0 7e1 7ff");
    QTest::newRow("29-bit, too large") << 0xF8DAF110u << QStringLiteral("29 2 0 18daf110 1fffffff");
}

void tst_CanFilters::aDaqListGivesAFilterOnItsIdentifier()
{
    QFETCH(quint32, id);
    TerminalCanCfg channel;
    addDaq(channel, id);
    const FilterList filters = can::filtersFromA2l(channel.a2l);
    QCOMPARE(filters.size(), std::size_t(1));
    QTEST(text(filters.front()), "filter");
}

void tst_CanFilters::aModuleThatIsNotOnCanGivesNoFilters()
{
    TerminalCanCfg channel;
    addDaq(channel, 0x7E1);
    channel.a2l.config.active_interface = ACTIVE_A2L_IF_XCP_O_UDP;
    QVERIFY(can::filtersFromA2l(channel.a2l).empty());
}

void tst_CanFilters::mergingKeepsTheOrderOfTheFirstList()
{
    const FilterList a{element(3), element(1)};
    const FilterList b{element(2), element(3), element(0)};
    QCOMPARE(can::merged(a, b), (FilterList{element(3), element(1), element(2), element(0)}));
}

void tst_CanFilters::mergingRemovesRepeatedElementsOfBothLists()
{
    const FilterList a{element(1), element(1)};
    const FilterList b{element(2), element(2), element(1)};
    QCOMPARE(can::merged(a, b), (FilterList{element(1), element(2)}));
}

void tst_CanFilters::mergingComparesAllFields()
{
    CanIdFilterElement extended = element(1);
    extended.extended = 1;
    CanIdFilterElement rejecting = element(1);
    rejecting.reject = 1;
    const FilterList different{element(1),           element(2), element(1, 0x700),
                               element(1, 0x7FF, 0), extended,   rejecting};
    QCOMPARE(can::merged(different, different), different);
}

void tst_CanFilters::a2lFiltersStandBeforeThoseOfSignals()
{
    TerminalCanCfg channel;
    addSignal(channel.dbc_signals, "a", 0x100);
    addDaq(channel, 0x200);
    QCOMPARE(can::effectiveFilters(channel, SelectedOnly::No),
             (FilterList{element(0x200), element(0x100)}));
}

void tst_CanFilters::aFilterThatBothSidesNeedCountsOnce()
{
    TerminalCanCfg channel;
    addSignal(channel.dbc_signals, "a", 0x100);
    addDaq(channel, 0x100);
    QCOMPARE(can::effectiveFilters(channel, SelectedOnly::No), FilterList{element(0x100)});
}

void tst_CanFilters::theChannelsOwnRowsCountWhereNothingElseDoes()
{
    TerminalCanCfg channel;
    addOwnRow(channel, 5);
    addOwnRow(channel, 6);
    addOwnRow(channel, 5);
    QCOMPARE(can::effectiveFilters(channel, SelectedOnly::No),
             (FilterList{element(5), element(6)}));
}

void tst_CanFilters::oneSignalAndTenOwnRowsGiveOneFilter()
{
    TerminalCanCfg channel;
    for (quint32 id = 0; id < 10; ++id)
        addOwnRow(channel, id);
    addSignal(channel.dbc_signals, "a", 0x123, Signal::recordFlag);
    QCOMPARE(can::effectiveFilters(channel, SelectedOnly::No), FilterList{element(0x123)});
    QCOMPARE(can::effectiveFilters(channel, SelectedOnly::Yes), FilterList{element(0x123)});
}

void tst_CanFilters::ownRowsCountWhileNoSignalIsSelected()
{
    TerminalCanCfg channel;
    addOwnRow(channel, 7);
    addSignal(channel.dbc_signals, "a", 0x123);
    QCOMPARE(can::effectiveFilters(channel, SelectedOnly::Yes), FilterList{element(7)});
}

void tst_CanFilters::signalsOrDaqListsTakeTheFiltersFromTheUser()
{
    TerminalCanCfg channel;
    addOwnRow(channel, 7);
    QVERIFY(!can::filtersComeFromSignals(channel));
    channel.a2l.config.active_interface = ACTIVE_A2L_IF_CCP_XCP_O_CAN;
    QVERIFY(!can::filtersComeFromSignals(channel));
    channel.a2l.config.cfg.daq_lists.add();
    QVERIFY(can::filtersComeFromSignals(channel));
    channel.a2l.config.active_interface = ACTIVE_A2L_IF_XCP_O_TCP;
    QVERIFY(!can::filtersComeFromSignals(channel));
    addSignal(channel.dbc_signals, "not even ticked");
    QVERIFY(can::filtersComeFromSignals(channel));
}

void tst_CanFilters::aFullChannelKeepsItsFlags()
{
    TerminalCanCfg channel;
    addMessages(channel, 128);
    QCOMPARE(can::enforceFilterLimit(channel), QStringList());
    QCOMPARE(can::effectiveFilters(channel, SelectedOnly::Yes).size(), std::size_t(128));
}

void tst_CanFilters::messagesAboveTheLimitLoseTheirFlagsLastOnesFirst()
{
    TerminalCanCfg channel;
    addMessages(channel, 128);
    addSignal(channel.dbc_signals, "second to last", 0x300, Signal::liveFlag);
    addSignal(channel.dbc_signals, "last", 0x301, Signal::recordFlag);
    QCOMPARE(can::enforceFilterLimit(channel),
             (QStringList{QStringLiteral("second to last"), QStringLiteral("last")}));
    QCOMPARE(can::effectiveFilters(channel, SelectedOnly::Yes).size(), std::size_t(128));
    QCOMPARE(channel.dbc_signals.size(), 130);
    QCOMPARE(channel.dbc_signals.at(127)->selection_flags, Signal::recordFlag);
}

void tst_CanFilters::allSignalsOfADroppedMessageLoseBothFlags()
{
    TerminalCanCfg channel;
    addSignal(channel.dbc_signals, "first of the message", 0x500, Signal::liveFlag);
    addMessages(channel, 128);
    addSignal(channel.dbc_signals, "not ticked", 0x500);
    addSignal(channel.dbc_signals, "both", 0x500, Signal::recordFlag | Signal::liveFlag);
    QCOMPARE(can::enforceFilterLimit(channel),
             (QStringList{QStringLiteral("first of the message"), QStringLiteral("both")}));
    QCOMPARE(channel.dbc_signals.at(0)->selection_flags, quint8(0));
    QCOMPARE(channel.dbc_signals.at(130)->selection_flags, quint8(0));
    QCOMPARE(channel.dbc_signals.at(1)->selection_flags, Signal::recordFlag);
}

void tst_CanFilters::messagesOfSignalsWithoutFlagsAreNotCounted()
{
    TerminalCanCfg channel;
    addMessages(channel, 128);
    addSignal(channel.dbc_signals, "not ticked", 0x500);
    QCOMPARE(can::enforceFilterLimit(channel), QStringList());
}

void tst_CanFilters::theLastMessageIsThatOfTheLastSelectedSignal()
{
    TerminalCanCfg channel;
    addMessages(channel, 129);
    addSignal(channel.dbc_signals, "of the first message", 0x100, Signal::recordFlag);
    addSignal(channel.dbc_signals, "of the second message", 0x101);
    QCOMPARE(can::enforceFilterLimit(channel),
             (QStringList{QStringLiteral("s"), QStringLiteral("of the first message")}));
    QCOMPARE(channel.dbc_signals.at(0)->selection_flags, quint8(0));
    QCOMPARE(channel.dbc_signals.at(128)->selection_flags, Signal::recordFlag);
}

void tst_CanFilters::daqListsAloneCanFillTheHardware()
{
    TerminalCanCfg channel;
    for (quint32 i = 0; i < 130; ++i)
        addDaq(channel, 0x600 + i);
    addMessages(channel, 1);
    QCOMPARE(can::enforceFilterLimit(channel), QStringList(QStringLiteral("s")));
    QCOMPARE(can::effectiveFilters(channel, SelectedOnly::Yes).size(), std::size_t(130));
    QCOMPARE(can::enforceFilterLimit(channel), QStringList());
}

void tst_CanFilters::aThousandMessagesTooManyAreCleared()
{
    TerminalCanCfg channel;
    addMessages(channel, 1128);
    QCOMPARE(can::enforceFilterLimit(channel).size(), 1000);
    QCOMPARE(channel.dbc_signals.at(127)->selection_flags, Signal::recordFlag);
    QCOMPARE(channel.dbc_signals.at(128)->selection_flags, quint8(0));
}

QTEST_GUILESS_MAIN(tst_CanFilters)
#include "tst_canfilters.moc"
