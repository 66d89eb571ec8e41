#include "tests/support/aimlog.h"
#include "tests/support/daqlog.h"
#include "tests/support/dbclog.h"

#include <QTest>

namespace {

using Counts = std::map<QString, std::map<QString, QString>>;

constexpr quint8 unknownType = 77;

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

} // namespace

// What a conversion leaves out or fills up is told to the user.
class tst_Losses : public QObject
{
    Q_OBJECT

private slots:
    void aimMessagesOfAnotherLengthAreCountedInAStatus();
    void aimChannelsBeyondTheirMessageAreNamed();
    void dbcSignalsBeyondTheirFrameAreNamed_data();
    void dbcSignalsBeyondTheirFrameAreNamed();
    void signalsBeyondTheFrameOfAMessageShareAWarning();
    void namesOfSignalsBeyondTheirFrameAreNoMarkup();
    void aMultiplexorBeyondItsFrameIsNamed();
    void multiplexorsOfUnrecordedMessagesAreNotToldOf();
    void aMeasurementThatLacksPartsIsNamedOnce();
    void aNameThatTheModuleLacksIsToldOnce();
    void aMeasurementBeyondItsDtoIsNamed();
    void aMeasurementOfSeveralListsThatIsLeftOutIsToldOnce_data();
    void aMeasurementOfSeveralListsThatIsLeftOutIsToldOnce();
    void manyNamesAreCutShort();
    void recordsThatAreLeftOutAreNotCountedAsSamples();
};

void tst_Losses::aimMessagesOfAnotherLengthAreCountedInAStatus()
{
    AimLog log;
    log.addModule();
    for (const char *hex : {"0000000000000000", "00", "0000", "0000000000000000", ""})
        log.addMessage(1000, hex);
    QTest::ignoreMessage(QtWarningMsg, "Wrong datalength - add this as warning!");
    const ConversionResult result = log.convert();
    QCOMPARE(result.warnings, QStringList());
    QCOMPARE(result.status(text("were left out")),
             text("3 messages of channel-group CAN_1_AIM_Module were left out, they don't have its "
                  "8 bytes."));
}

void tst_Losses::aimChannelsBeyondTheirMessageAreNamed()
{
    AimLog log;
    log.addModule().gapBetweenChannelsInBytes = 1;
    QCOMPARE(log.convert().warnings,
             QStringList(text("AIM module Module on CAN-1: from CAN_1_AIM_Module_AIM_CH_2 on its "
                              "channels reach beyond its message of 8 bytes, what is missing "
                              "reads as 0.")));
}

void tst_Losses::dbcSignalsBeyondTheirFrameAreNamed_data()
{
    QTest::addColumn<int>("startBit");
    QTest::addColumn<int>("bitLength");
    QTest::addColumn<bool>("intel");
    QTest::addColumn<bool>("told");
    QTest::newRow("Intel up to the last bit") << 12 << 4 << true << false;
    QTest::newRow("Intel one bit more") << 12 << 5 << true << true;
    QTest::newRow("Intel behind the frame") << 16 << 1 << true << true;
    QTest::newRow("Motorola up to the last bit") << 3 << 12 << false << false;
    QTest::newRow("Motorola one bit more") << 3 << 13 << false << true;
    QTest::newRow("Motorola within the last byte") << 15 << 8 << false << false;
    QTest::newRow("Motorola behind the frame") << 23 << 1 << false << true;
}

void tst_Losses::dbcSignalsBeyondTheirFrameAreNamed()
{
    QFETCH(int, startBit);
    QFETCH(int, bitLength);
    QFETCH(bool, intel);
    QFETCH(bool, told);
    DbcLog log;
    StreamingClass_DBC_Signal &signal =
        log.addSignal("Speed", quint16(startBit), quint16(bitLength));
    signal.little_endian = intel;
    signal.dlc = 2;
    const QString warning = text("CAN-DBC Signals that reach beyond their frame, what is missing "
                                 "reads as 0: CAN-2 msgID:291: Speed");
    QCOMPARE(log.convert().warnings, told ? QStringList(warning) : QStringList());
}

void tst_Losses::signalsBeyondTheFrameOfAMessageShareAWarning()
{
    DbcLog log;
    for (const char *name : {"A", "B"})
        log.addSignal(name, 60, 8);
    log.addSignal("Whole", 0, 8);
    const QStringList warnings = log.convert().warnings;
    QCOMPARE(warnings.size(), 1);
    QVERIFY(warnings.first().endsWith(text(": A, B")));
}

void tst_Losses::namesOfSignalsBeyondTheirFrameAreNoMarkup()
{
    DbcLog log;
    log.addSignal("</font><b>x", 60, 8);
    const QStringList warnings = log.convert().warnings;
    QCOMPARE(warnings.size(), 1);
    QVERIFY2(warnings.first().endsWith(text(": &lt;/font&gt;&lt;b&gt;x")),
             qPrintable(warnings.first()));
}

