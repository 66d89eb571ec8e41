#include "MDF4Conversion/lib_mdf4/mdf4/m4blocks.h"
#include "MDF4Conversion/lib_mdf4/mdf4/m4conversions.h"
#include "MDF4Conversion/lib_mdf4/mdf4/m4datablocks.h"
#include "tests/mdf4conversion/lib_mdf4/blockbytes.h"

#include <QtTest>

#include <functional>
#include <limits>

Q_DECLARE_METATYPE(std::function<std::unique_ptr<m4Block>()>)

class tst_M4Blocks : public QObject
{
    Q_OBJECT

private slots:
    void headerHistoryBlock();
    void dataGroupBlock();
    void channelGroupBlock();
    void channelBlock();
    void textBlockHoldsItsTerminatingNul();
    void emptyTextBlockHoldsANul();
    void textBlockEndsAtAnEmbeddedNul();
    void xmlBlock();
    void listHeaderBlock();
    void dataListBlockHoldsTheLinksItHas();
    void dataListKeepsTheSpaceOfItsWholeCapacity();
    void nextDataListTakesOverWithoutTheOldLinks();
    void compressedDataBlock();
    void plainDataBlock();
    void sizesOfTheOtherBlocks_data();
    void sizesOfTheOtherBlocks();
    void variablePartFollowsTheRecord();
    void linkIsPatchedInPlace();
    void linksGrowOnDemandWithZeros();
    void attachWithoutFlagsOnlyTakesAPlace();
    void attachAgainKeepsThePlace();
    void failedWriteKeepsThePositionAndReturnsZero();
    void rangeIsGivenWhenOneBoundIsNotZero();
    void boundsOfARangeAreSwappedWhereTheyAreReversed();
    void rangeThatIsNotOneIsLeftOut_data();
    void rangeThatIsNotOneIsLeftOut();
    void channelsAreChainedInOrder();
    void channelGroupsAreChainedInOrder();
    void timeChannel();
    void unitIsWrittenEvenWhenItIsEmpty();
};

void tst_M4Blocks::headerHistoryBlock()
{
    BlockFile f;
    M4FHBlock fh;
    fh.fh_time_ns = 0x0102030405060708;
    fh.fh_time_flags = TIME_FL_OFFSETS_VALID;
    fh.setLink(M4FHBlock::fh_md_comment, 0x98);
    QCOMPARE(fh.attach(f.file()), std::uint64_t{0x40});
    QCOMPARE(f.hex(), golden("23234648 00000000 3800000000000000 0200000000000000"
                             "0000000000000000 9800000000000000"
                             "0807060504030201 0000 0000 02 000000"));
}

void tst_M4Blocks::dataGroupBlock()
{
    BlockFile f;
    M4DGBlock dg;
    dg.setLink(M4DGBlock::dg_dg_next, 0x1000);
    dg.setLink(M4DGBlock::dg_cg_first, 0x2000);
    dg.setLink(M4DGBlock::dg_data, 0x123456789A);
    dg.attach(f.file());
    QCOMPARE(f.hex(), golden("23234447 00000000 4000000000000000 0400000000000000"
                             "0010000000000000 0020000000000000 9A78563412000000 0000000000000000"
                             "00 00000000000000"));
}

void tst_M4Blocks::channelGroupBlock()
{
    BlockFile f;
    M4CGBlock cg;
    cg.cg_record_id = 1;
    cg.cg_cycle_count = 0x0102030405060708;
    cg.cg_data_bytes = 12;
    cg.setLink(M4CGBlock::cg_cn_first, 0xA8);
    cg.attach(f.file());
    QCOMPARE(f.hex(),
             golden("23234347 00000000 6800000000000000 0600000000000000"
                    "0000000000000000 A800000000000000 0000000000000000"
                    "0000000000000000 0000000000000000 0000000000000000"
                    "0100000000000000 0807060504030201 0000 0000 00000000 0C000000 00000000"));
}

