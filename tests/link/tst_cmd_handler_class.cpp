#include "link/cmd_handler_class.h"
#include "link/protocol/messagetypes.h"
#include "link/protocol/reply.h"
#include "tests/support/connectedworker.h"
#include "tests/support/messagecount.h"

#include <QElapsedTimer>
#include <QTcpServer>
#include <QTest>

#include <atomic>
#include <chrono>
#include <future>

using protocol::Message;

class tst_CMD_Handler : public QObject
{
    Q_OBJECT

private slots:
    void aCommandWithoutConnectionTouchesNoSocket();
    void aCommandGoesOutInAnEnvelopeAndItsReplyComesBack();
    void sequenceNumbersStartBehind120();
    void sequenceNumbersWrapFrom65535To1();
    void aStaleReplyIsDroppedAndTheTimeOutEndsTheWait();
    void aReplyMayComeInPieces();
    void anEmptyReplyIsNone();
    void oneEnvelopeMayHoldAReplyAndAPushedRecord();
    void anEchoEndsTheWaitAndIsPassedOn();
    void anAcknowledgementEndsTheWaitAndIsNotPassedOn();
    void aLateEchoDoesNotAnswerAnOpenCommandButIsPassedOn();
    void aWriteThatTimesOutIsTold();
    void garbageDoesNotDisturbACommand();
    void anImpossibleEnvelopeClosesTheConnectionAndTheNextOneWorks();
    void theLossOfTheConnectionEndsTheWait();
    void aRefusedConnectionHasItsCause();
    void itsSocketUsesNoProxy();
    void typesWithoutMeaningAreSkipped();
    void aKeepAliveIsAskedForWhileConnected();
    void keepAlivesDontGatherBehindALongWait();
    void itsThreadSaysWhenItRunsConnectsAndEnds_data();
    void itsThreadSaysWhenItRunsConnectsAndEnds();
    void aMessageThatCannotGoOutLeavesNoTimerBehind();
    void theLossIsToldBeforeTheWaitEnds();
    void anEchoIsPassedOnBeforeTheWaitEnds();
    void anImpossibleEnvelopeIsToldOnce();
    void unsentBytesDontHoldAClosedConnection();
    void manyRecordsDontFloodTheLog();
};

namespace {

using Connected = ConnectedWorker<CMD_Handler_Class, protocol::commandPort>;

// Takes over the records that a worker passes on.
class RecordSink : public Gathered<QVector<Message>>
{
public:
    explicit RecordSink(CMD_Handler_Class &worker)
        : Gathered(worker, &CMD_Handler_Class::signal_streaming_prot_received, take)
    {}

private:
    static void take(QVector<Message> &records, int type, QByteArray *data)
    {
        const std::unique_ptr<QByteArray> owned(data);
        records.append({quint8(type), 0, *owned});
    }
};

// Holds up a signal of the worker for a moment: a caller who doesn't wait for it returns meanwhile.
class ComesFirst
{
public:
    template <class... Arguments>
    ComesFirst(Connected &link, void (CMD_Handler_Class::*signal)(Arguments...))
        : m_link(link)
    {
        m_connection = QObject::connect(
            &link.worker, signal, &link.worker,
            [this](Arguments...) {
                constexpr std::chrono::milliseconds patience(100);
                const auto outcome = m_returned.get_future().wait_for(patience);
                m_hasReturnedFirst = outcome == std::future_status::ready;
                m_came = true;
            },
            Qt::DirectConnection);
    }
    ~ComesFirst() { QObject::disconnect(m_connection); }
    ComesFirst(const ComesFirst &) = delete;
    ComesFirst &operator=(const ComesFirst &) = delete;

    // To be asked once, on the caller's thread, when it is back.
    [[nodiscard]] bool cameBeforeTheCallerReturned()
    {
        m_returned.set_value();
        m_link.onThread([] {});
        return m_came && !m_hasReturnedFirst;
    }

private:
    Connected &m_link;
    QMetaObject::Connection m_connection;
    std::promise<void> m_returned;
    std::atomic<bool> m_came{false};
    std::atomic<bool> m_hasReturnedFirst{false};
};

QByteArray okReply(const Message &message)
{
    return textReply(message, "OK\r\n");
}

// One envelope of many records without content.
QByteArray emptyRecords(int count)
{
    return protocol::envelopeBytes(QVector<Message>(count, Message{protocol::Gps, 0, {}}));
}

} // namespace

