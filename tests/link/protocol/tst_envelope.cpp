#include "link/protocol/envelope.h"

#include <QTest>

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
};

namespace {

const Message reply{1, 0x1234, "OK\r\n"};
const Message push{20, 0, QByteArray::fromHex("aa0001")};

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
    QCOMPARE(reader.feed(protocol::envelopeBytes(messages)), messages);
}

void tst_Envelope::aStreamMayBeSplitAtEveryByte()
{
    const QByteArray stream = protocol::envelopeBytes({reply, push}) + "noise"
                              + protocol::envelopeBytes(Message{3, 9, QByteArray(300, 'x')});
    EnvelopeReader reader;
    QVector<Message> found;
    for (const char byte : stream)
        found += reader.feed(QByteArray(1, byte));
    QCOMPARE(found, (QVector<Message>{reply, push, {3, 9, QByteArray(300, 'x')}}));
    for (int cut = 0; cut <= stream.size(); ++cut) {
        EnvelopeReader halves;
        QVector<Message> inHalves = halves.feed(stream.left(cut));
        inHalves += halves.feed(stream.mid(cut));
        QCOMPARE(inHalves, found);
    }
}

void tst_Envelope::bytesBeforeTheStartByteAreDropped()
{
    EnvelopeReader reader;
    QCOMPARE(reader.feed(QByteArray::fromHex("0055ff") + protocol::envelopeBytes(reply)),
             QVector<Message>{reply});
}

void tst_Envelope::oneEnvelopeGivesAllItsMessages()
{
    EnvelopeReader reader;
    QCOMPARE(reader.feed(protocol::envelopeBytes({reply, push})).size(), 2);
}

void tst_Envelope::aMessageThatClaimsMoreThanRemainsEndsTheEnvelope()
{
    EnvelopeReader reader;
    QCOMPARE(reader.feed(envelope("64 0100 00000000 14 0000 05000000 01020304")),
             (QVector<Message>{{100, 1, {}}}));
}

void tst_Envelope::aNegativeLengthEndsTheEnvelope()
{
    EnvelopeReader reader;
    QVERIFY(reader.feed(envelope("14 0000 ffffffff 64 0100 00000000")).isEmpty());
    QVERIFY(!reader.isBroken());
}

void tst_Envelope::lessThanAMessageHeadIsDropped()
{
    EnvelopeReader reader;
    QVERIFY(reader.feed(envelope("640100000000")).isEmpty());
    QVERIFY(!reader.isBroken());
}

void tst_Envelope::theNextEnvelopeIsReadBehindACutOne()
{
    EnvelopeReader reader;
    QCOMPARE(reader.feed(envelope("14 0000 05000000 01") + protocol::envelopeBytes(reply)),
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
    QVERIFY(reader.feed(head).isEmpty());
    QTEST(reader.isBroken(), "isBroken");
    QVERIFY(reader.feed(protocol::envelopeBytes(reply)).isEmpty());
}

// Many connections may each announce the most that is allowed.
void tst_Envelope::aLongLengthTakesNoMemoryBeforeItsBytesCome()
{
    QVector<EnvelopeReader> readers(1000);
    for (EnvelopeReader &reader : readers)
        QVERIFY(reader.feed(QByteArray::fromHex("aa00e1f505 01")).isEmpty());
}

void tst_Envelope::aResetStartsAnew()
{
    EnvelopeReader reader;
    (void)reader.feed(QByteArray::fromHex("aa00000000"));
    reader.reset();
    QVERIFY(!reader.isBroken());
    QCOMPARE(reader.feed(protocol::envelopeBytes(reply)), QVector<Message>{reply});
}

void tst_Envelope::damageAtAnyByteIsSurvived()
{
    const QByteArray good = protocol::envelopeBytes({reply, push});
    for (int at = 0; at < good.size(); ++at) {
        for (const int value : {0x00, 0x01, 0x7F, 0x80, 0xAA, 0xFF}) {
            QByteArray bad = good;
            bad[at] = char(value);
            EnvelopeReader reader;
            const QVector<Message> found = reader.feed(bad);
            QVERIFY(found.size() <= 3);
            for (const Message &message : found)
                QVERIFY(message.payload.size() <= good.size());
        }
    }
}

QTEST_GUILESS_MAIN(tst_Envelope)
#include "tst_envelope.moc"