void tst_M4Blocks::channelBlock()
{
    BlockFile f;
    M4CNBlock cn;
    cn.cn_type = CN_T_VALUE;
    cn.cn_data_type = CN_D_SIGNED_LE;
    cn.cn_byte_offset = 0x0102;
    cn.cn_bit_count = 16;
    cn.setRange(-1, 2);
    cn.setLink(M4CNBlock::cn_cn_next, 0x11);
    cn.setLink(M4CNBlock::cn_tx_name, 0x12);
    cn.setLink(M4CNBlock::cn_cc_conversion, 0x13);
    cn.setLink(M4CNBlock::cn_md_unit, 0x14);
    cn.attach(f.file());
    QCOMPARE(f.hex(),
             golden("2323434E 00000000 A000000000000000 0800000000000000"
                    "1100000000000000 0000000000000000 1200000000000000 0000000000000000"
                    "1300000000000000 0000000000000000 1400000000000000 0000000000000000"
                    "00 00 02 00 02010000 10000000 08000000 00000000 00 00 0000"
                    "000000000000F0BF 0000000000000040"
                    "0000000000000000 0000000000000000 0000000000000000 0000000000000000"));
}

void tst_M4Blocks::textBlockHoldsItsTerminatingNul()
{
    BlockFile f;
    M4TXBlock tx("km/h");
    tx.attach(f.file());
    QCOMPARE(f.hex(), golden("23235458 00000000 1D00000000000000 0000000000000000 6B6D2F68 00"));
}

void tst_M4Blocks::emptyTextBlockHoldsANul()
{
    BlockFile f;
    M4TXBlock tx("");
    tx.attach(f.file());
    QCOMPARE(f.hex(), golden("23235458 00000000 1900000000000000 0000000000000000 00"));
}

void tst_M4Blocks::textBlockEndsAtAnEmbeddedNul()
{
    BlockFile f;
    M4TXBlock tx(std::string_view("a\0b", 3));
    tx.attach(f.file());
    QCOMPARE(f.hex(), golden("23235458 00000000 1A00000000000000 0000000000000000 61 00"));
}

void tst_M4Blocks::xmlBlock()
{
    BlockFile f;
    M4MDBlock md("<a/>");
    md.attach(f.file());
    QCOMPARE(f.hex(), golden("23234D44 00000000 1D00000000000000 0000000000000000 3C612F3E 00"));
}

void tst_M4Blocks::listHeaderBlock()
{
    BlockFile f;
    M4HLBlock hl;
    hl.hl_flags = DL_FL_EQUAL_LENGTH;
    hl.hl_zip_type = DZ_ZIP_TRANSPOSED;
    hl.setLink(M4HLBlock::hl_dl_first, 0x68);
    hl.attach(f.file());
    QCOMPARE(f.hex(), golden("2323484C 00000000 2800000000000000 0100000000000000"
                             "6800000000000000 0100 01 0000000000"));
}

void tst_M4Blocks::dataListBlockHoldsTheLinksItHas()
{
    BlockFile f;
    M4DLBlock dl(0x400000, 5);
    QCOMPARE(dl.allocate(f.file()), std::uint64_t{0x40});
    QVERIFY(dl.append(0x1000));
    QVERIFY(dl.append(0x2000));
    QCOMPARE(f.hex(), golden("2323444C 00000000 4000000000000000 0300000000000000"
                             "0000000000000000 0010000000000000 0020000000000000"
                             "01 000000 02000000 0000400000000000"));
}

void tst_M4Blocks::dataListKeepsTheSpaceOfItsWholeCapacity()
{
    BlockFile f;
    M4DLBlock dl(100, 5);
    dl.allocate(f.file());
    const std::uint64_t header = 24, links = 8 * (1 + 5), record = 8, equalLength = 8;
    QCOMPARE(f.file()->logicalEnd(), 0x40 + header + links + record + equalLength);
}

