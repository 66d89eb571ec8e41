#include "MDF4Conversion/rawlog/entrybuilder.h"
#include "tests/support/daqlog.h"

#include <QTest>

using testlog::addElement;
using testlog::addOdt;

namespace {

using Log = DaqLog;

QString text(const char *latin1)
{
    return QString::fromLatin1(latin1);
}

} // namespace

class tst_EthXcp : public QObject
{
    Q_OBJECT

private slots:
    void xcpOnEthernetTakesFramesOfSub1();
    void xcpOnEthernetTakesFramesOfAnyLength();
    void aFrameThatEndsBeforeAnElementIsDropped();
    void ethernetGroupsAreNamedByTheRule_data();
    void ethernetGroupsAreNamedByTheRule();
};

void tst_EthXcp::xcpOnEthernetTakesFramesOfSub1()
{
    Log log;
    testlog::addMeasurement(log.ethModule(), text("Speed"), A2lDataType::UWord);
    addElement(addOdt(testlog::addDaq(log.ethModule(), 0), 4), text("Speed"), 2);
    const QByteArray dto = QByteArray::fromHex("041122");
    log.add(testlog::eth(1000, "041122"));
    for (const quint8 sub : {0, 2, 3})
        log.add(rawlog::timestampedEntry({rawlog::RLD_ETH, 0, sub, 0}, 1100, dto));
    log.add(rawlog::timestampedEntry({rawlog::RLD_ETH, 1, 1, 0}, 1200, dto));
    const ConversionResult result = log.convert();
    QCOMPARE(result.groupNames(), QStringList(text("ETH_0_XCP")));
    QCOMPARE(result.raw(0, "Speed"), QVector<double>{0x2211});
}

void tst_EthXcp::xcpOnEthernetTakesFramesOfAnyLength()
{
    Log log;
    testlog::addMeasurement(log.ethModule(), text("Last"), A2lDataType::UByte);
    auto &odt = addOdt(testlog::addDaq(log.ethModule(), 0), 4);
    for (int i = 0; i < 20; ++i)
        addElement(odt, text("Unknown"), 8);
    addElement(odt, text("Last"), 1);
    log.add(testlog::eth(1000, ("04" + QByteArray(320, '0') + "2A").constData()));
    QCOMPARE(log.convert().raw(0, "Last"), QVector<double>{0x2A});
}

void tst_EthXcp::aFrameThatEndsBeforeAnElementIsDropped()
{
    Log log;
    testlog::addMeasurement(log.ethModule(), text("A"), A2lDataType::UByte);
    testlog::addMeasurement(log.ethModule(), text("B"), A2lDataType::UWord);
    auto &odt = addOdt(testlog::addDaq(log.ethModule(), 0), 4);
    addElement(odt, text("A"), 1);
    addElement(odt, text("B"), 2);
    log.add(testlog::eth(1000, "04112233") + testlog::eth(1100, "041122")
            + testlog::eth(1200, "04"));
    log.add(testlog::eth(1300, ""));
    const ConversionResult result = log.convert();
    QCOMPARE(result.raw(0, "A"), QVector<double>{0x11});
    QCOMPARE(result.summary.droppedRecords, quint64(1));
}

void tst_EthXcp::ethernetGroupsAreNamedByTheRule_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("custom");
    QTest::addColumn<QString>("name");
    QTest::newRow("neither") << 0 << text("Radar") << text("ETH_0_XCP");
    QTest::newRow("appended") << 1 << text("Radar") << text("ETH_0_Radar_XCP");
    QTest::newRow("alone") << 2 << text("Radar") << text("Radar_XCP");
    QTest::newRow("no text") << 1 << QString() << text("ETH_0_Unspecified_XCP");
}

void tst_EthXcp::ethernetGroupsAreNamedByTheRule()
{
    QFETCH(int, mode);
    QFETCH(QString, custom);
    QFETCH(QString, name);
    Log log;
    testlog::addMeasurement(log.ethModule(), text("A"), A2lDataType::UByte);
    addElement(addOdt(testlog::addDaq(log.ethModule(), 0), 0), text("A"), 1);
    log.configuration.eth.further_byte = quint8(mode);
    log.configuration.eth.custom_name = custom;
    log.add(testlog::eth(1, "0000"));
    QCOMPARE(log.convert().groupNames(), QStringList(name));
}

QTEST_GUILESS_MAIN(tst_EthXcp)
#include "tst_ethxcp.moc"
