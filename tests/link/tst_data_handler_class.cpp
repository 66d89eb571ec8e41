#include "link/data_handler_class.h"
#include "link/protocol/messagetypes.h"
#include "tests/support/messagecount.h"
#include "tests/support/peerlogger.h"

#include <QSignalSpy>
#include <QTest>

#include <atomic>

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
    void itsThreadSaysWhatHappens_data();
    void itsThreadSaysWhatHappens();
};

namespace {

const QByteArray first = QByteArray::fromHex("aa550400fe000001");
const QByteArray second = QByteArray::fromHex("aa550400fe000002");

// A worker on its thread, connected to a peer; what it hands over is gathered on that thread.
struct Connected
{
    Connected()
    {
        worker.start();
        QObject::connect(
            &worker, &Data_Handler_Class::signal_data_copy_ONLY_DIRECT_CONNECTION, &worker,
            [this](const QList<QByteArray *> &list) {
                const QMutexLocker lock(&mutex);
                for (QByteArray *entry : list) {
                    entries.append(*entry);
                    delete entry;
                }
            },
            Qt::DirectConnection);
        isConnected = connectTo(peer.address());
    }

    bool connectTo(const QHostAddress &address)
    {
        bool result = false;
        QMetaObject::invokeMethod(
            &worker, [&] { result = worker.socket_connect(address, protocol::dataPort); },
            Qt::BlockingQueuedConnection);
        return result;
    }

    void copyNow()
    {
        QMetaObject::invokeMethod(
            &worker, [this] { worker.copy_data_to_gui(); }, Qt::BlockingQueuedConnection);
    }

    QList<QByteArray> taken()
    {
        const QMutexLocker lock(&mutex);
        return entries;
    }

    PeerLogger peer;
    QMutex mutex;
    QList<QByteArray> entries;
    Data_Handler_Class worker; // ends before what it fills
    bool isConnected = false;
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
    QSignalSpy lost(&link.worker, &Data_Handler_Class::signal_disconnected);
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
    QSignalSpy lost(&link.worker, &Data_Handler_Class::signal_disconnected);
    other.sendDataBytes(first);
    other.closeDataSocket();
    QTRY_COMPARE(lost.size(), 1);
    link.copyNow();
    QVERIFY(link.taken().isEmpty());
}

void tst_Data_Handler::theLossOfTheSocketIsTold()
{
    Connected link;
    QSignalSpy lost(&link.worker, &Data_Handler_Class::signal_disconnected);
    QSignalSpy errors(&link.worker, &Data_Handler_Class::signal_socket_error);
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
    QString cause;
    QMetaObject::invokeMethod(
        &link.worker, [&] { cause = link.worker.get_last_error(); }, Qt::BlockingQueuedConnection);
    QCOMPARE(cause, QStringLiteral("Connection refused"));
}

// Far more arrives in one go than a cycle may gather.
void tst_Data_Handler::aFloodIsHandedOverBeforeTheCycleEnds()
{
    constexpr int count = 1'000'000;
    constexpr int mostInAList = 200'000;
    std::atomic<int> entries{0};
    std::atomic<int> largest{0};
    Data_Handler_Class worker;
    worker.start();
    QObject::connect(
        &worker, &Data_Handler_Class::signal_data_copy_ONLY_DIRECT_CONNECTION, &worker,
        [&](const QList<QByteArray *> &list) {
            largest = qMax(int(largest), list.size());
            entries += list.size();
            qDeleteAll(list);
        },
        Qt::DirectConnection);
    PeerLogger peer;
    QMetaObject::invokeMethod(
        &worker, [&] { (void)worker.socket_connect(peer.address(), protocol::dataPort); },
        Qt::BlockingQueuedConnection);
    worker.setDataEnabled(true);
    peer.sendDataBytes(first.repeated(count));
    QTRY_COMPARE_WITH_TIMEOUT(int(entries), count, 60'000);
    QVERIFY(largest < mostInAList);
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
