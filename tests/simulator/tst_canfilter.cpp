#include "config/terminalcancfg.h"
#include "simulator/canfilter.h"

#include <QTest>

class tst_CanFilter : public QObject
{
    Q_OBJECT

private slots:
    void aFilterDecidesByItsType_data();
    void aFilterDecidesByItsType();
    void withoutFiltersEverythingPasses();
    void rejectingAloneLetsTheOthersPass();
    void rejectingBeatsAccepting();
    void recordedSignalsTakeTheChannelsOwnRowsPlace();
    void withoutRecordedSignalsTheOwnRowsCount();
};

namespace {

void addFilter(TerminalCanCfg &channel, quint8 type, quint32 id1, quint32 id2, quint8 reject = 0)
{
    CanIdFilterElement &filter = channel.filters.add();
    filter.filter_type = type;
    filter.id1 = id1;
    filter.id2 = id2;
    filter.reject = reject;
}

bool letsThrough(const TerminalCanCfg &channel, quint32 id, bool extended)
{
    return simulator::passesFilters(simulator::hardwareFilters(channel), id, extended);
}

void addSignal(TerminalCanCfg &channel, quint32 id, quint8 flags)
{
    StreamingClass_DBC_Signal &signal = channel.dbc_signals.add();
    signal.msg_id = id;
    signal.selection_flags = flags;
}

} // namespace

void tst_CanFilter::aFilterDecidesByItsType_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<quint32>("id");
    QTest::addColumn<bool>("passes");
    // The filter's identifiers are 0x100 and 0x10F, or 0x100 and the mask 0x7F0.
    QTest::newRow("range, below") << 0 << 0xFFU << false;
    QTest::newRow("range, first") << 0 << 0x100U << true;
    QTest::newRow("range, last") << 0 << 0x10FU << true;
    QTest::newRow("range, above") << 0 << 0x110U << false;
    QTest::newRow("dual, first") << 1 << 0x100U << true;
    QTest::newRow("dual, between") << 1 << 0x101U << false;
    QTest::newRow("dual, second") << 1 << 0x10FU << true;
    QTest::newRow("classic, equal under the mask") << 2 << 0x10AU << true;
    QTest::newRow("classic, different under the mask") << 2 << 0x110U << false;
    QTest::newRow("unknown type") << 9 << 0x100U << false;
}

void tst_CanFilter::aFilterDecidesByItsType()
{
    QFETCH(int, type);
    QFETCH(quint32, id);
    QFETCH(bool, passes);
    TerminalCanCfg channel;
    const quint32 second = type == 2 ? 0x7F0 : 0x10F;
    addFilter(channel, quint8(type), 0x100, second);
    QCOMPARE(letsThrough(channel, id, false), passes);
    QVERIFY(!letsThrough(channel, id, true));
}

void tst_CanFilter::withoutFiltersEverythingPasses()
{
    QVERIFY(letsThrough(TerminalCanCfg(), 0x123, true));
}

void tst_CanFilter::rejectingAloneLetsTheOthersPass()
{
    TerminalCanCfg channel;
    addFilter(channel, 0, 0x100, 0x1FF, 1);
    QVERIFY(!letsThrough(channel, 0x180, false));
    QVERIFY(letsThrough(channel, 0x200, false));
}

void tst_CanFilter::rejectingBeatsAccepting()
{
    TerminalCanCfg channel;
    addFilter(channel, 0, 0x100, 0x1FF);
    addFilter(channel, 1, 0x180, 0x181, 1);
    QVERIFY(letsThrough(channel, 0x17F, false));
    QVERIFY(!letsThrough(channel, 0x181, false));
}

void tst_CanFilter::recordedSignalsTakeTheChannelsOwnRowsPlace()
{
    TerminalCanCfg channel;
    addFilter(channel, 0, 0x100, 0x1FF);
    addSignal(channel, 0x300, StreamingClass_DBC_Signal::recordFlag);
    addSignal(channel, 0x301, StreamingClass_DBC_Signal::liveFlag);
    addSignal(channel, 0x302, 0);
    QVERIFY(letsThrough(channel, 0x300, false));
    QVERIFY(letsThrough(channel, 0x301, false));
    QVERIFY(!letsThrough(channel, 0x302, false));
    QVERIFY(!letsThrough(channel, 0x180, false));
}

void tst_CanFilter::withoutRecordedSignalsTheOwnRowsCount()
{
    TerminalCanCfg channel;
    addFilter(channel, 0, 0x100, 0x1FF);
    addSignal(channel, 0x300, 0);
    QVERIFY(letsThrough(channel, 0x180, false));
    QVERIFY(!letsThrough(channel, 0x300, false));
}

QTEST_GUILESS_MAIN(tst_CanFilter)
#include "tst_canfilter.moc"
