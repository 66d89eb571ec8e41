#include "can/dbclivedecoder.h"
#include "config/record/ownedlist.h"
#include "tests/can/framebytes.h"

#include <QtTest>

using Signal = StreamingClass_DBC_Signal;

namespace {

// The signals of a channel, each by default live, a byte in a message 0x100 of 8 bytes.
class Channel : public OwnedList<Signal>
{
public:
    Signal &addSignal(const char *name, quint16 startBit = 0, quint16 length = 8)
    {
        Signal &signal = add();
        signal.name = QString::fromLatin1(name);
        signal.selection_flags = Signal::liveFlag;
        signal.msg_id = 0x100;
        signal.dlc = 8;
        signal.start_bit = startBit;
        signal.bit_length = length;
        signal.little_endian = 1;
        signal.factor = 1;
        return signal;
    }
};

const char *const counting = "0102030405060708";

} // namespace

class tst_DbcLiveDecoder : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void aLiveSignalGetsItsPhysicalValue();
    void bothByteOrdersAndSignsAreRead();
    void aSignalWithoutTheLiveFlagIsLeftAlone();
    void otherFramesGiveNoValue_data();
    void otherFramesGiveNoValue();
    void standardAndExtendedIdentifiersOfANumberAreApart();
    void bitsAboveTheIdentifierAreNoneOfIt();
    void aValueBeyondItsFrameIsNotRead();
    void aMultiplexedSignalIsReadWithItsMultiplexorValueOnly();
    void aMultiplexorThatIsNotLiveSelectsAllTheSame();
    void aMultiplexorBeyondItsFrameSelectsNothing();
    void withoutAMultiplexorEveryFrameCounts();
    void plainSignalsOfAMultiplexedMessageAreAlwaysRead();
    void valuesOutliveTheirRecords();
    void aValueThatWouldReadOtherwiseNowIsNotKept();
    void aSignalThatIsNoLongerLiveCountsAsNotSeen();
    void valuesCanBeForgotten();

private:
    Channel m_channel;
    can::DbcLiveDecoder m_decoder;
};

void tst_DbcLiveDecoder::init()
{
    m_channel.clear();
    m_decoder = {};
}

void tst_DbcLiveDecoder::aLiveSignalGetsItsPhysicalValue()
{
    Signal &speed = m_channel.addSignal("Speed", 8, 16);
    speed.factor = 0.5;
    speed.offset = -10;
    m_decoder.setSignals(m_channel.items());
    QVERIFY(!speed.live_seen);
    QVERIFY(m_decoder.take(FrameBytes(0x100, counting)));
    QVERIFY(speed.live_seen);
    QCOMPARE(speed.live_value, 0x0302 * 0.5 - 10);
}

void tst_DbcLiveDecoder::bothByteOrdersAndSignsAreRead()
{
    Signal &motorola = m_channel.addSignal("Motorola", 7, 16);
    motorola.little_endian = 0;
    Signal &negative = m_channel.addSignal("Negative", 16, 8);
    negative.is_signed = 1;
    m_decoder.setSignals(m_channel.items());
    QVERIFY(m_decoder.take(FrameBytes(0x100, "0102fe0000000000")));
    QCOMPARE(motorola.live_value, 258.0);
    QCOMPARE(negative.live_value, -2.0);
}

void tst_DbcLiveDecoder::aSignalWithoutTheLiveFlagIsLeftAlone()
{
    Signal &recorded = m_channel.addSignal("Recorded");
    recorded.selection_flags = Signal::recordFlag;
    m_decoder.setSignals(m_channel.items());
    QVERIFY(!m_decoder.take(FrameBytes(0x100, counting)));
    QVERIFY(!recorded.live_seen);
    QCOMPARE(m_decoder.liveSignals(), 0);
}

