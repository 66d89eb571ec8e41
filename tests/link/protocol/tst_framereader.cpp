#include "link/protocol/framereader.h"

#include <QTest>

using protocol::FrameReader;

class tst_FrameReader : public QObject
{
    Q_OBJECT

private slots:
    void aFrameIsItsLengthAndFourBytes();
    void aStreamMayBeSplitAtEveryByte();
    void noiseBeforeTheSyncIsDropped();
    void anythingButTheSecondSyncByteRestartsTheSearch();
    void aLengthOfThreeOrLessRestartsTheSearch_data();
    void aLengthOfThreeOrLessRestartsTheSearch();
    void theLongestFrameIsTaken();
    void syncBytesInABodyBelongToIt();
    void aWrongLengthCostsTheFramesThatItSwallows();
    void aResetForgetsTheFrameInProgress();
    void damageAtAnyByteCostsNoMoreThanTheNextFrames();
};

namespace {

const QByteArray shortFrame = QByteArray::fromHex("aa55 0400 fe000000");
const QByteArray longFrame = QByteArray::fromHex("aa55 0c00 01020304 aa55aa55 05060708");

} // namespace

void tst_FrameReader::aFrameIsItsLengthAndFourBytes()
{
    FrameReader reader;
    QCOMPARE(reader.feed(shortFrame + longFrame), (QList<QByteArray>{shortFrame, longFrame}));
}

void tst_FrameReader::aStreamMayBeSplitAtEveryByte()
{
    const QByteArray stream = shortFrame + "\xAA\x01" + longFrame + shortFrame;
    const QList<QByteArray> frames{shortFrame, longFrame, shortFrame};
    FrameReader reader;
    QList<QByteArray> found;
    for (const char byte : stream)
        found += reader.feed(QByteArray(1, byte));
    QCOMPARE(found, frames);
    for (int cut = 0; cut <= stream.size(); ++cut) {
        FrameReader halves;
        QList<QByteArray> inHalves = halves.feed(stream.left(cut));
        inHalves += halves.feed(stream.mid(cut));
        QCOMPARE(inHalves, frames);
    }
}

void tst_FrameReader::noiseBeforeTheSyncIsDropped()
{
    FrameReader reader;
    QCOMPARE(reader.feed("noise\x55" + shortFrame), QList<QByteArray>{shortFrame});
}

// The byte that isn't the second one is not looked at again, even if it is a first one.
void tst_FrameReader::anythingButTheSecondSyncByteRestartsTheSearch()
{
    FrameReader reader;
    QCOMPARE(reader.feed("\xAA" + shortFrame + shortFrame), QList<QByteArray>{shortFrame});
    QCOMPARE(reader.feed(QByteArray::fromHex("aa00") + shortFrame), QList<QByteArray>{shortFrame});
}

void tst_FrameReader::aLengthOfThreeOrLessRestartsTheSearch_data()
{
    QTest::addColumn<QByteArray>("head");
    for (int length = 0; length < 4; ++length)
        QTest::addRow("%d", length) << QByteArray::fromHex("aa55") + char(length) + '\0';
}

void tst_FrameReader::aLengthOfThreeOrLessRestartsTheSearch()
{
    QFETCH(QByteArray, head);
    FrameReader reader;
    QCOMPARE(reader.feed(head + shortFrame), QList<QByteArray>{shortFrame});
}

void tst_FrameReader::theLongestFrameIsTaken()
{
    const QByteArray longest = QByteArray::fromHex("aa55ffff") + QByteArray(0xFFFF, 'x');
    FrameReader reader;
    QCOMPARE(reader.feed(longest + shortFrame), (QList<QByteArray>{longest, shortFrame}));
}

void tst_FrameReader::syncBytesInABodyBelongToIt()
{
    FrameReader reader;
    QCOMPARE(reader.feed(longFrame), QList<QByteArray>{longFrame});
}

void tst_FrameReader::aWrongLengthCostsTheFramesThatItSwallows()
{
    QByteArray tooLong = shortFrame;
    tooLong[2] = char(4 + shortFrame.size());
    FrameReader reader;
    QCOMPARE(reader.feed(tooLong + shortFrame + longFrame),
             (QList<QByteArray>{tooLong + shortFrame, longFrame}));
}

void tst_FrameReader::aResetForgetsTheFrameInProgress()
{
    FrameReader reader;
    QVERIFY(reader.feed(longFrame.left(10)).isEmpty());
    reader.reset();
    QCOMPARE(reader.feed(shortFrame), QList<QByteArray>{shortFrame});
}

void tst_FrameReader::damageAtAnyByteCostsNoMoreThanTheNextFrames()
{
    for (int at = 0; at < longFrame.size(); ++at) {
        for (const int value : {0x00, 0x03, 0x55, 0xAA, 0xFF}) {
            QByteArray bad = longFrame;
            bad[at] = char(value);
            FrameReader reader;
            (void)reader.feed(bad + QByteArray(0x10000, '\0'));
            QCOMPARE(reader.feed(shortFrame), QList<QByteArray>{shortFrame});
        }
    }
}

QTEST_GUILESS_MAIN(tst_FrameReader)
#include "tst_framereader.moc"
