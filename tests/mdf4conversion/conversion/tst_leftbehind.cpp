#include "tests/support/daqlog.h"

#include <QRegularExpression>
#include <QTest>

using testlog::addElement;
using testlog::addOdt;
using testlog::addSplitElement;

namespace {

using Log = DaqLog;

QString text(const char *latin1)
{
    return QString::fromLatin1(latin1);
}

} // namespace

// Measurements whose DAQ lists don't carry all their parts, as in the logs of old loggers.
class tst_LeftBehind : public QObject
{
    Q_OBJECT

private slots:
    void aSplitValueWithoutAllItsPartsIsLeftBehind();
    void aWholeValueThatIsTooShortIsLeftBehind();
    void anOldLogConvertsThroughTheLeftBehindPath();
    void inAnOldLogAShortFirstPartIsNotConverted();
    void inAnOldLogTheFirstPartHolds();
    void leftBehindSignalsOfEthernetAreLoggedAsSuch();
};

void tst_LeftBehind::aSplitValueWithoutAllItsPartsIsLeftBehind()
{
    Log log;
    log.addMeasurement("Speed", A2lDataType::ULong);
    addSplitElement(addOdt(log.addDaq(), 0), text("Speed"), 3, 0);
    log.addDto(1000, "0011223300000000");
    QTest::ignoreMessage(QtDebugMsg,
                         QRegularExpression(text("^Incomplete and/or Left Behind Signals: +1$")));
    const ConversionResult result = log.convert();
    QVERIFY(result.statuses.contains(oldLogText()));
    QVERIFY(result.file.groups.empty());
}

void tst_LeftBehind::aWholeValueThatIsTooShortIsLeftBehind()
{
    Log log;
    log.addMeasurement("Speed", A2lDataType::ULong);
    log.addMeasurement("A", A2lDataType::UByte);
    auto &odt = addOdt(log.addDaq(), 0);
    addElement(odt, text("Speed"), 2);
    addElement(odt, text("A"), 1);
    log.addDto(1000, "0011222A00000000");
    const ConversionResult result = log.convert();
    QVERIFY(result.statuses.contains(oldLogText()));
    QCOMPARE(result.groupNames().size(), 1);
    QCOMPARE(result.raw(0, "A"), QVector<double>{0x2A});
}

void tst_LeftBehind::anOldLogConvertsThroughTheLeftBehindPath()
{
    Log log;
    log.addMeasurement("Speed", A2lDataType::UWord);
    auto &element = addElement(addOdt(log.addDaq(), 0), text("Speed"), 2);
    log.makeOld(element);
    log.addDto(1000, "0011220000000000");
    log.addDto(1100, "0033440000000000");
    const ConversionResult result = log.convert();
    QCOMPARE(result.statuses.count(oldLogText()), 1);
    QCOMPARE(result.groupNames(), QStringList(text("CAN_5_CCP_XCP")));
    QCOMPARE(result.raw(0, "Speed"), (QVector<double>{0x2211, 0x4433}));
}

void tst_LeftBehind::inAnOldLogAShortFirstPartIsNotConverted()
{
    Log log;
    log.addMeasurement("Speed", A2lDataType::UWord);
    auto &element = addElement(addOdt(log.addDaq(), 0), text("Speed"), 1);
    log.makeOld(element);
    log.addDto(1000, "0011220000000000");
    const ConversionResult result = log.convert();
    QVERIFY(result.statuses.contains(oldLogText()));
    QVERIFY(result.file.groups.empty());
}

void tst_LeftBehind::inAnOldLogTheFirstPartHolds()
{
    Log log;
    log.addMeasurement("Speed", A2lDataType::UWord);
    auto &daq = log.addDaq();
    addElement(addOdt(daq, 0), text("Speed"), 2);
    auto &second = addElement(addOdt(daq, 1), text("Speed"), 2);
    log.makeOld(second);
    log.addDto(1000, "0011220000000000");
    log.addDto(1100, "0133440000000000");
    QCOMPARE(log.convert().raw(0, "Speed"), QVector<double>{0x2211});
}

void tst_LeftBehind::leftBehindSignalsOfEthernetAreLoggedAsSuch()
{
    Log log;
    testlog::addMeasurement(log.ethModule(), text("A"), A2lDataType::UWord);
    addElement(addOdt(testlog::addDaq(log.ethModule(), 0), 0), text("A"), 1);
    QTest::ignoreMessage(QtDebugMsg, QRegularExpression(text(
                                         "^Incomplete and/or Left Behind Signals Eth XCP: +1$")));
    QVERIFY(log.convert().statuses.contains(oldLogText()));
}

QTEST_GUILESS_MAIN(tst_LeftBehind)
#include "tst_leftbehind.moc"
