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
    QCOMPARE(simulator::passesFilters(channel, id, false), passes);
    QVERIFY(!simulator::passesFilters(channel, id, true));
}

void tst_CanFilter::withoutFiltersEverythingPasses()
{
    QVERIFY(simulator::passesFilters(TerminalCanCfg(), 0x123, true));
}

void tst_CanFilter::rejectingAloneLetsTheOthersPass()
{
    TerminalCanCfg channel;
    addFilter(channel, 0, 0x100, 0x1FF, 1);
    QVERIFY(!simulator::passesFilters(channel, 0x180, false));
    QVERIFY(simulator::passesFilters(channel, 0x200, false));
}

void tst_CanFilter::rejectingBeatsAccepting()
{
    TerminalCanCfg channel;
    addFilter(channel, 0, 0x100, 0x1FF);
    addFilter(channel, 1, 0x180, 0x181, 1);
    QVERIFY(simulator::passesFilters(channel, 0x17F, false));
    QVERIFY(!simulator::passesFilters(channel, 0x181, false));
}

QTEST_GUILESS_MAIN(tst_CanFilter)
#include "tst_canfilter.moc"