void tst_Losses::aMultiplexorBeyondItsFrameIsNamed()
{
    DbcLog log;
    StreamingClass_DBC_Signal &multiplexor = log.addSignal("Mux", 64, 8);
    multiplexor.mux_kind = MultiplexorSignal;
    multiplexor.selection_flags = 0;
    log.addSignal("At0", 0, 8).mux_kind = MultiplexedSignal;
    const QStringList warnings = log.convert().warnings;
    QCOMPARE(warnings.size(), 1);
    QVERIFY(warnings.first().endsWith(text(": Mux")));
}

void tst_Losses::multiplexorsOfUnrecordedMessagesAreNotToldOf()
{
    DbcLog log;
    for (const char *name : {"First", "Second"}) {
        StreamingClass_DBC_Signal &multiplexor = log.addSignal(name, 0, 8);
        multiplexor.mux_kind = MultiplexorSignal;
        multiplexor.selection_flags = 0;
    }
    QCOMPARE(log.convert().warnings, QStringList());
}

void tst_Losses::aMeasurementThatLacksPartsIsNamedOnce()
{
    DaqLog log;
    log.addMeasurement("Speed", A2lDataType::ULong);
    testlog::addSplitElement(log.addOdt(), text("Speed"), 3, 0);
    testlog::addSplitElement(log.addOdt(), text("Speed"), 3, 0);
    QCOMPARE(log.convert().warnings,
             QStringList(text("Measurements of CAN-5 are left out, their parts in the DAQ lists "
                              "don't make up the whole value: Speed")));
}

void tst_Losses::aNameThatTheModuleLacksIsToldOnce()
{
    DaqLog log;
    testlog::addElement(log.addOdt(), text("Gone"), 1);
    testlog::addElement(log.addOdt(), text("Gone"), 1);
    QCOMPARE(log.convert().warnings,
             QStringList(text("Measurements of CAN-5 are left out, the module doesn't describe "
                              "them: Gone")));
}

void tst_Losses::aMeasurementBeyondItsDtoIsNamed()
{
    DaqLog log;
    log.addMeasurement("Near", A2lDataType::UByte);
    log.addMeasurement("Far", A2lDataType::UByte);
    StreamingClass_A2L_ODT &odt = log.addOdt();
    testlog::addElement(odt, text("Near"), 254);
    testlog::addElement(odt, text("Far"), 1);
    QCOMPARE(log.convert().warnings,
             QStringList(text("Measurements of CAN-5 are left out, they lie beyond the end of "
                              "their DTO: Far")));
}

void tst_Losses::aMeasurementOfSeveralListsThatIsLeftOutIsToldOnce_data()
{
    QTest::addColumn<int>("dataType");
    QTest::addColumn<int>("byteOrder");
    QTest::newRow("data type") << int(unknownType) << 0;
    QTest::newRow("byte order") << int(A2lDataType::UByte) << 99;
}

void tst_Losses::aMeasurementOfSeveralListsThatIsLeftOutIsToldOnce()
{
    QFETCH(int, dataType);
    QFETCH(int, byteOrder);
    DaqLog log;
    log.addMeasurement("Odd", quint8(dataType)).byte_order = byteOrder;
    testlog::addElement(log.addOdt(), text("Odd"), 1);
    testlog::addElement(log.addOdt(), text("Odd"), 1);
    const ConversionResult result = log.convert();
    QCOMPARE((result.warnings + result.errors).filter(text("Measurement Odd is left out")).size(),
             1);
}

void tst_Losses::manyNamesAreCutShort()
{
    DbcLog log;
    for (int i = 1; i <= 23; ++i)
        log.addSignal(QByteArray::number(i), 60, 8);
    const QStringList warnings = log.convert().warnings;
    QCOMPARE(warnings.size(), 1);
    QVERIFY(warnings.first().endsWith(text(": 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, "
                                           "16, 17, 18, 19, 20 and 3 more")));
}

void tst_Losses::recordsThatAreLeftOutAreNotCountedAsSamples()
{
    DbcLog log;
    // Frames of one length never bring both.
    log.addSignal("Long", 0, 8);
    log.addSignal("Short", 0, 8).dlc = 4;
    log.addFrame(1000, "0102030405060708");
    Counts counts;
    log.prepare = [&counts](WorkerConvertMDF4 &worker) {
        QObject::connect(&worker, &WorkerConvertMDF4::sig_updateSignals,
                         [&counts](const Counts &sent, bool) { counts = sent; });
    };
    log.convert();
    QCOMPARE(counts[text("CAN_2_DBC")][text("Long")], text("0"));
}

QTEST_GUILESS_MAIN(tst_Losses)
#include "tst_losses.moc"
