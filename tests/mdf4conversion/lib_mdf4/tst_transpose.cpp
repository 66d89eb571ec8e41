#include "MDF4Conversion/lib_mdf4/mdf4/transpose.h"

#include <QtTest>

#include <random>
#include <vector>

using Bytes = std::vector<unsigned char>;

class tst_Transpose : public QObject
{
    Q_OBJECT

private slots:
    void columnsOfASmallBlock();
    void bytesBehindTheLastRecordStay();
    void blockShorterThanOneRecordStays();
    void recordSizeZeroChangesNothing();
    void emptyBlockIsLeftAlone();
    void matchesTheDefinitionForEveryRecordSize();
    void nothingBehindTheBlockIsTouched();
};

namespace {

// As the standard defines it: byte i of the part of whole records goes to (i mod c) * rows + i / c.
Bytes byDefinition(const Bytes &in, std::size_t columns)
{
    Bytes out = in;
    const std::size_t rows = in.size() / columns;
    for (std::size_t i = 0; i < rows * columns; ++i)
        out[i % columns * rows + i / columns] = in[i];
    return out;
}

Bytes transposed(const Bytes &in, std::size_t columns)
{
    Bytes out(in.size());
    mdf4::transpose(in.data(), out.data(), in.size(), columns);
    return out;
}

} // namespace

void tst_Transpose::columnsOfASmallBlock()
{
    QCOMPARE(transposed({1, 2, 3, 4, 5, 6}, 3), (Bytes{1, 4, 2, 5, 3, 6}));
}

void tst_Transpose::bytesBehindTheLastRecordStay()
{
    QCOMPARE(transposed({1, 2, 3, 4, 5, 6, 7, 8}, 3), (Bytes{1, 4, 2, 5, 3, 6, 7, 8}));
}

void tst_Transpose::blockShorterThanOneRecordStays()
{
    QCOMPARE(transposed({1, 2, 3}, 4), (Bytes{1, 2, 3}));
}

void tst_Transpose::recordSizeZeroChangesNothing()
{
    QCOMPARE(transposed({1, 2, 3}, 0), (Bytes{1, 2, 3}));
}

void tst_Transpose::emptyBlockIsLeftAlone()
{
    QCOMPARE(transposed({}, 3), Bytes());
}

void tst_Transpose::matchesTheDefinitionForEveryRecordSize()
{
    std::mt19937 random(1);
    Bytes all(20000);
    for (unsigned char &byte : all)
        byte = static_cast<unsigned char>(random());
    for (std::size_t columns = 1; columns <= 70; ++columns) {
        for (std::size_t rows : {1, 7, 8, 9, 15, 16, 17, 127, 128, 129, 250}) {
            for (std::size_t tail : {std::size_t{0}, columns / 2, columns - 1}) {
                const Bytes in(all.begin(),
                               all.begin() + static_cast<std::ptrdiff_t>(rows * columns + tail));
                QVERIFY2(transposed(in, columns) == byDefinition(in, columns),
                         qPrintable(QStringLiteral("%1 rows of %2 bytes and %3")
                                        .arg(rows)
                                        .arg(columns)
                                        .arg(tail)));
            }
        }
    }
}

void tst_Transpose::nothingBehindTheBlockIsTouched()
{
    const Bytes in(30 * 13 + 5, 1);
    Bytes out(in.size() + 16, 7);
    mdf4::transpose(in.data(), out.data(), in.size(), 13);
    QCOMPARE(Bytes(out.end() - 16, out.end()), Bytes(16, 7));
}

QTEST_GUILESS_MAIN(tst_Transpose)
#include "tst_transpose.moc"