void tst_CMD_Handler::aCommandWithoutConnectionTouchesNoSocket()
{
    CMD_Handler_Class worker; // not even started
    const QByteArray reply = worker.sendCommand("sys_get_software_version()\r\n", 1000);
    QCOMPARE(reply, QByteArray("ERROR=-1001"));
    QCOMPARE(protocol::errorText(reply), QStringLiteral("Logger not connected"));
}

void tst_CMD_Handler::aCommandGoesOutInAnEnvelopeAndItsReplyComesBack()
{
    Connected link(okReply);
    QVERIFY(link.isConnected);
    QCOMPARE(link.worker.sendCommand("get_rtc_status()\r\n", 1000), QByteArray("OK\r\n"));
    QCOMPARE(link.peer.received(), (QVector<Message>{{1, 121, "get_rtc_status()\r\n"}}));
}

void tst_CMD_Handler::sequenceNumbersStartBehind120()
{
    Connected link([](const Message &message) {
        return message.type == 1 ? okReply(message) : echo(message);
    });
    (void)link.worker.sendCommand("a", 1000);
    (void)link.worker.sendStreamingMessage(4, "b", 1000);
    (void)link.worker.sendCommand("c", 1000);
    QCOMPARE(link.peer.received(), (QVector<Message>{{1, 121, "a"}, {4, 121, "b"}, {1, 122, "c"}}));
}

void tst_CMD_Handler::sequenceNumbersWrapFrom65535To1()
{
    protocol::SequenceNumber sequence(65534);
    QCOMPARE(sequence.next(), quint16(65535));
    QCOMPARE(sequence.next(), quint16(1));
    QCOMPARE(sequence.next(), quint16(2));
}

void tst_CMD_Handler::aStaleReplyIsDroppedAndTheTimeOutEndsTheWait()
{
    Connected link([](const Message &message) {
        return protocol::envelopeBytes({1, quint16(message.sequence - 1), "OK"});
    });
    QCOMPARE(link.worker.sendCommand("a", 50), QByteArray());
    QVERIFY(link.worker.isConnected());
}

void tst_CMD_Handler::aReplyMayComeInPieces()
{
    Connected link;
    const OnceAsked answering(link.peer, [&link] {
        const QByteArray bytes = okReply(link.peer.received().first());
        for (const char byte : bytes)
            link.peer.sendCommandBytes(QByteArray(1, byte));
    });
    QCOMPARE(link.worker.sendCommand("a", 5000), QByteArray("OK\r\n"));
}

void tst_CMD_Handler::anEmptyReplyIsNone()
{
    Connected link([](const Message &message) { return textReply(message, {}); });
    QCOMPARE(link.worker.sendCommand("a", 50), QByteArray());
}

void tst_CMD_Handler::oneEnvelopeMayHoldAReplyAndAPushedRecord()
{
    Connected link([](const Message &message) {
        return protocol::envelopeBytes({{1, message.sequence, "OK"}, {20, 0, "pushed"}});
    });
    RecordSink sink(link.worker);
    QCOMPARE(link.worker.sendCommand("a", 1000), QByteArray("OK"));
    QTRY_COMPARE(sink.all(), (QVector<Message>{{20, 0, "pushed"}}));
}

void tst_CMD_Handler::anEchoEndsTheWaitAndIsPassedOn()
{
    Connected link(echo);
    RecordSink sink(link.worker);
    QVERIFY(link.worker.sendStreamingMessage(4, "record", 1000));
    QTRY_COMPARE(sink.all(), (QVector<Message>{{4, 0, "record"}}));
}

void tst_CMD_Handler::anAcknowledgementEndsTheWaitAndIsNotPassedOn()
{
    Connected link([](const Message &message) {
        return protocol::envelopeBytes({{100, message.sequence, {}}, {40, 0, "next"}});
    });
    RecordSink sink(link.worker);
    QVERIFY(link.worker.sendStreamingMessage(100, "image", 1000));
    QTRY_COMPARE(sink.all(), (QVector<Message>{{40, 0, "next"}}));
}