void tst_DbcLiveDecoder::otherFramesGiveNoValue_data()
{
    QTest::addColumn<quint32>("id");
    QTest::addColumn<QByteArray>("hex");
    QTest::addColumn<bool>("isRemote");
    QTest::newRow("another identifier") << 0x101U << QByteArray(counting) << false;
    QTest::newRow("shorter") << 0x100U << QByteArray("01020304050607") << false;
    QTest::newRow("longer") << 0x100U << QByteArray("010203040506070809") << false;
    QTest::newRow("empty") << 0x100U << QByteArray() << false;
    QTest::newRow("remote") << 0x100U << QByteArray(counting) << true;
}

void tst_DbcLiveDecoder::otherFramesGiveNoValue()
{
    QFETCH(quint32, id);
    QFETCH(QByteArray, hex);
    QFETCH(bool, isRemote);
    Signal &signal = m_channel.addSignal("Signal");
    m_decoder.setSignals(m_channel.items());
    const FrameBytes frame(id, hex.constData());
    QVERIFY(!m_decoder.take(isRemote ? frame.remote() : frame));
    QVERIFY(!signal.live_seen);
}

void tst_DbcLiveDecoder::standardAndExtendedIdentifiersOfANumberAreApart()
{
    Signal &standard = m_channel.addSignal("Standard");
    Signal &extended = m_channel.addSignal("Extended");
    extended.extended_id = 1;
    m_decoder.setSignals(m_channel.items());
    QVERIFY(m_decoder.take(FrameBytes(0x100, counting, true)));
    QVERIFY(extended.live_seen);
    QVERIFY(!standard.live_seen);
}

void tst_DbcLiveDecoder::bitsAboveTheIdentifierAreNoneOfIt()
{
    Signal &speed = m_channel.addSignal("Speed");
    speed.msg_id = 0x6000'0100;
    m_decoder.setSignals(m_channel.items());
    QVERIFY(m_decoder.take(FrameBytes(0x100, counting)));
    QVERIFY(speed.live_seen);
}

void tst_DbcLiveDecoder::aValueBeyondItsFrameIsNotRead()
{
    Signal &intel = m_channel.addSignal("Intel", 60, 8);
    Signal &motorola = m_channel.addSignal("Motorola", 56, 2);
    motorola.little_endian = 0;
    Signal &last = m_channel.addSignal("Last", 56, 8);
    m_decoder.setSignals(m_channel.items());
    QVERIFY(m_decoder.take(FrameBytes(0x100, counting)));
    QVERIFY(!intel.live_seen);
    QVERIFY(!motorola.live_seen);
    QCOMPARE(last.live_value, 8.0);
}

void tst_DbcLiveDecoder::aMultiplexedSignalIsReadWithItsMultiplexorValueOnly()
{
    m_channel.addSignal("Mux", 0, 8).mux_kind = MultiplexorSignal;
    Signal &first = m_channel.addSignal("First", 8, 8);
    first.mux_kind = MultiplexedSignal;
    first.mux_value = 1;
    Signal &second = m_channel.addSignal("Second", 8, 8);
    second.mux_kind = MultiplexedSignal;
    second.mux_value = 2;
    m_decoder.setSignals(m_channel.items());
    QVERIFY(m_decoder.take(FrameBytes(0x100, "02aa000000000000")));
    QVERIFY(!first.live_seen);
    QCOMPARE(second.live_value, double(0xAA));
    QVERIFY(!m_decoder.take(FrameBytes(0x100, "03bb000000000000")));
    QCOMPARE(second.live_value, double(0xAA));
}

void tst_DbcLiveDecoder::aMultiplexorThatIsNotLiveSelectsAllTheSame()
{
    Signal &multiplexor = m_channel.addSignal("Mux", 0, 8);
    multiplexor.mux_kind = MultiplexorSignal;
    multiplexor.selection_flags = 0;
    Signal &signal = m_channel.addSignal("Signal", 8, 8);
    signal.mux_kind = MultiplexedSignal;
    signal.mux_value = 7;
    m_decoder.setSignals(m_channel.items());
    QVERIFY(!m_decoder.take(FrameBytes(0x100, counting)));
    QVERIFY(m_decoder.take(FrameBytes(0x100, "0709000000000000")));
    QCOMPARE(signal.live_value, 9.0);
}

