#include "a2l/records/a2lconstants.h"
#include "config/valuenames.h"

#include <QTest>

using namespace valuenames;

class tst_ValueNames : public QObject
{
    Q_OBJECT

private slots:
    void a2lNamesStandAtTheirNumbers();
    void namesAreUtf8();
    void aNumberWithoutNameStays();
};

void tst_ValueNames::a2lNamesStandAtTheirNumbers()
{
    QCOMPARE(nameOf(a2lDataTypes, A2lDataType::UInt64), QStringLiteral("A_UINT64"));
    QCOMPARE(nameOf(a2lDataTypes, A2lDataType::Float64), QStringLiteral("FLOAT64_IEEE"));
    QCOMPARE(nameOf(a2lConversionTypes, A2lConversionType::TabVerb), QStringLiteral("TAB_VERB"));
    QCOMPARE(nameOf(a2lInterfaces, ACTIVE_A2L_IF_XCP_O_TCP), QStringLiteral("XCP on TCP"));
}

void tst_ValueNames::namesAreUtf8()
{
    QCOMPARE(nameOf(gyroScales, 3), QString::fromUtf8("256 \xC2\xB0/s"));
}

void tst_ValueNames::aNumberWithoutNameStays()
{
    QCOMPARE(nameOf(auxModes, 2), QStringLiteral("CAN-0 traffic controlled"));
    QCOMPARE(nameOf(auxModes, 3), QStringLiteral("3"));
    QCOMPARE(nameOf(auxModes, 255), QStringLiteral("255"));
}

QTEST_GUILESS_MAIN(tst_ValueNames)
#include "tst_valuenames.moc"
