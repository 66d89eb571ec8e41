#include "MDF4Conversion/lib_mdf4/mdf4/m4blocks.h"
#include "MDF4Conversion/lib_mdf4/mdf4/m4conversions.h"
#include "tests/mdf4conversion/lib_mdf4/blockbytes.h"

#include <QtTest>

#include <cmath>
#include <limits>

class tst_M4Conversions : public QObject
{
    Q_OBJECT

private slots:
    void identity();
    void linear();
    void rational();
    void formulaStandsInATextOnTheReference();
    void interpolatedTableAlternatesKeysAndValues();
    void plainTableAlternatesKeysAndValues();
    void valueToTextHasANullLinkAsDefault();
    void valueToTextWithADefaultText();
    void valueToTextWithoutPairsHasTheDefaultOnly();
    void notANumberAndInfinityPassThrough();
    void largestTableFits();
    void tableWithMorePairsThanItsCountHoldsDoesNotFit();
    void largestTextTableFits();
    void textTableWithMoreReferencesThanItsCountHoldsDoesNotFit();
    void conversionThatDoesNotFitIsRefusedWithoutTouchingTheFile();
    void conversionIsLinkedToItsChannel();
};

void tst_M4Conversions::identity()
{
    BlockFile f;
    M4CCIdentity cc;
    cc.attach(f.file());
    QCOMPARE(f.hex(), golden("23234343 00000000 5000000000000000 0400000000000000"
                             "0000000000000000 0000000000000000 0000000000000000 0000000000000000"
                             "00 00 0000 0000 0000 0000000000000000 0000000000000000"));
}

void tst_M4Conversions::linear()
{
    BlockFile f;
    M4CCLinear cc(-40, 0.5);
    cc.attach(f.file());
    QCOMPARE(f.hex(), golden("23234343 00000000 6000000000000000 0400000000000000"
                             "0000000000000000 0000000000000000 0000000000000000 0000000000000000"
                             "01 00 0000 0000 0200 0000000000000000 0000000000000000"
                             "00000000000044C0 000000000000E03F"));
    QCOMPARE(cc.parameter(0), -40.0);
    QCOMPARE(cc.parameter(1), 0.5);
}

void tst_M4Conversions::rational()
{
    BlockFile f;
    M4CCRational cc({1, 2, 3, 4, 5, 6});
    cc.attach(f.file());
    QCOMPARE(f.hex(), golden("23234343 00000000 8000000000000000 0400000000000000"
                             "0000000000000000 0000000000000000 0000000000000000 0000000000000000"
                             "02 00 0000 0000 0600 0000000000000000 0000000000000000"
                             "000000000000F03F 0000000000000040 0000000000000840"
                             "0000000000001040 0000000000001440 0000000000001840"));
}

void tst_M4Conversions::formulaStandsInATextOnTheReference()
{
    BlockFile f;
    M4CCFormula cc("X+1");
    cc.attach(f.file());
    QCOMPARE(f.hex(), golden("23234343 00000000 5800000000000000 0500000000000000"
                             "0000000000000000 0000000000000000 0000000000000000 0000000000000000"
                             "9800000000000000"
                             "03 00 0000 0100 0000 0000000000000000 0000000000000000"
                             "23235458 00000000 1C00000000000000 0000000000000000 582B3100"));
}

void tst_M4Conversions::interpolatedTableAlternatesKeysAndValues()
{
    BlockFile f;
    M4CCN2NInterpol cc({{1, 10}, {2, 20}});
    cc.attach(f.file());
    QCOMPARE(f.hex(),
             golden("23234343 00000000 7000000000000000 0400000000000000"
                    "0000000000000000 0000000000000000 0000000000000000 0000000000000000"
                    "04 00 0000 0000 0400 0000000000000000 0000000000000000"
                    "000000000000F03F 0000000000002440 0000000000000040 0000000000003440"));
}

void tst_M4Conversions::plainTableAlternatesKeysAndValues()
{
    BlockFile f;
    M4CCN2N cc({{1, 10}, {2, 20}});
    cc.attach(f.file());
    QCOMPARE(f.hex(),
             golden("23234343 00000000 7000000000000000 0400000000000000"
                    "0000000000000000 0000000000000000 0000000000000000 0000000000000000"
                    "05 00 0000 0000 0400 0000000000000000 0000000000000000"
                    "000000000000F03F 0000000000002440 0000000000000040 0000000000003440"));
}

