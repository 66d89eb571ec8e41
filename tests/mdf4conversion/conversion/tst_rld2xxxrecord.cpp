#include "MDF4Conversion/rld2xxxrecord.h"

#include <QByteArray>
#include <QTest>

using Counter = Rld2xxxRecord::Counter;

namespace {

// Every field with bytes of its own, as rld2xxx writes them.
const QByteArray golden = QByteArray::fromHex("03000000"         // version
                                              "aabbccdd"         // reserved
                                              "0102030405060708" // file size
                                              "1100000000000000" // RLD in pipeline
                                              "2200000000000000" // output elements in pipeline
                                              "3300000000000080" // bytes read
                                              "4400000000000000" // filtered chunks
                                              "5500000000000000" // converted elements
                                              "6600000000000000" // written elements
                                              "01"               // finished
                                              "ee"               // reserved
                                              "04");             // state

QByteArray bytesOf(const Rld2xxxRecord &record)
{
    QByteArray bytes(int(Rld2xxxRecord::size), '\0');
    record.toMemory(bytes.data());
    return bytes;
}

} // namespace

class tst_Rld2xxxRecord : public QObject
{
    Q_OBJECT

private slots:
    void itHas67Bytes();
    void fieldsAreReadAtTheirPlaces();
    void fieldsAreWrittenAtTheirPlaces();
    void clearingLeavesTheBytesBehindTheVersion();
    void finishingSetsNothingButItsTwoBytes();
};

void tst_Rld2xxxRecord::itHas67Bytes()
{
    QCOMPARE(Rld2xxxRecord::size, std::size_t(67));
    QCOMPARE(golden.size(), 67);
}

void tst_Rld2xxxRecord::fieldsAreReadAtTheirPlaces()
{
    const Rld2xxxRecord record = Rld2xxxRecord::fromMemory(golden.constData());
    QCOMPARE(record.version(), quint32(3));
    QCOMPARE(record.counter(Counter::FileSize), quint64(0x0807060504030201));
    QCOMPARE(record.counter(Counter::RldInPipeline), quint64(0x11));
    QCOMPARE(record.counter(Counter::OutputElementsInPipeline), quint64(0x22));
    QCOMPARE(record.counter(Counter::BytesRead), quint64(0x8000000000000033));
    QCOMPARE(record.counter(Counter::FilteredChunks), quint64(0x44));
    QCOMPARE(record.counter(Counter::ConvertedElements), quint64(0x55));
    QCOMPARE(record.counter(Counter::WrittenElements), quint64(0x66));
    QVERIFY(record.isFinished());
    QCOMPARE(int(record.state()), 4);
}

void tst_Rld2xxxRecord::fieldsAreWrittenAtTheirPlaces()
{
    Rld2xxxRecord record;
    record.setVersion(0x04030201);
    record.setCounter(Counter::FileSize, 0x1122334455667788);
    record.setCounter(Counter::WrittenElements, 7);
    record.finish(5);
    QCOMPARE(bytesOf(record).toHex(), QByteArray("0102030400000000"
                                                 "8877665544332211"
                                                 "0000000000000000"
                                                 "0000000000000000"
                                                 "0000000000000000"
                                                 "0000000000000000"
                                                 "0000000000000000"
                                                 "0700000000000000"
                                                 "010005"));
}

void tst_Rld2xxxRecord::clearingLeavesTheBytesBehindTheVersion()
{
    Rld2xxxRecord record = Rld2xxxRecord::fromMemory(golden.constData());
    record.clear();
    QCOMPARE(bytesOf(record).toHex(), QByteArray("00000000aabbccdd") + QByteArray(59 * 2, '0'));
}

void tst_Rld2xxxRecord::finishingSetsNothingButItsTwoBytes()
{
    QByteArray expected = golden;
    expected[64] = 1;
    expected[66] = 5;
    Rld2xxxRecord record = Rld2xxxRecord::fromMemory(golden.constData());
    record.finish(5);
    QCOMPARE(bytesOf(record).toHex(), expected.toHex());
}

QTEST_GUILESS_MAIN(tst_Rld2xxxRecord)
#include "tst_rld2xxxrecord.moc"