void tst_M4Blocks::nextDataListTakesOverWithoutTheOldLinks()
{
    BlockFile f;
    M4DLBlock dl(100, 1);
    dl.allocate(f.file());
    QVERIFY(dl.append(0x1000));
    QVERIFY(dl.isFull());
    QVERIFY(dl.beginNext());
    QVERIFY(!dl.isFull());
    QVERIFY(dl.append(0x2000));
    QCOMPARE(f.hex(),
             golden("2323444C 00000000 3800000000000000 0200000000000000"
                    "7800000000000000 0010000000000000 01 000000 01000000 6400000000000000"
                    "2323444C 00000000 3800000000000000 0200000000000000"
                    "0000000000000000 0020000000000000 01 000000 01000000 6400000000000000"));
}

void tst_M4Blocks::compressedDataBlock()
{
    BlockFile f;
    M4DZBlockWr dz(0x400000, 12, mdf4::Deflater::defaultLevel);
    QCOMPARE(dz.putCompressed(f.file(), {{0xAA, 0xBB, 0xCC}, 0x0102}), std::uint64_t{0x40});
    QCOMPARE(f.hex(), golden("2323445A 00000000 3300000000000000 0000000000000000"
                             "4454 01 00 0C000000 0201000000000000 0300000000000000 AABBCC"));
}

void tst_M4Blocks::plainDataBlock()
{
    BlockFile f;
    M4DTBlock dt(4);
    const unsigned char data[] = {1, 2, 3};
    QCOMPARE(dt.fill(data, 3), std::size_t{3});
    QCOMPARE(dt.fill(data, 3), std::size_t{1});
    QVERIFY(dt.isFull());
    QCOMPARE(dt.put(f.file()), std::uint64_t{0x40});
    QCOMPARE(dt.fillCount(), std::uint64_t{0});
    QCOMPARE(f.hex(), golden("23234454 00000000 1C00000000000000 0000000000000000 01020301"));
}

void tst_M4Blocks::sizesOfTheOtherBlocks_data()
{
    QTest::addColumn<std::function<std::unique_ptr<m4Block>()>>("make");
    QTest::addColumn<QByteArray>("id");
    QTest::addColumn<int>("links");
    QTest::addColumn<int>("length");

    using Make = std::function<std::unique_ptr<m4Block>()>;
    QTest::newRow("attachment") << Make([] { return std::make_unique<M4ATBlock>(); })
                                << QByteArray("AT") << 4 << 96;
    QTest::newRow("channel array")
        << Make([] { return std::make_unique<M4CABlock>(); }) << QByteArray("CA") << 1 << 48;
    QTest::newRow("hierarchy") << Make([] { return std::make_unique<M4CHBlock>(); })
                               << QByteArray("CH") << 4 << 64;
    QTest::newRow("event") << Make([] { return std::make_unique<M4EVBlock>(); }) << QByteArray("EV")
                           << 5 << 96;
    QTest::newRow("source") << Make([] { return std::make_unique<M4SIBlock>(); })
                            << QByteArray("SI") << 3 << 56;
    QTest::newRow("sample reduction")
        << Make([] { return std::make_unique<M4SRBlock>(); }) << QByteArray("SR") << 2 << 64;
    QTest::newRow("compressed data")
        << Make([] { return std::make_unique<M4DZBlock>(); }) << QByteArray("DZ") << 0 << 48;
    QTest::newRow("reduction data")
        << Make([] { return std::make_unique<M4RDBlock>(8U); }) << QByteArray("RD") << 0 << 24;
    QTest::newRow("signal data") << Make([] { return std::make_unique<M4SDBlock>(8U); })
                                 << QByteArray("SD") << 0 << 24;
}

void tst_M4Blocks::sizesOfTheOtherBlocks()
{
    QFETCH(const std::function<std::unique_ptr<m4Block>()>, make);
    QFETCH(const QByteArray, id);
    QFETCH(const int, links);
    QFETCH(const int, length);
    BlockFile f;
    const auto block = make();
    block->attach(f.file());
    const QByteArray bytes = QByteArray::fromHex(f.hex());
    QCOMPARE(bytes.size(), length);
    QCOMPARE(bytes.left(4), "##" + id);
    QCOMPARE(int{bytes[8]}, length);
    QCOMPARE(int{bytes[16]}, links);
    QCOMPARE(bytes.mid(24), QByteArray(length - 24, '\0'));
}

