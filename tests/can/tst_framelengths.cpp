#include "can/framelengths.h"

#include <QTest>
#include <QVector>

using can::FrameFormat;

class tst_FrameLengths : public QObject
{
    Q_OBJECT

private slots:
    void aDlcHasItsLength_data();
    void aDlcHasItsLength();
    void aLengthGetsTheShortestFrameThatHoldsIt_data();
    void aLengthGetsTheShortestFrameThatHoldsIt();
    void onlyTheFdFormatHasFramesAboveEightBytes();
};

void tst_FrameLengths::aDlcHasItsLength_data()
{
    QTest::addColumn<bool>("isFd");
    QTest::addColumn<int>("dlc");
    QTest::addColumn<int>("length");
    QTest::newRow("none") << false << 0 << 0;
    QTest::newRow("classic 8") << false << 8 << 8;
    QTest::newRow("a classic code above 8 is 8 bytes") << false << 15 << 8;
    QTest::newRow("FD 8") << true << 8 << 8;
    QTest::newRow("FD 9") << true << 9 << 12;
    QTest::newRow("FD 10") << true << 10 << 16;
    QTest::newRow("FD 11") << true << 11 << 20;
    QTest::newRow("FD 12") << true << 12 << 24;
    QTest::newRow("FD 13") << true << 13 << 32;
    QTest::newRow("FD 14") << true << 14 << 48;
    QTest::newRow("FD 15") << true << 15 << 64;
    QTest::newRow("below the codes") << true << -1 << 0;
    QTest::newRow("above the codes") << true << 16 << 64;
}

void tst_FrameLengths::aDlcHasItsLength()
{
    QFETCH(bool, isFd);
    QFETCH(int, dlc);
    QTEST(can::lengthOfDlc(dlc, isFd ? FrameFormat::Fd : FrameFormat::Classic), "length");
}

void tst_FrameLengths::aLengthGetsTheShortestFrameThatHoldsIt_data()
{
    QTest::addColumn<bool>("isFd");
    QTest::addColumn<int>("bytes");
    QTest::addColumn<int>("dlc");
    QTest::newRow("exact") << true << 48 << 14;
    QTest::newRow("between") << true << 9 << 9;
    QTest::newRow("more than there can be") << true << 65 << 15;
    QTest::newRow("more than classic") << false << 64 << 8;
    QTest::newRow("below none") << false << -3 << 0;
}

void tst_FrameLengths::aLengthGetsTheShortestFrameThatHoldsIt()
{
    QFETCH(bool, isFd);
    QFETCH(int, bytes);
    QFETCH(int, dlc);
    const FrameFormat format = isFd ? FrameFormat::Fd : FrameFormat::Classic;
    QCOMPARE(can::dlcOfLength(bytes, format), dlc);
    QCOMPARE(can::lengthThatHolds(bytes, format), can::lengthOfDlc(dlc, format));
}

void tst_FrameLengths::onlyTheFdFormatHasFramesAboveEightBytes()
{
    const auto lengthsAbove8 = [](FrameFormat format) {
        QVector<int> lengths;
        for (int bytes = 9; bytes <= 255; ++bytes) {
            if (can::isDataLength(bytes, format))
                lengths.append(bytes);
        }
        return lengths;
    };
    QCOMPARE(lengthsAbove8(FrameFormat::Classic), QVector<int>());
    QCOMPARE(lengthsAbove8(FrameFormat::Fd), (QVector<int>{12, 16, 20, 24, 32, 48, 64}));
    QVERIFY(can::isDataLength(0, FrameFormat::Classic));
    QVERIFY(can::isDataLength(8, FrameFormat::Classic));
    QVERIFY(!can::isDataLength(-1, FrameFormat::Fd));
}

QTEST_APPLESS_MAIN(tst_FrameLengths)
#include "tst_framelengths.moc"