void tst_DbcLiveDecoder::aMultiplexorBeyondItsFrameSelectsNothing()
{
    m_channel.addSignal("Mux", 60, 8).mux_kind = MultiplexorSignal;
    Signal &signal = m_channel.addSignal("Signal", 8, 8);
    signal.mux_kind = MultiplexedSignal;
    signal.mux_value = 0;
    m_decoder.setSignals(m_channel.items());
    QVERIFY(!m_decoder.take(FrameBytes(0x100, "0000000000000000")));
    QVERIFY(!signal.live_seen);
}

void tst_DbcLiveDecoder::withoutAMultiplexorEveryFrameCounts()
{
    Signal &signal = m_channel.addSignal("Signal", 8, 8);
    signal.mux_kind = MultiplexedSignal;
    signal.mux_value = 7;
    m_decoder.setSignals(m_channel.items());
    QVERIFY(m_decoder.take(FrameBytes(0x100, counting)));
    QCOMPARE(signal.live_value, 2.0);
}

void tst_DbcLiveDecoder::plainSignalsOfAMultiplexedMessageAreAlwaysRead()
{
    m_channel.addSignal("Mux", 0, 8).mux_kind = MultiplexorSignal;
    Signal &plain = m_channel.addSignal("Plain", 56, 8);
    Signal &multiplexed = m_channel.addSignal("Multiplexed", 8, 8);
    multiplexed.mux_kind = MultiplexedSignal;
    multiplexed.mux_value = 9;
    m_decoder.setSignals(m_channel.items());
    QVERIFY(m_decoder.take(FrameBytes(0x100, counting)));
    QCOMPARE(plain.live_value, 8.0);
    QVERIFY(!multiplexed.live_seen);
}

void tst_DbcLiveDecoder::valuesOutliveTheirRecords()
{
    m_channel.addSignal("Signal");
    m_decoder.setSignals(m_channel.items());
    QVERIFY(m_decoder.take(FrameBytes(0x100, counting)));
    m_channel.clear();
    Signal &fresh = m_channel.addSignal("Signal");
    m_decoder.setSignals(m_channel.items());
    QVERIFY(fresh.live_seen);
    QCOMPARE(fresh.live_value, 1.0);
}

void tst_DbcLiveDecoder::aValueThatWouldReadOtherwiseNowIsNotKept()
{
    Signal &signal = m_channel.addSignal("Signal");
    m_decoder.setSignals(m_channel.items());
    QVERIFY(m_decoder.take(FrameBytes(0x100, counting)));
    signal.factor = 2;
    m_decoder.setSignals(m_channel.items());
    QVERIFY(!signal.live_seen);
    QVERIFY(m_decoder.take(FrameBytes(0x100, counting)));
    QCOMPARE(signal.live_value, 2.0);
}

void tst_DbcLiveDecoder::aSignalThatIsNoLongerLiveCountsAsNotSeen()
{
    Signal &signal = m_channel.addSignal("Signal");
    m_decoder.setSignals(m_channel.items());
    QVERIFY(m_decoder.take(FrameBytes(0x100, counting)));
    signal.selection_flags = 0;
    m_decoder.setSignals(m_channel.items());
    QVERIFY(!signal.live_seen);
}

void tst_DbcLiveDecoder::valuesCanBeForgotten()
{
    Signal &signal = m_channel.addSignal("Signal");
    m_decoder.setSignals(m_channel.items());
    QVERIFY(m_decoder.take(FrameBytes(0x100, counting)));
    m_decoder.forgetValues();
    QVERIFY(!signal.live_seen);
    m_decoder.setSignals(m_channel.items());
    QVERIFY(!signal.live_seen);
}

QTEST_GUILESS_MAIN(tst_DbcLiveDecoder)
#include "tst_dbclivedecoder.moc"
