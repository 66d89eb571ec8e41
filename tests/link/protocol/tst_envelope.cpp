#include "link/protocol/envelope.h"

#include <QTest>

#ifdef Q_OS_LINUX
#include <malloc.h>
#endif

using protocol::EnvelopeReader;
using protocol::Message;

class tst_Envelope : public QObject
{
    Q_OBJECT

private slots:
    void aMessageIsWrittenLittleEndian();
    void anEmptyPayloadLeavesTheHeadAlone();
    void whatIsWrittenReadsBackWhole();
    void aStreamMayBeSplitAtEveryByte();
    void bytesBeforeTheStartByteAreDropped();
    void oneEnvelopeGivesAllItsMessages();
    void aMessageThatClaimsMoreThanRemainsEndsTheEnvelope();
    void aNegativeLengthEndsTheEnvelope();
    void lessThanAMessageHeadIsDropped();
    void theNextEnvelopeIsReadBehindACutOne();
    void anImpossibleLengthBreaksTheStream_data();
    void anImpossibleLengthBreaksTheStream();
    void aLongLengthTakesNoMemoryBeforeItsBytesCome();
    void aResetStartsAnew();
    void damageAtAnyByteIsSurvived();
    void manySmallMessagesTakeNoMemoryBesideTheirEnvelope();
};

namespace {

QVector<Message> messagesOf(EnvelopeReader &reader, const QByteArray &bytes)
{
    QVector<Message> messages;
    reader.feed(bytes, [&messages](const Message &message) { messages.append(message); });
    return messages;
}

const Message reply{1, 0x1234, "OK\r\n"};
const Message push{20, 0, QByteArray::fromHex("aa0001")};

// Of the heap; 0 where the system can't tell.
qint64 heldBytes()
{
#ifdef __GLIBC__
#if __GLIBC_PREREQ(2, 33)
    const auto heap = mallinfo2();
    return qint64(heap.uordblks + heap.hblkhd);
#endif
#endif
    return 0;
}

QByteArray envelope(const char *contentHex)
{
    const QByteArray content = QByteArray::fromHex(contentHex);
    QByteArray bytes = QByteArray::fromHex("aa00000000");
    bytes[1] = char(content.size());
    return bytes + content;
}

} // namespace

void tst_Envelope::aMessageIsWrittenLittleEndian()
{
    QCOMPARE(protocol::envelopeBytes(reply).toHex(' '),
             QByteArray("aa 0b 00 00 00 01 34 12 04 00 00 00 4f 4b 0d 0a"));
}

void tst_Envelope::anEmptyPayloadLeavesTheHeadAlone()
{
    QCOMPARE(protocol::envelopeBytes({2, 121, {}}).toHex(' '),
             QByteArray("aa 07 00 00 00 02 79 00 00 00 00 00"));
}

void tst_Envelope::whatIsWrittenReadsBackWhole()
{
    EnvelopeReader reader;
    const QVector<Message> messages{reply, push, {100, 7, {}}};
    QCOMPARE(messagesOf(reader, protocol::envelopeBytes(messages)), messages);
}

void tst_Envelope::aStreamMayBeSplitAtEveryByte()
{
    const QByteArray stream = protocol::envelopeBytes({reply, push}) + "noise"
                              + protocol::envelopeBytes(Message{3, 9, QByteArray(300, 'x')});
    EnvelopeReader reader;
    QVector<Message> found;
    for (const char byte : stream)
        found += messagesOf(reader, QByteArray(1, byte));
    QCOMPARE(found, (QVector<Message>{reply, push, {3, 9, QByteArray(300, 'x')}}));
    for (int cut = 0; cut <= stream.size(); ++cut) {
        EnvelopeReader halves;
        QVector<Message> inHalves = messagesOf(halves, stream.left(cut));
        inHalves += messagesOf(halves, stream.mid(cut));
        QCOMPARE(inHalves, found);
    }
}

void tst_Envelope::bytesBeforeTheStartByteAreDropped()
{
    EnvelopeReader reader;
    QCOMPARE(messagesOf(reader, QByteArray::fromHex("0055ff") + protocol::envelopeBytes(reply)),
             QVector<Message>{reply});
}

