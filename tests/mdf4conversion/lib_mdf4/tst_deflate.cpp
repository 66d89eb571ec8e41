#include "MDF4Conversion/lib_mdf4/mdf4/compressedblock.h"
#include "MDF4Conversion/lib_mdf4/mdf4/deflate.h"

#include <QtTest>

#include <random>
#include <vector>

using Bytes = std::vector<unsigned char>;

class tst_Deflate : public QObject
{
    Q_OBJECT

private slots:
    void roundTrip_data();
    void roundTrip();
    void streamIsInZlibFormat();
    void sameDataGivesTheSameStreamAgain();
    void inflatesAStreamMadeByHand();
    void inflateOfADamagedStreamFails();
    void inflateOfACutStreamFails();
    void inflateToAnotherLengthFails();
    void blockIsTransposedBeforeItIsDeflated();
    void blockLeavesItsInputAlone();
};

namespace {

// "abc" as a stored deflate block in a zlib stream (RFC 1950, RFC 1951).
const Bytes storedAbc{0x78, 0x01, 0x01, 0x03, 0x00, 0xFC, 0xFF,
                      'a',  'b',  'c',  0x02, 0x4D, 0x01, 0x27};

Bytes noise(std::size_t size)
{
    std::mt19937 random(1);
    Bytes bytes(size);
    for (unsigned char &byte : bytes)
        byte = static_cast<unsigned char>(random());
    return bytes;
}

Bytes inflated(const Bytes &stream, std::size_t size)
{
    Bytes out(size);
    return mdf4::inflateZlib(stream.data(), stream.size(), out.data(), size) ? out : Bytes();
}

} // namespace

void tst_Deflate::roundTrip_data()
{
    QTest::addColumn<QByteArray>("data");
    const Bytes incompressible = noise(300000);
    QTest::newRow("one byte") << QByteArray("x");
    QTest::newRow("equal bytes") << QByteArray(300000, 'x');
    QTest::newRow("incompressible")
        << QByteArray(reinterpret_cast<const char *>(incompressible.data()), 300000);
}

void tst_Deflate::roundTrip()
{
    QFETCH(const QByteArray, data);
    const Bytes in(data.begin(), data.end());
    mdf4::Deflater deflater;
    const Bytes stream = deflater.deflateZlib(in.data(), in.size());
    QVERIFY(!stream.empty());
    QVERIFY(inflated(stream, in.size()) == in);
}

void tst_Deflate::streamIsInZlibFormat()
{
    mdf4::Deflater deflater;
    const Bytes stream = deflater.deflateZlib(storedAbc.data(), storedAbc.size());
    QCOMPARE(stream[0] & 0x0F, 8);                   // deflate
    QCOMPARE(stream[0] >> 4, 7);                     // window of 32 KiB
    QCOMPARE((stream[0] * 256 + stream[1]) % 31, 0); // check of the header
}

void tst_Deflate::sameDataGivesTheSameStreamAgain()
{
    const Bytes one = noise(1000);
    const Bytes other(5000, 'x');
    mdf4::Deflater deflater;
    const Bytes first = deflater.deflateZlib(one.data(), one.size());
    deflater.deflateZlib(other.data(), other.size());
    QVERIFY(deflater.deflateZlib(one.data(), one.size()) == first);
}

void tst_Deflate::inflatesAStreamMadeByHand()
{
    QCOMPARE(inflated(storedAbc, 3), (Bytes{'a', 'b', 'c'}));
}

void tst_Deflate::inflateOfADamagedStreamFails()
{
    Bytes damaged = storedAbc;
    damaged[8] = 'B'; // the checksum no longer matches
    QCOMPARE(inflated(damaged, 3), Bytes());
}

void tst_Deflate::inflateOfACutStreamFails()
{
    for (std::size_t size = 0; size < storedAbc.size(); ++size)
        QCOMPARE(
            inflated(
                Bytes(storedAbc.begin(), storedAbc.begin() + static_cast<std::ptrdiff_t>(size)), 3),
            Bytes());
}

void tst_Deflate::inflateToAnotherLengthFails()
{
    QCOMPARE(inflated(storedAbc, 2), Bytes());
    QCOMPARE(inflated(storedAbc, 4), Bytes());
}

void tst_Deflate::blockIsTransposedBeforeItIsDeflated()
{
    const Bytes records{1, 2, 3, 4, 5, 6, 7};
    mdf4::Deflater deflater;
    const CompressedBlock block = compressBlock(deflater, records.data(), records.size(), 3);
    QVERIFY(block.ok());
    QCOMPARE(block.originalSize, std::uint64_t{7});
    QCOMPARE(inflated(block.data, 7), (Bytes{1, 4, 2, 5, 3, 6, 7}));
}

void tst_Deflate::blockLeavesItsInputAlone()
{
    const Bytes before = noise(1000);
    const Bytes records = before;
    mdf4::Deflater deflater;
    compressBlock(deflater, records.data(), records.size(), 12);
    QVERIFY(records == before);
}

QTEST_GUILESS_MAIN(tst_Deflate)
#include "tst_deflate.moc"
