#include "MDF4Conversion/rawlog/entrybuilder.h"
#include "tests/support/daqlog.h"

#include <QTest>

using testlog::addElement;
using testlog::addOdt;

namespace {

using Log = DaqLog;

constexpr quint8 bus = DaqLog::bus;
constexpr quint32 dtoId = DaqLog::dtoId;

QString text(const char *latin1)
{
    return QString::fromLatin1(latin1);
}

QString joined(const QStringList &list)
{
    return list.join(QLatin1Char(' '));
}

} // namespace

class tst_CcpXcp : public QObject
{
    Q_OBJECT

private slots:
    void aDtoGivesTheValuesOfItsPid();
    void aDtoOfAnotherPidIdentifierOrBusIsNotTaken();
    void aDtoOfAnotherLengthIsNotTaken_data();
    void aDtoOfAnotherLengthIsNotTaken();
    void bit31OfTheIdentifierMarks29Bits();
    void aListWithoutIdentifierGivesNoGroup();
    void anElementMayCarrySeveralMeasurements();
    void anUnknownMeasurementIsSkipped();
    void eachListHasItsGroups();
    void signalsOfOneOdtShareAGroup();
    void signalsOfSeveralOdtsAreGroupsOfOneNameInTheOrderOfOdts();
    void groupsAreNamedByTheRule_data();
    void groupsAreNamedByTheRule();
    void sourcesStandInTheirOrder();
};

void tst_CcpXcp::aDtoGivesTheValuesOfItsPid()
{
    Log log;
    log.addMeasurement("A", A2lDataType::UByte);
    log.addMeasurement("B", A2lDataType::UWord);
    auto &odt = addOdt(log.addDaq(), 7);
    addElement(odt, text("A"), 1);
    addElement(odt, text("B"), 2);
    log.addDto(10, "07 11 2233 00000000");
    const ConversionResult result = log.convert();
    QCOMPARE(result.readFailure, QString());
    QCOMPARE(result.raw(0, "A"), QVector<double>{0x11});
    QCOMPARE(result.raw(0, "B"), QVector<double>{0x3322});
}

void tst_CcpXcp::aDtoOfAnotherPidIdentifierOrBusIsNotTaken()
{
    Log log;
    log.addMeasurement("A", A2lDataType::UByte);
    addElement(addOdt(log.addDaq(), 7), text("A"), 1);
    log.addDto(1, "06 11 000000000000");
    log.add(testlog::can(2, bus, dtoId + 1, "0711000000000000"));
    log.add(testlog::can(3, bus + 1, dtoId, "0711000000000000"));
    log.add(rawlog::canEntry(4, bus, {dtoId, true, QByteArray::fromHex("0711000000000000")}));
    QVERIFY(log.convert().file.groups.empty());
}

void tst_CcpXcp::aDtoOfAnotherLengthIsNotTaken_data()
{
    QTest::addColumn<QByteArray>("frame");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("seven bytes") << QByteArray("07110000000000");
    QTest::newRow("nine bytes") << QByteArray("071100000000000000");
}

void tst_CcpXcp::aDtoOfAnotherLengthIsNotTaken()
{
    QFETCH(QByteArray, frame);
    Log log;
    log.addMeasurement("A", A2lDataType::UByte);
    addElement(addOdt(log.addDaq(), 7), text("A"), 1);
    log.addDto(1, frame);
    QVERIFY(log.convert().file.groups.empty());
}

void tst_CcpXcp::bit31OfTheIdentifierMarks29Bits()
{
    Log log;
    log.addMeasurement("A", A2lDataType::UByte);
    addElement(addOdt(log.addDaq(0x80000000U | 0x18DA0001U), 7), text("A"), 1);
    log.add(testlog::can(1, bus, 0x18DA0001, "072A000000000000"));
    QCOMPARE(log.convert().raw(0, "A"), QVector<double>{0x2A});
}

void tst_CcpXcp::aListWithoutIdentifierGivesNoGroup()
{
    Log log;
    log.addMeasurement("A", A2lDataType::UByte);
    addElement(addOdt(log.addDaq(0), 7), text("A"), 1);
    log.add(testlog::can(1, bus, 0, "072A000000000000"));
    QVERIFY(log.convert().file.groups.empty());
}

void tst_CcpXcp::anElementMayCarrySeveralMeasurements()
{
    Log log;
    log.addMeasurement("Whole", A2lDataType::UByte);
    log.addMeasurement("Same", A2lDataType::UByte);
    addElement(addOdt(log.addDaq(), 0), text("Whole"), 1).names.append(text("Same"));
    log.addDto(1, "002A000000000000");
    const ConversionResult result = log.convert();
    QCOMPARE(result.raw(0, "Whole"), QVector<double>{0x2A});
    QCOMPARE(result.raw(0, "Same"), QVector<double>{0x2A});
}

void tst_CcpXcp::anUnknownMeasurementIsSkipped()
{
    Log log;
    log.addMeasurement("B", A2lDataType::UByte);
    auto &odt = addOdt(log.addDaq(), 0);
    addElement(odt, text("Unknown"), 2);
    addElement(odt, text("B"), 1);
    log.addDto(1, "0001022A00000000");
    const ConversionResult result = log.convert();
    QCOMPARE(result.channelNames(0), QStringList(text("B")));
    QCOMPARE(result.raw(0, "B"), QVector<double>{0x2A});
}

