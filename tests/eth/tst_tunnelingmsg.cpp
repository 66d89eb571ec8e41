#include "eth/tunnelingmsg.h"

#include <QTest>

#include <sstream>

class tst_TunnelingMsg : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void messagesOfBothBusesAreRead();
    void aMessageThatBeginsInTheLastTwelveBytesIsNotRead();
    void aMessageOfChannelNineEndsTheBlock();
    void aNegativeChannelEndsTheBlock();
    void tooMuchDataEndsTheBlock_data();
    void tooMuchDataEndsTheBlock();
    void aMessageBeyondTheEntryEndsTheBlock();
    void aBlockWithoutRoomHasNoMessages();
    void withoutAStreamNothingIsWritten();
    void damageAtAnyByteIsSurvived();

private:
    void parse(const QByteArray &entry)
    {
        m_messages = TunnelingMsgCreator::newTunnelingMessage(entry, &m_warnings);
    }

    QList<TunnelingMsg *> m_messages;
    std::ostringstream m_warnings;
};

namespace {

QByteArray message(qint8 channel, int idSize, const QByteArray &data)
{
    return QByteArray(8, '\x11') + char(channel) + '\x01' + QByteArray(idSize, '\x22')
           + char(data.size()) + data;
}

QByteArray canMessage(const QByteArray &data)
{
    return message(2, 4, data);
}

QByteArray linMessage(const QByteArray &data)
{
    return message(5, 1, data);
}

// Head, timestamp and head of the block, then the messages and what fills up the entry.
QByteArray entryOf(const QByteArray &messages, int filling = 12)
{
    QByteArray entry = QByteArray::fromHex("aa5500000c000200") + QByteArray(20, '\0') + messages
                       + QByteArray(filling, '\0');
    entry[2] = char((entry.size() - 4) & 0xFF);
    entry[3] = char((entry.size() - 4) >> 8);
    return entry;
}

} // namespace

void tst_TunnelingMsg::cleanup()
{
    qDeleteAll(m_messages);
    m_messages.clear();
    m_warnings.str({});
}

void tst_TunnelingMsg::messagesOfBothBusesAreRead()
{
    const QByteArray can = canMessage("0123456789");
    const QByteArray lin = linMessage("abc");
    parse(entryOf(can + lin));
    QCOMPARE(m_messages.size(), 2);
    QCOMPARE(m_messages.at(0)->bytes(), can);
    QCOMPARE(m_messages.at(0)->channel(), 2);
    QVERIFY(dynamic_cast<TunnelingMsgCAN *>(m_messages.at(0)));
    QCOMPARE(QByteArray(m_messages.at(0)->payload(), 10), QByteArray("0123456789"));
    QCOMPARE(m_messages.at(1)->bytes(), lin);
    QVERIFY(dynamic_cast<TunnelingMsgLIN *>(m_messages.at(1)));
    QCOMPARE(QByteArray(m_messages.at(1)->payload(), 3), QByteArray("abc"));
    QCOMPARE(m_warnings.str(), std::string());
}

void tst_TunnelingMsg::aMessageThatBeginsInTheLastTwelveBytesIsNotRead()
{
    const QByteArray lin = linMessage({});
    QCOMPARE(lin.size(), 12);
    parse(entryOf(lin + lin, 0));
    QCOMPARE(m_messages.size(), 1);
    cleanup();
    parse(entryOf(lin + lin, 1));
    QCOMPARE(m_messages.size(), 2);
}

void tst_TunnelingMsg::aMessageOfChannelNineEndsTheBlock()
{
    parse(entryOf(canMessage("1") + message(9, 4, "2") + canMessage("3")));
    QCOMPARE(m_messages.size(), 1);
    QCOMPARE(m_warnings.str(),
             std::string("TunnelingMsgCreator::newTunnelingMessage() unknown type: 9\n"
                         "TunnelingMsgCreator::newTunnelingMessage() warning! 0 1 0\n"
                         "Err bytesConsumed: 44\n"));
}

void tst_TunnelingMsg::aNegativeChannelEndsTheBlock()
{
    parse(entryOf(message(-1, 4, "1")));
    QVERIFY(m_messages.isEmpty());
    QVERIFY(m_warnings.str().find("unknown type: -1\n") != std::string::npos);
}

void tst_TunnelingMsg::tooMuchDataEndsTheBlock_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("count");
    QTest::newRow("CAN, 64 bytes") << canMessage(QByteArray(64, 'x')) << 1;
    QTest::newRow("CAN, 65 bytes") << canMessage(QByteArray(65, 'x')) << 0;
    QTest::newRow("LIN, 8 bytes") << linMessage(QByteArray(8, 'x')) << 1;
    QTest::newRow("LIN, 9 bytes") << linMessage(QByteArray(9, 'x')) << 0;
}

void tst_TunnelingMsg::tooMuchDataEndsTheBlock()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, count);
    parse(entryOf(bytes));
    QCOMPARE(m_messages.size(), count);
    QCOMPARE(m_warnings.str().find("warning! 0 0 1\n") != std::string::npos, count == 0);
}

void tst_TunnelingMsg::aMessageBeyondTheEntryEndsTheBlock()
{
    parse(entryOf(canMessage(QByteArray(64, 'x')).left(40), 0));
    QVERIFY(m_messages.isEmpty());
    QVERIFY(m_warnings.str().find("warning! 0 0 1\n") != std::string::npos);
}

void tst_TunnelingMsg::aBlockWithoutRoomHasNoMessages()
{
    for (int size = 0; size < 12; ++size) {
        parse(entryOf({}, size));
        QVERIFY(m_messages.isEmpty());
    }
    for (int size = 8; size < 28; ++size) {
        parse(QByteArray(size, '\0'));
        QVERIFY(m_messages.isEmpty());
    }
    QCOMPARE(m_warnings.str(), std::string());
}

void tst_TunnelingMsg::withoutAStreamNothingIsWritten()
{
    m_messages = TunnelingMsgCreator::newTunnelingMessage(entryOf(message(9, 4, "1")), nullptr);
    QVERIFY(m_messages.isEmpty());
}

void tst_TunnelingMsg::damageAtAnyByteIsSurvived()
{
    const QByteArray good = entryOf(canMessage("0123") + linMessage("abc"));
    for (int at = 0; at < good.size(); ++at) {
        for (const int value : {0x00, 0x06, 0x08, 0x40, 0x80, 0xFF}) {
            QByteArray bad = good;
            bad[at] = char(value);
            parse(bad);
            int bytes = 0;
            for (const TunnelingMsg *found : qAsConst(m_messages))
                bytes += found->bytes().size();
            QVERIFY(bytes <= bad.size());
            cleanup();
        }
    }
}

QTEST_GUILESS_MAIN(tst_TunnelingMsg)
#include "tst_tunnelingmsg.moc"
