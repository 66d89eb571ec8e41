#include "link/data_handler_class.h"
#include "link/protocol/messagetypes.h"
#include "tests/support/connectedworker.h"
#include "tests/support/messagecount.h"

#include <QTest>

class tst_Data_Handler : public QObject
{
    Q_OBJECT

private slots:
    void entriesAreHandedOver();
    void entriesBeforeTheEnableFlagAreDroppedNotQueued();
    void anEntrySplitAcrossReadsIsAssembled();
    void aNewConnectionStartsWithTheFlagCleared();
    void theLossOfTheSocketIsTold();
    void aRefusedConnectionHasItsCause();
    void aFloodIsHandedOverBeforeTheCycleEnds();
    void itsSocketUsesNoProxy();
    void aSecondWithoutReadsIsToldToo();
    void itsThreadSaysWhatHappens_data();
    void itsThreadSaysWhatHappens();
};

namespace {

const QByteArray first = QByteArray::fromHex("aa550400fe000001");
const QByteArray second = QByteArray::fromHex("aa550400fe000002");

// The lists of entries that the worker hands over.
struct Connected : ConnectedWorker<Data_Handler_Class, protocol::dataPort>
{
    void copyNow()
    {
        onThread([this] { worker.copy_data_to_gui(); });
    }
    [[nodiscard]] QList<QByteArray> taken() const
    {
        QList<QByteArray> entries;
        for (const QList<QByteArray> &list : lists.all())
            entries += list;
        return entries;
    }

    Gathered<QList<QList<QByteArray>>> lists{
        worker, &Data_Handler_Class::signal_data_copy_ONLY_DIRECT_CONNECTION,
        [](QList<QList<QByteArray>> &all, const QList<QByteArray *> &list) {
            all.append(QList<QByteArray>());
            for (const QByteArray *entry : list)
                all.last().append(*entry);
            qDeleteAll(list);
        }};
};

} // namespace

void tst_Data_Handler::entriesAreHandedOver()
{
    Connected link;
    QVERIFY(link.isConnected);
    link.worker.setDataEnabled(true);
    link.peer.sendDataBytes("noise" + first + second);
    QTRY_COMPARE(link.taken(), (QList<QByteArray>{first, second}));
}

// When the end of the connection is told, all bytes before it have been read.
void tst_Data_Handler::entriesBeforeTheEnableFlagAreDroppedNotQueued()
{
    Connected link;
    const Told lost(link.worker, &Data_Handler_Class::signal_disconnected);
    link.peer.sendDataBytes(first + second);
    link.peer.closeDataSocket();
    QTRY_COMPARE(lost.size(), 1);
    link.worker.setDataEnabled(true);
    link.copyNow();
    QVERIFY(link.taken().isEmpty());
}

void tst_Data_Handler::anEntrySplitAcrossReadsIsAssembled()
{
    Connected link;
    link.worker.setDataEnabled(true);
    for (const char byte : first + second)
        link.peer.sendDataBytes(QByteArray(1, byte));
    QTRY_COMPARE(link.taken(), (QList<QByteArray>{first, second}));
}

void tst_Data_Handler::aNewConnectionStartsWithTheFlagCleared()
{
    Connected link;
    link.worker.setDataEnabled(true);
    PeerLogger other;
    QVERIFY(link.connectTo(other.address()));
    const Told lost(link.worker, &Data_Handler_Class::signal_disconnected);
    other.sendDataBytes(first);
    other.closeDataSocket();
    QTRY_COMPARE(lost.size(), 1);
    link.copyNow();
    QVERIFY(link.taken().isEmpty());
}

void tst_Data_Handler::theLossOfTheSocketIsTold()
{
    Connected link;
    const Told lost(link.worker, &Data_Handler_Class::signal_disconnected);
    const Told errors(link.worker, &Data_Handler_Class::signal_socket_error);
    link.peer.sendDataBytes(first);
    link.peer.closeDataSocket();
    QTRY_COMPARE(lost.size(), 1);
    QTRY_COMPARE(errors.size(), 1);
    QVERIFY(!link.worker.isConnected());
}

void tst_Data_Handler::aRefusedConnectionHasItsCause()
{
    Connected link;
    QVERIFY(!link.connectTo(QHostAddress(QStringLiteral("127.255.255.250"))));
    QCOMPARE(link.lastError(), QStringLiteral("Connection refused"));
}

// Far more arrives in one go than a cycle may gather.
void tst_Data_Handler::aFloodIsHandedOverBeforeTheCycleEnds()
{
    constexpr int count = 1'000'000;
    constexpr int mostInAList = 200'000;
    Connected link;
    link.worker.setDataEnabled(true);
    link.peer.sendDataBytes(first.repeated(count));
    QTRY_COMPARE_WITH_TIMEOUT(link.taken().size(), count, 60'000);
    for (const QList<QByteArray> &list : link.lists.all())
        QVERIFY(list.size() < mostInAList);
}

void tst_Data_Handler::itsSocketUsesNoProxy()
{
    Connected link;
    QVERIFY(!link.usesAProxy());
}

void tst_Data_Handler::aSecondWithoutReadsIsToldToo()
{
    const MessageCount lines("TCP-Read requests:0");
    const Connected link;
    QVERIFY(lines.value() > 0);
}

void tst_Data_Handler::itsThreadSaysWhatHappens_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("runs") << QByteArray("Data_Handler_Class executing event-looop: thread id - ");
    QTest::newRow("fails") << QByteArray("Warning TCP-Data-Socket-Error Connection refused");
    QTest::newRow("ends") << QByteArray("Data_Handler_Class leaved event-looop: thread id - ");
}

void tst_Data_Handler::itsThreadSaysWhatHappens()
{
    QFETCH(QByteArray, line);
    const MessageCount lines(line.constData());
    {
        Connected link;
        QVERIFY(!link.connectTo(QHostAddress(QStringLiteral("127.255.255.250"))));
    }
    QCOMPARE(lines.value(), 1);
}

QTEST_GUILESS_MAIN(tst_Data_Handler)
#include "tst_data_handler_class.moc"
