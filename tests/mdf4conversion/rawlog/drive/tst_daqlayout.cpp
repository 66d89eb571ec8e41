#include "MDF4Conversion/rawlog/drive/daqlayout.h"
#include "a2l/records/a2lconstants.h"

#include <QtTest>

using namespace drive;

namespace {

A2lMeasurement measurement(const char *name, quint8 type, quint32 address)
{
    A2lMeasurement m;
    m.name = QLatin1String(name);
    m.data_type = type;
    m.ecu_address = address;
    return m;
}

// The sizes of the elements, ODT by ODT: "2 4|1".
QString sizes(const StreamingClass_A2L_DAQ &daq)
{
    QStringList odts;
    for (const auto *odt : daq.odts) {
        QStringList elements;
        for (const auto *element : odt->elements)
            elements += QString::number(element->size);
        odts += elements.join(QLatin1Char(' '));
    }
    return odts.join(QLatin1Char('|'));
}

} // namespace

class tst_DaqLayout : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void aValueOfFourBytesIsSplitIntoThreeFreeOnes();
    void aValueGoesWholeIntoANewOdtWhenNoByteIsFree();
    void withoutSplittingAValueGoesWholeIntoANewOdt();
    void aSmallValueFillsAGapOfAnEarlierOdt();
    void alwaysSplitValuesAreSingleBytes();
    void aByteIsNeverSplit();
    void valuesOfOneAddressShareTheirElement();
    void piecesOfASplitValueShareTheNamesToo();
    void elementsAndOdtsAreCounted();

private:
    void place(const char *name, quint8 type, quint32 address, Splitting splitting);

    StreamingClass_A2L_DAQ m_daq;
};

void tst_DaqLayout::init()
{
    m_daq.odts.clear();
    m_daq.odt_capacity = 7;
}

void tst_DaqLayout::place(const char *name, quint8 type, quint32 address, Splitting splitting)
{
    placeMeasurement(m_daq, measurement(name, type, address), splitting);
}

void tst_DaqLayout::aValueOfFourBytesIsSplitIntoThreeFreeOnes()
{
    place("A", A2lDataType::ULong, 0x100, Splitting::ToFill);
    place("B", A2lDataType::Float32, 0x200, Splitting::ToFill);
    QCOMPARE(sizes(m_daq), QStringLiteral("4 1 1 1|1"));
    const auto &last = *m_daq.odts.at(1)->elements.at(0);
    QCOMPARE(last.address, 0x203U);
    QCOMPARE(int(last.split), 1);
    QCOMPARE(int(last.byte_position), 3);
    QCOMPARE(last.names, QStringList(QStringLiteral("B")));
}

void tst_DaqLayout::aValueGoesWholeIntoANewOdtWhenNoByteIsFree()
{
    m_daq.odt_capacity = 4;
    place("A", A2lDataType::ULong, 0x100, Splitting::ToFill);
    place("B", A2lDataType::ULong, 0x200, Splitting::ToFill);
    QCOMPARE(sizes(m_daq), QStringLiteral("4|4"));
    QCOMPARE(int(m_daq.odts.at(1)->elements.at(0)->split), 0);
}

void tst_DaqLayout::withoutSplittingAValueGoesWholeIntoANewOdt()
{
    place("A", A2lDataType::ULong, 0x100, Splitting::Never);
    place("B", A2lDataType::ULong, 0x200, Splitting::Never);
    QCOMPARE(sizes(m_daq), QStringLiteral("4|4"));
}

void tst_DaqLayout::aSmallValueFillsAGapOfAnEarlierOdt()
{
    place("A", A2lDataType::ULong, 0x100, Splitting::Never);
    place("B", A2lDataType::ULong, 0x200, Splitting::Never);
    place("C", A2lDataType::SWord, 0x300, Splitting::Never);
    QCOMPARE(sizes(m_daq), QStringLiteral("4 2|4"));
}

void tst_DaqLayout::alwaysSplitValuesAreSingleBytes()
{
    place("A", A2lDataType::UWord, 0x100, Splitting::Always);
    place("B", A2lDataType::Float32, 0x200, Splitting::Always);
    QCOMPARE(sizes(m_daq), QStringLiteral("1 1 1 1 1 1"));
}

void tst_DaqLayout::aByteIsNeverSplit()
{
    place("A", A2lDataType::SByte, 0x100, Splitting::Always);
    QCOMPARE(int(m_daq.odts.at(0)->elements.at(0)->split), 0);
}

void tst_DaqLayout::valuesOfOneAddressShareTheirElement()
{
    place("A", A2lDataType::UWord, 0x100, Splitting::ToFill);
    place("B", A2lDataType::UWord, 0x100, Splitting::ToFill);
    QCOMPARE(sizes(m_daq), QStringLiteral("2"));
    QCOMPARE(m_daq.odts.at(0)->elements.at(0)->names,
             (QStringList{QStringLiteral("A"), QStringLiteral("B")}));
}

void tst_DaqLayout::piecesOfASplitValueShareTheNamesToo()
{
    place("A", A2lDataType::UWord, 0x100, Splitting::Always);
    place("B", A2lDataType::UWord, 0x100, Splitting::Always);
    QCOMPARE(sizes(m_daq), QStringLiteral("1 1"));
    for (const auto *element : m_daq.odts.at(0)->elements)
        QCOMPARE(element->names.size(), 2);
}

void tst_DaqLayout::elementsAndOdtsAreCounted()
{
    for (int i = 0; i < 9; ++i)
        place("A", A2lDataType::UByte, quint32(i), Splitting::Never);
    QCOMPARE(int(m_daq.odts.at(1)->odt_index), 1);
    QCOMPARE(int(m_daq.odts.at(0)->elements.at(6)->element_index), 6);
    QCOMPARE(int(m_daq.odts.at(1)->elements.at(1)->element_index), 1);
}

QTEST_GUILESS_MAIN(tst_DaqLayout)
#include "tst_daqlayout.moc"