void tst_CcpXcp::eachListHasItsGroups()
{
    Log log;
    log.addMeasurement("A", A2lDataType::UByte);
    log.addMeasurement("B", A2lDataType::UByte);
    addElement(addOdt(log.addDaq(), 0), text("A"), 1);
    addElement(addOdt(log.addDaq(), 1), text("B"), 1);
    log.addDto(1, "012B000000000000");
    log.addDto(2, "002A000000000000");
    const ConversionResult result = log.convert();
    QCOMPARE(joined(result.groupNames()), text("CAN_5_CCP_XCP CAN_5_CCP_XCP"));
    QCOMPARE(result.raw(0, "A"), QVector<double>{0x2A});
    QCOMPARE(result.raw(1, "B"), QVector<double>{0x2B});
}

void tst_CcpXcp::signalsOfOneOdtShareAGroup()
{
    Log log;
    log.addMeasurement("A", A2lDataType::UByte);
    log.addMeasurement("B", A2lDataType::UByte);
    auto &odt = addOdt(log.addDaq(), 0);
    addElement(odt, text("A"), 1);
    addElement(odt, text("B"), 1);
    log.addDto(1, "002A2B0000000000");
    QCOMPARE(joined(log.convert().channelNames(0)), text("A B"));
}

void tst_CcpXcp::signalsOfSeveralOdtsAreGroupsOfOneNameInTheOrderOfOdts()
{
    Log log;
    for (const char *name : {"A", "B", "C"})
        log.addMeasurement(name, A2lDataType::UByte);
    auto &daq = log.addDaq();
    auto &first = addOdt(daq, 9);
    auto &second = addOdt(daq, 3);
    addElement(first, text("A"), 1);
    addElement(second, text("B"), 1);
    addElement(first, text("C"), 1);
    log.addDto(1, "09 01 02 0000000000");
    log.addDto(2, "03 03 00 0000000000");
    const ConversionResult result = log.convert();
    QCOMPARE(joined(result.groupNames()), text("CAN_5_CCP_XCP CAN_5_CCP_XCP"));
    QCOMPARE(joined(result.channelNames(0)), text("A C"));
    QCOMPARE(joined(result.channelNames(1)), text("B"));
}

void tst_CcpXcp::groupsAreNamedByTheRule_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("custom");
    QTest::addColumn<QString>("name");
    QTest::newRow("neither") << 0 << text("Engine") << text("CAN_5_CCP_XCP");
    QTest::newRow("appended") << 1 << text("Engine") << text("CAN_5_Engine_CCP_XCP");
    QTest::newRow("alone") << 2 << text("Engine") << text("Engine_CCP_XCP");
    QTest::newRow("no text") << 2 << QString() << text("Unspecified_CCP_XCP");
}

void tst_CcpXcp::groupsAreNamedByTheRule()
{
    QFETCH(int, mode);
    QFETCH(QString, custom);
    QFETCH(QString, name);
    Log log;
    log.addMeasurement("A", A2lDataType::UByte);
    addElement(addOdt(log.addDaq(), 0), text("A"), 1);
    log.configuration.can[bus].export_name_mode = quint8(mode);
    log.configuration.can[bus].export_custom_name = custom;
    log.addDto(1, "0000000000000000");
    QCOMPARE(log.convert().groupNames(), QStringList(name));
}

void tst_CcpXcp::sourcesStandInTheirOrder()
{
    Log log;
    log.configuration.gps.gps_enabled = 1;
    log.configuration.agm.enabled = 1;
    log.configuration.rs485[0].d4mod.enabled = 1;
    testlog::addSignal(log.configuration.can[11], text("S"), 1, 0, 8);
    log.addMeasurement("A", A2lDataType::UByte);
    addElement(addOdt(log.addDaq(), 0), text("A"), 1);
    auto &master = log.configuration.ethercat[0];
    master.enabled = 1;
    EtherCatSignal &variable = master.slaves.add().slave_signals.add();
    variable.data_type = 5;
    variable.mdf4_flags = 1;
    testlog::addMeasurement(log.ethModule(), text("E"), A2lDataType::UByte);
    addElement(addOdt(testlog::addDaq(log.ethModule(), 0), 0), text("E"), 1);
    log.add(testlog::eth(1, "0000") + rawlog::etherCatEntry(2, 0, QByteArray(1, 0)));
    log.addDto(3, "0000000000000000");
    log.add(testlog::can(4, 11, 1, "0000000000000000") + rawlog::d4modEntry(5, 0, {1}));
    log.add(rawlog::agmEntry(6, 0, {}) + rawlog::gpsEntry(7, {}));
    QCOMPARE(joined(log.convert().groupNames()),
             text("GPS Accelerometer/Gyroscope RS485-0-D4MOD CAN_11_DBC CAN_5_CCP_XCP Ethercat-0 "
                  "ETH_0_XCP"));
}

QTEST_GUILESS_MAIN(tst_CcpXcp)
#include "tst_ccpxcp.moc"