void tst_CMD_Handler::aLateEchoDoesNotAnswerAnOpenCommandButIsPassedOn()
{
    Connected link([](const Message &message) {
        return protocol::envelopeBytes({4, message.sequence, "late"});
    });
    RecordSink sink(link.worker);
    QCOMPARE(link.worker.sendCommand("a", 50), QByteArray());
    QTRY_COMPARE(sink.all(), (QVector<Message>{{4, 0, "late"}}));
}

void tst_CMD_Handler::aWriteThatTimesOutIsTold()
{
    Connected link;
    const Told told(link.worker, &CMD_Handler_Class::signal_cmd_timeout_error);
    QVERIFY(!link.worker.sendStreamingMessage(23, "record", 50));
    QCOMPARE(told.size(), 1);
    QCOMPARE(told.all().first().first().toInt(), 23);
    QVERIFY(link.worker.isConnected());
}

void tst_CMD_Handler::garbageDoesNotDisturbACommand()
{
    Connected link([](const Message &message) {
        return QByteArray::fromHex("00ff55") + protocol::envelopeBytes({1, 0, "noise"})
               + protocol::envelopeBytes({77, message.sequence, "?"}) + okReply(message);
    });
    RecordSink sink(link.worker);
    QCOMPARE(link.worker.sendCommand("a", 1000), QByteArray("OK\r\n"));
}

void tst_CMD_Handler::anImpossibleEnvelopeClosesTheConnectionAndTheNextOneWorks()
{
    Connected link(okReply);
    const Told lost(link.worker, &CMD_Handler_Class::signal_disconnected);
    (void)link.worker.sendCommand("a", 1000);
    link.peer.sendCommandBytes(QByteArray::fromHex("aa00000000"));
    QTRY_COMPARE(lost.size(), 1);
    QVERIFY(!link.worker.isConnected());
    QVERIFY(link.connectTo(link.peer.address()));
    QCOMPARE(link.worker.sendCommand("b", 1000), QByteArray("OK\r\n"));
}