void tst_Envelope::oneEnvelopeGivesAllItsMessages()
{
    EnvelopeReader reader;
    QCOMPARE(messagesOf(reader, protocol::envelopeBytes({reply, push})).size(), 2);
}

void tst_Envelope::aMessageThatClaimsMoreThanRemainsEndsTheEnvelope()
{
    EnvelopeReader reader;
    QCOMPARE(messagesOf(reader, envelope("64 0100 00000000 14 0000 05000000 01020304")),
             (QVector<Message>{{100, 1, {}}}));
}

void tst_Envelope::aNegativeLengthEndsTheEnvelope()
{
    EnvelopeReader reader;
    QVERIFY(messagesOf(reader, envelope("14 0000 ffffffff 64 0100 00000000")).isEmpty());
    QVERIFY(!reader.isBroken());
}

void tst_Envelope::lessThanAMessageHeadIsDropped()
{
    EnvelopeReader reader;
    QVERIFY(messagesOf(reader, envelope("640100000000")).isEmpty());
    QVERIFY(!reader.isBroken());
}

void tst_Envelope::theNextEnvelopeIsReadBehindACutOne()
{
    EnvelopeReader reader;
    QCOMPARE(messagesOf(reader, envelope("14 0000 05000000 01") + protocol::envelopeBytes(reply)),
             QVector<Message>{reply});
}

void tst_Envelope::anImpossibleLengthBreaksTheStream_data()
{
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<bool>("isBroken");
    QTest::newRow("0") << QByteArray::fromHex("aa00000000") << true;
    QTest::newRow("100,000,000") << QByteArray::fromHex("aa00e1f505") << false;
    QTest::newRow("100,000,001") << QByteArray::fromHex("aa01e1f505") << true;
    QTest::newRow("largest") << QByteArray::fromHex("aaffffffff") << true;
}

void tst_Envelope::anImpossibleLengthBreaksTheStream()
{
    QFETCH(QByteArray, head);
    EnvelopeReader reader;
    QVERIFY(messagesOf(reader, head).isEmpty());
    QTEST(reader.isBroken(), "isBroken");
    QVERIFY(messagesOf(reader, protocol::envelopeBytes(reply)).isEmpty());
}

// Many connections may each announce the most that is allowed.
void tst_Envelope::aLongLengthTakesNoMemoryBeforeItsBytesCome()
{
    QVector<EnvelopeReader> readers(1000);
    for (EnvelopeReader &reader : readers)
        QVERIFY(messagesOf(reader, QByteArray::fromHex("aa00e1f505 01")).isEmpty());
}

void tst_Envelope::aResetStartsAnew()
{
    EnvelopeReader reader;
    (void)messagesOf(reader, QByteArray::fromHex("aa00000000"));
    reader.reset();
    QVERIFY(!reader.isBroken());
    QCOMPARE(messagesOf(reader, protocol::envelopeBytes(reply)), QVector<Message>{reply});
}

void tst_Envelope::damageAtAnyByteIsSurvived()
{
    const QByteArray good = protocol::envelopeBytes({reply, push});
    for (int at = 0; at < good.size(); ++at) {
        for (const int value : {0x00, 0x01, 0x7F, 0x80, 0xAA, 0xFF}) {
            QByteArray bad = good;
            bad[at] = char(value);
            EnvelopeReader reader;
            const QVector<Message> found = messagesOf(reader, bad);
            QVERIFY(found.size() <= 3);
            for (const Message &message : found)
                QVERIFY(message.payload.size() <= good.size());
        }
    }
}

void tst_Envelope::manySmallMessagesTakeNoMemoryBesideTheirEnvelope()
{
    constexpr int count = 200'000;
    const QByteArray stream = protocol::envelopeBytes(QVector<Message>(count, reply));
    EnvelopeReader reader;
    const qint64 before = heldBytes();
    qint64 most = before;
    int seen = 0;
    reader.feed(stream, [&](const Message &) {
        if (++seen % (count / 10) == 0) // looking takes long
            most = qMax(most, heldBytes());
    });
    QCOMPARE(seen, count);
    QVERIFY(most - before < 3 * stream.size()); // a growing buffer holds up to twice its content
}

QTEST_GUILESS_MAIN(tst_Envelope)
#include "tst_envelope.moc"