void tst_M4Blocks::variablePartFollowsTheRecord()
{
    BlockFile f;
    M4CABlock ca;
    ca.ca_ndim = 2;
    ca.m_var = {3, 4};
    ca.attach(f.file());
    QCOMPARE(f.hex(), golden("23234341 00000000 4000000000000000 0100000000000000"
                             "0000000000000000 00 00 0200 00000000 00000000 00000000"
                             "0300000000000000 0400000000000000"));
}

void tst_M4Blocks::linkIsPatchedInPlace()
{
    BlockFile f;
    M4FHBlock fh;
    fh.attach(f.file());
    M4FHBlock next;
    fh.setLink(M4FHBlock::fh_fh_next, next.attach(f.file()));
    QVERIFY(fh.write(true, false));
    QCOMPARE(f.hex(),
             golden("23234648 00000000 3800000000000000 0200000000000000"
                    "7800000000000000 0000000000000000 0000000000000000 0000000000000000"
                    "23234648 00000000 3800000000000000 0200000000000000"
                    "0000000000000000 0000000000000000 0000000000000000 0000000000000000"));
}

void tst_M4Blocks::linksGrowOnDemandWithZeros()
{
    M4CHBlock ch;
    QCOMPARE(ch.linkCount(), std::size_t{4});
    QCOMPARE(ch.link(6), std::uint64_t{0});
    ch.setLink(6, 0x1000);
    QCOMPARE(ch.linkCount(), std::size_t{7});
    QCOMPARE(ch.link(5), std::uint64_t{0});
    QCOMPARE(ch.link(6), std::uint64_t{0x1000});
}

void tst_M4Blocks::attachWithoutFlagsOnlyTakesAPlace()
{
    BlockFile f;
    M4FHBlock fh;
    QCOMPARE(fh.attach(f.file(), 0), std::uint64_t{0x40});
    QCOMPARE(f.hex(), QByteArray());
    QCOMPARE(f.file()->logicalEnd(), std::uint64_t{0x40 + 56});
}

void tst_M4Blocks::attachAgainKeepsThePlace()
{
    BlockFile f;
    M4FHBlock fh;
    fh.attach(f.file(), 0);
    QCOMPARE(fh.attach(f.file()), std::uint64_t{0x40});
    QCOMPARE(f.file()->logicalEnd(), std::uint64_t{0x40 + 56});
}

void tst_M4Blocks::failedWriteKeepsThePositionAndReturnsZero()
{
    BlockFile f;
    f.file()->fail("broken");
    M4FHBlock fh;
    QCOMPARE(fh.attach(f.file()), std::uint64_t{0});
    QCOMPARE(fh.position(), std::uint64_t{0x40});
}

void tst_M4Blocks::rangeIsGivenWhenOneBoundIsNotZero()
{
    M4CNBlock cn;
    cn.setRange(0, 0);
    QCOMPARE(cn.cn_flags, 0U);
    cn.setRange(0, 5);
    QCOMPARE(cn.cn_flags, 8U);
    cn.setRange(-5, 0);
    QCOMPARE(cn.cn_flags, 8U);
    QCOMPARE(cn.cn_val_range_min, -5.0);
    QCOMPARE(cn.cn_val_range_max, 0.0);
}

void tst_M4Blocks::boundsOfARangeAreSwappedWhereTheyAreReversed()
{
    M4CNBlock cn;
    cn.setRange(2, -1);
    QCOMPARE(cn.cn_flags, 8U);
    QCOMPARE(cn.cn_val_range_min, -1.0);
    QCOMPARE(cn.cn_val_range_max, 2.0);
}

void tst_M4Blocks::rangeThatIsNotOneIsLeftOut_data()
{
    QTest::addColumn<double>("min");
    QTest::addColumn<double>("max");
    QTest::newRow("not a number") << 0.0 << std::numeric_limits<double>::quiet_NaN();
    QTest::newRow("infinite") << 0.0 << std::numeric_limits<double>::infinity();
}