void tst_M4Conversions::valueToTextHasANullLinkAsDefault()
{
    BlockFile f;
    M4CCN2T cc({{0, "off"}, {1, "on"}});
    cc.attach(f.file());
    QCOMPARE(f.hex(), golden("23234343 00000000 7800000000000000 0700000000000000"
                             "0000000000000000 0000000000000000 0000000000000000 0000000000000000"
                             "B800000000000000 D800000000000000 0000000000000000"
                             "07 00 0000 0300 0200 0000000000000000 0000000000000000"
                             "0000000000000000 000000000000F03F"
                             "23235458 00000000 1C00000000000000 0000000000000000 6F666600 00000000"
                             "23235458 00000000 1B00000000000000 0000000000000000 6F6E00"));
}

void tst_M4Conversions::valueToTextWithADefaultText()
{
    BlockFile f;
    M4CCN2T cc({{0, "off"}}, std::string("else"));
    cc.attach(f.file());
    QCOMPARE(cc.cc_ref_count, std::uint16_t{2});
    QVERIFY(cc.link(M4CCBlock::cc_ref + 1) != 0);
    QVERIFY(f.hex().contains(QByteArray("else").toHex(' ')));
}

void tst_M4Conversions::valueToTextWithoutPairsHasTheDefaultOnly()
{
    BlockFile f;
    M4CCN2T cc({});
    cc.attach(f.file());
    QCOMPARE(cc.cc_val_count, std::uint16_t{0});
    QCOMPARE(cc.cc_ref_count, std::uint16_t{1});
    QCOMPARE(cc.linkCount(), std::size_t{5});
}

void tst_M4Conversions::notANumberAndInfinityPassThrough()
{
    M4CCLinear cc(std::numeric_limits<double>::quiet_NaN(),
                  std::numeric_limits<double>::infinity());
    QVERIFY(std::isnan(cc.parameter(0)));
    QVERIFY(std::isinf(cc.parameter(1)));
}

void tst_M4Conversions::largestTableFits()
{
    const M4CCN2N cc(M4ValuePairs(32767));
    QVERIFY(cc.fits());
    QCOMPARE(cc.cc_val_count, std::uint16_t{65534});
}

void tst_M4Conversions::tableWithMorePairsThanItsCountHoldsDoesNotFit()
{
    QVERIFY(!M4CCN2N(M4ValuePairs(32768)).fits());
    QVERIFY(!M4CCN2NInterpol(M4ValuePairs(32768)).fits());
}

void tst_M4Conversions::largestTextTableFits()
{
    const M4CCN2T cc(std::vector<std::pair<double, std::string>>(65534));
    QVERIFY(cc.fits());
    QCOMPARE(cc.cc_val_count, std::uint16_t{65534});
    QCOMPARE(cc.cc_ref_count, std::uint16_t{65535});
}

void tst_M4Conversions::textTableWithMoreReferencesThanItsCountHoldsDoesNotFit()
{
    QVERIFY(!M4CCN2T(std::vector<std::pair<double, std::string>>(65535)).fits());
    QVERIFY(!M4CCN2T(std::vector<std::pair<double, std::string>>(65536)).fits());
}

void tst_M4Conversions::conversionThatDoesNotFitIsRefusedWithoutTouchingTheFile()
{
    BlockFile f;
    M4CNBlock cn;
    cn.attach(f.file());
    const std::uint64_t end = f.file()->logicalEnd();
    M4CCN2N cc(M4ValuePairs(32768));
    QVERIFY(!cn.setConversion(cc));
    QVERIFY(!f.file()->failed());
    QCOMPARE(f.file()->logicalEnd(), end);
    QCOMPARE(cn.link(M4CNBlock::cn_cc_conversion), std::uint64_t{0});
}

void tst_M4Conversions::conversionIsLinkedToItsChannel()
{
    BlockFile f;
    M4CNBlock cn;
    cn.attach(f.file());
    M4CCLinear cc(0, 1);
    QVERIFY(cn.setConversion(cc));
    const QByteArray bytes = QByteArray::fromHex(f.hex());
    QCOMPARE(qFromLittleEndian<quint64>(bytes.constData() + 24 + 8 * 4), quint64{cc.position()});
    QCOMPARE(bytes.mid(static_cast<int>(cc.position()) - 64, 4), QByteArray("##CC"));
}

QTEST_GUILESS_MAIN(tst_M4Conversions)
#include "tst_m4conversions.moc"
