#include "tests/support/dbclog.h"

#include <QTest>

namespace {

using Log = DbcLog;

QString joined(const QStringList &list)
{
    return list.join(QLatin1Char(' '));
}

} // namespace

class tst_DbcMultiplexing : public QObject
{
    Q_OBJECT

private slots:
    void eachMultiplexorValueHasAGroupWithThePlainSignals();
    void multiplexedSignalsAreTakenAtTheirValueOnly();
    void theMultiplexorServesMatchingOnly();
    void aMultiplexorThatIsNotRecordedMatches();
    void aMotorolaMultiplexorMatches();
    void multiplexorValuesAscend();
    void withTwoMultiplexorsTheFirstCountsAndAWarningIsGiven();
    void withoutAMultiplexorAllSignalsGoOutAsTheyAreAndAWarningIsGiven();
    void aMultiplexorWithoutMultiplexedSignalsIsAValueLikeAnyOther();
};

void tst_DbcMultiplexing::eachMultiplexorValueHasAGroupWithThePlainSignals()
{
    Log log;
    log.addMultiplexor("Mux", 0, 8);
    log.addMultiplexed("At1", 1, 8);
    log.addSignal("Plain", 16, 8);
    log.addMultiplexed("At2", 2, 8);
    log.addFrame(10, "01 0A 0B 0000000000");
    log.addFrame(20, "02 0C 0D 0000000000");
    const ConversionResult result = log.convert();
    QCOMPARE(joined(result.groupNames()), QStringLiteral("CAN_2_DBCMUX CAN_2_DBCMUX"));
    QCOMPARE(joined(result.channelNames(0)), QStringLiteral("At1 Plain"));
    QCOMPARE(joined(result.channelNames(1)), QStringLiteral("Plain At2"));
    QCOMPARE(result.raw(0, "Plain"), QVector<double>{0x0B});
    QCOMPARE(result.raw(1, "Plain"), QVector<double>{0x0D});
}

void tst_DbcMultiplexing::multiplexedSignalsAreTakenAtTheirValueOnly()
{
    Log log;
    log.addMultiplexor("Mux", 4, 4);
    log.addMultiplexed("At1", 1, 8);
    log.addFrame(10, "1F0A000000000000");
    log.addFrame(20, "2F0B000000000000");
    log.addFrame(30, "100C000000000000");
    const ConversionResult result = log.convert();
    QCOMPARE(result.raw(0, "At1"), (QVector<double>{0x0A, 0x0C}));
}

void tst_DbcMultiplexing::theMultiplexorServesMatchingOnly()
{
    Log log;
    log.addMultiplexor("Mux", 0, 8);
    log.addMultiplexed("At1", 1, 8);
    log.addFrame(10, "010A000000000000");
    QCOMPARE(joined(log.convert().channelNames(0)), QStringLiteral("At1"));
}

void tst_DbcMultiplexing::aMultiplexorThatIsNotRecordedMatches()
{
    Log log;
    log.addMultiplexor("Mux", 0, 8).selection_flags = 0;
    log.addMultiplexed("At1", 1, 8);
    log.addFrame(10, "010A000000000000");
    log.addFrame(20, "020B000000000000");
    const ConversionResult result = log.convert();
    QCOMPARE(result.warnings, QStringList());
    QCOMPARE(result.raw(0, "At1"), QVector<double>{0x0A});
}

void tst_DbcMultiplexing::aMotorolaMultiplexorMatches()
{
    Log log;
    log.addMultiplexor("Mux", 3, 12).little_endian = 0;
    log.addMultiplexed("At", 0xABC, 16);
    log.addFrame(10, "0ABC2A0000000000");
    log.addFrame(20, "BCAB2B0000000000");
    QCOMPARE(log.convert().raw(0, "At"), QVector<double>{0x2A});
}

void tst_DbcMultiplexing::multiplexorValuesAscend()
{
    Log log;
    log.addMultiplexor("Mux", 0, 8);
    log.addMultiplexed("At9", 9, 8);
    log.addMultiplexed("At3", 3, 8);
    log.addMultiplexed("Also9", 9, 16);
    log.addFrame(10, "0900000000000000");
    log.addFrame(20, "0300000000000000");
    const ConversionResult result = log.convert();
    QCOMPARE(joined(result.channelNames(0)), QStringLiteral("At3"));
    QCOMPARE(joined(result.channelNames(1)), QStringLiteral("At9 Also9"));
}

void tst_DbcMultiplexing::withTwoMultiplexorsTheFirstCountsAndAWarningIsGiven()
{
    Log log;
    log.addMultiplexor("First", 0, 8);
    log.addMultiplexor("Second", 8, 8);
    log.addMultiplexed("At1", 1, 16);
    log.addFrame(10, "01 02 0A 0000000000");
    log.addFrame(20, "02 01 0B 0000000000");
    const ConversionResult result = log.convert();
    QCOMPARE(result.warnings, QStringList(QStringLiteral(
                                  "CAN-DBC More than 1 Multiplexor available: CAN-2 msgID:291")));
    QCOMPARE(result.raw(0, "At1"), QVector<double>{0x0A});
}

void tst_DbcMultiplexing::withoutAMultiplexorAllSignalsGoOutAsTheyAreAndAWarningIsGiven()
{
    Log log;
    log.addMultiplexed("At1", 1, 0);
    log.addMultiplexed("At2", 2, 8);
    log.addSignal("Plain", 16, 8);
    log.addFrame(10, "0A0B0C0000000000");
    const ConversionResult result = log.convert();
    QCOMPARE(result.warnings,
             QStringList(QStringLiteral(
                 "CAN-DBC Multiplexed channels without Multiplexor: CAN-2 msgID:291")));
    QCOMPARE(result.groupNames(), QStringList(QStringLiteral("CAN_2_DBCMUX")));
    QCOMPARE(joined(result.channelNames(0)), QStringLiteral("At1 At2 Plain"));
    QCOMPARE(result.raw(0, "At2"), QVector<double>{0x0B});
}

void tst_DbcMultiplexing::aMultiplexorWithoutMultiplexedSignalsIsAValueLikeAnyOther()
{
    Log log;
    log.addMultiplexor("Mux", 0, 8);
    log.addSignal("Plain", 8, 8);
    log.addFrame(10, "0A0B000000000000");
    const ConversionResult result = log.convert();
    QCOMPARE(result.groupNames(), QStringList(QStringLiteral("CAN_2_DBC")));
    QCOMPARE(result.raw(0, "Mux"), QVector<double>{0x0A});
}

QTEST_GUILESS_MAIN(tst_DbcMultiplexing)
#include "tst_dbcmultiplexing.moc"