void tst_M4Blocks::rangeThatIsNotOneIsLeftOut()
{
    QFETCH(const double, min);
    QFETCH(const double, max);
    M4CNBlock cn;
    cn.setRange(1, 2);
    cn.setRange(min, max);
    QCOMPARE(cn.cn_flags, 0U);
    QCOMPARE(cn.cn_val_range_min, 0.0);
    QCOMPARE(cn.cn_val_range_max, 0.0);
}

void tst_M4Blocks::channelsAreChainedInOrder()
{
    BlockFile f;
    M4CGBlock cg;
    cg.attach(f.file());
    const std::uint64_t first = cg.addCN("a", 0, 0, 8, 1)->position();
    M4CNBlock *second = cg.addCN("b", 0, 0, 9, 1);
    const QByteArray bytes = QByteArray(64, '\0') + QByteArray::fromHex(f.hex());
    const auto linkAt = [&bytes](std::uint64_t position) {
        return qFromLittleEndian<quint64>(bytes.constData() + position);
    };
    QCOMPARE(linkAt(0x40 + 24 + 8 * 1), quint64{first});
    QCOMPARE(linkAt(first + 24), quint64{second->position()});
    QCOMPARE(linkAt(second->position() + 24), quint64{0});
}

void tst_M4Blocks::channelGroupsAreChainedInOrder()
{
    BlockFile f;
    M4DGBlock dg;
    dg.attach(f.file());
    const std::uint64_t first = dg.addCG(std::make_unique<M4CGBlock>())->position();
    const std::uint64_t second = dg.addCG(std::make_unique<M4CGBlock>())->position();
    const QByteArray bytes = QByteArray(64, '\0') + QByteArray::fromHex(f.hex());
    QCOMPARE(qFromLittleEndian<quint64>(bytes.constData() + 0x40 + 24 + 8), quint64{first});
    QCOMPARE(qFromLittleEndian<quint64>(bytes.constData() + first + 24), quint64{second});
}

void tst_M4Blocks::timeChannel()
{
    BlockFile f;
    M4CGBlock cg;
    cg.attach(f.file());
    QVERIFY(cg.addTimeChannel() != nullptr);
    const QByteArray bytes = QByteArray::fromHex(f.hex());
    const QByteArray behindTheGroup = bytes.mid(104).toHex(' ');
    // CN at 0xA8, its name at 0x148, conversion at 0x170, unit at 0x1D0.
    QCOMPARE(behindTheGroup,
             golden("2323434E 00000000 A000000000000000 0800000000000000"
                    "0000000000000000 0000000000000000 4801000000000000 0000000000000000"
                    "7001000000000000 0000000000000000 D001000000000000 0000000000000000"
                    "02 01 00 00 00000000 40000000 00000000 00000000 00 00 0000"
                    "0000000000000000 0000000000000000 0000000000000000"
                    "0000000000000000 0000000000000000 0000000000000000"
                    "23235458 00000000 2200000000000000 0000000000000000"
                    "54696D657374616D7000 000000000000"
                    "23234343 00000000 6000000000000000 0400000000000000"
                    "0000000000000000 0000000000000000 0000000000000000 0000000000000000"
                    "01 00 0000 0000 0200 0000000000000000 0000000000000000"
                    "0000000000000000 8DEDB5A0F7C6B03E"
                    "23235458 00000000 1A00000000000000 0000000000000000 7300"));
}

void tst_M4Blocks::unitIsWrittenEvenWhenItIsEmpty()
{
    BlockFile f;
    M4CGBlock cg;
    cg.attach(f.file());
    M4CNBlock *cn = cg.addCN("a", 0, 0, 8, 1);
    QVERIFY(cn->setUnit(""));
    QVERIFY(cn->link(M4CNBlock::cn_md_unit) != 0);
}

QTEST_GUILESS_MAIN(tst_M4Blocks)
#include "tst_m4blocks.moc"