void tst_CMD_Handler::theLossOfTheConnectionEndsTheWait()
{
    QByteArray nothing;
    Connected link;
    const OnceAsked closing(link.peer, [&link] { link.peer.closeCommandSocket(); });
    const Told errors(link.worker, &CMD_Handler_Class::signal_socket_error);
    QElapsedTimer clock;
    clock.start();
    QCOMPARE(link.worker.sendCommand("a", 60'000), nothing);
    QVERIFY(clock.elapsed() < 30'000);
    QTRY_COMPARE(errors.size(), 1);
}

void tst_CMD_Handler::aRefusedConnectionHasItsCause()
{
    Connected link;
    QVERIFY(!link.connectTo(QHostAddress(QStringLiteral("127.255.255.250"))));
    QCOMPARE(link.lastError(), QStringLiteral("Connection refused"));
}

void tst_CMD_Handler::itsSocketUsesNoProxy()
{
    Connected link;
    QVERIFY(!link.usesAProxy());
}

void tst_CMD_Handler::typesWithoutMeaningAreSkipped()
{
    Connected link([](const Message &message) {
        return protocol::envelopeBytes({{99, message.sequence, "?"}, {5, 0, "agm"}});
    });
    RecordSink sink(link.worker);
    QVERIFY(!link.worker.sendStreamingMessage(5, "record", 50));
    QTRY_COMPARE(sink.all(), (QVector<Message>{{5, 0, "agm"}}));
}

// The signal itself comes after five seconds; the request is what the handler makes of it.
void tst_CMD_Handler::aKeepAliveIsAskedForWhileConnected()
{
    Connected link(okReply);
    const Told needed(link.worker, &CMD_Handler_Class::signal_keep_alive_needed);
    QTRY_COMPARE_WITH_TIMEOUT(needed.size(), 1, 8000);
}

// Queued, each would wait for a reply of its own.
void tst_CMD_Handler::keepAlivesDontGatherBehindALongWait()
{
    Connected link(okReply);
    const Told needed(link.worker, &CMD_Handler_Class::signal_keep_alive_needed);
    const auto expire = [&link] { link.worker.keep_alive_expired(); };
    link.onThread(expire);
    link.onThread(expire);
    QCOMPARE(needed.size(), 1);
    (void)link.worker.sendCommand("a", 1000);
    link.onThread(expire);
    QCOMPARE(needed.size(), 2);
}

void tst_CMD_Handler::itsThreadSaysWhenItRunsConnectsAndEnds_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("runs") << QByteArray("CMD_Handler_Class executing event-looop: thread id - ");
    QTest::newRow("connects") << QByteArray("CONNECT ");
    QTest::newRow("ends") << QByteArray("CMD_Handler_Class leaved event-looop: thread id - ");
}

void tst_CMD_Handler::itsThreadSaysWhenItRunsConnectsAndEnds()
{
    QFETCH(QByteArray, line);
    const MessageCount lines(line.constData());
    {
        const Connected link;
        QVERIFY(link.isConnected);
    }
    QCOMPARE(lines.value(), 1);
}

// A timer that went on would end the wait of a later command.
void tst_CMD_Handler::aMessageThatCannotGoOutLeavesNoTimerBehind()
{
    CMD_Handler_Class worker;
    worker.start();
    const MessageCount timeOuts("std_cmd_response_timeout_occured");
    QVERIFY(!worker.sendStreamingMessage(4, "record", 0));
    for (int turnsOfTheEventLoop = 0; turnsOfTheEventLoop < 5; ++turnsOfTheEventLoop)
        threadcall::run(&worker, [] {});
    QCOMPARE(timeOuts.value(), 0);
}

// What a caller sends behind a failed wait has to stand behind the news in the event queue.
void tst_CMD_Handler::theLossIsToldBeforeTheWaitEnds()
{
    Connected link;
    ComesFirst loss(link, &CMD_Handler_Class::signal_disconnected);
    const OnceAsked closing(link.peer, [&link] { link.peer.closeCommandSocket(); });
    (void)link.worker.sendCommand("a", 60'000);
    QVERIFY(loss.cameBeforeTheCallerReturned());
}

// The caller makes its next change from what the echo holds.
void tst_CMD_Handler::anEchoIsPassedOnBeforeTheWaitEnds()
{
    Connected link(echo);
    const RecordSink owner(link.worker);
    ComesFirst record(link, &CMD_Handler_Class::signal_streaming_prot_received);
    QVERIFY(link.worker.sendStreamingMessage(4, "record", 60'000));
    QVERIFY(record.cameBeforeTheCallerReturned());
}

void tst_CMD_Handler::anImpossibleEnvelopeIsToldOnce()
{
    Connected link(okReply);
    const Told lost(link.worker, &CMD_Handler_Class::signal_disconnected);
    const Told errors(link.worker, &CMD_Handler_Class::signal_socket_error);
    (void)link.worker.sendCommand("a", 1000);
    link.peer.sendCommandBytes(QByteArray::fromHex("aaffffffff"));
    QTRY_COMPARE(lost.size(), 1);
    QCOMPARE(errors.all(), (QList<QVariantList>{{QStringLiteral(
                               "The logger announced an envelope of an impossible length.")}}));
}

// The peer's system accepts the connection, but nobody reads from it.
void tst_CMD_Handler::unsentBytesDontHoldAClosedConnection()
{
    QTcpServer silent;
    QVERIFY(silent.listen(QHostAddress::LocalHost));
    CMD_Handler_Class worker;
    worker.start();
    bool isConnected = false;
    threadcall::run(&worker, [&] {
        isConnected = worker.socket_connect(silent.serverAddress(), silent.serverPort());
    });
    QVERIFY(isConnected);
    QVERIFY(!worker.sendStreamingMessage(100, QByteArray(32 << 20, 'x'), 50));
    threadcall::run(&worker, [&] { worker.socket_disconnect(); });
    QVERIFY(!worker.isConnected());
    QCOMPARE(worker.sendCommand("a", 50), QByteArray("ERROR=-1001"));
}

void tst_CMD_Handler::manyRecordsDontFloodTheLog()
{
    constexpr int sent = 20'000;
    const MessageCount lines("CMD_TYPE:");
    Connected link;
    const RecordSink sink(link.worker);
    const Told lost(link.worker, &CMD_Handler_Class::signal_disconnected);
    link.peer.sendCommandBytes(emptyRecords(sent));
    link.peer.closeCommandSocket();
    QTRY_COMPARE_WITH_TIMEOUT(lost.size(), 1, 60'000);
    QVERIFY(lines.value() > 0);
    QVERIFY(lines.value() < sent / 10);
}

QTEST_GUILESS_MAIN(tst_CMD_Handler)
#include "tst_cmd_handler_class.moc"
