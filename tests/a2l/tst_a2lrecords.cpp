#include "tests/support/goldenbytes.h"
#include "tests/support/recordrings.h"

#include <QTest>

namespace {

template <class R>
RecordProbe a2lProbe(const char *name)
{
    return probe<R>(QStringLiteral("a2l/%1.hex").arg(QLatin1String(name)));
}

QVector<RecordProbe> probes()
{
    return {
        a2lProbe<A2lCompuMethod>("a2lcompumethod"),
        a2lProbe<A2lCompuTab>("a2lcomputab"),
        a2lProbe<A2lCompuTabPair>("a2lcomputabpair"),
        a2lProbe<A2lCompuVTab>("a2lcompuvtab"),
        a2lProbe<A2lCompuVTabPair>("a2lcompuvtabpair"),
        a2lProbe<A2lMeasurement>("a2lmeasurement"),
        a2lProbe<A2lModuleConfig>("a2lmoduleconfig"),
        a2lProbe<StreamingClass_A2L_CFG>("streamingclass_a2l_cfg"),
        a2lProbe<StreamingClass_A2L_DAQ>("streamingclass_a2l_daq"),
        a2lProbe<StreamingClass_A2L_Module>("streamingclass_a2l_module"),
        a2lProbe<StreamingClass_A2L_ODT>("streamingclass_a2l_odt"),
        a2lProbe<StreamingClass_A2L_ODT_ELEMENT>("streamingclass_a2l_odt_element"),
        a2lProbe<StreamingClass_A2L_RASTER_EVENT>("streamingclass_a2l_raster_event"),
    };
}

// The sample of a record with the change applied.
template <class R, class Change>
R changedSample(Change change)
{
    R changed = sample::record<R>();
    change(changed);
    return changed;
}

} // namespace

class tst_A2lRecords : public RecordRings
{
    Q_OBJECT

public:
    tst_A2lRecords()
        : RecordRings(probes())
    {}

private slots:
    void anElementOfVersion1IsNotSplit();
    void aDaqListOfVersion1HasNoOdtCapacity();
    void aConfigurationBelowVersion3HasTheDefaultExpandedRange_data();
    void aConfigurationBelowVersion3HasTheDefaultExpandedRange();
    void aModuleOfAnyVersionHasAllItsFields_data();
    void aModuleOfAnyVersionHasAllItsFields();
    void aNewConfigurationHas191AsHighestOdt();

    void elementsDifferInEachOfTheirFields();
    void odtsDifferInTheNumberOfElements();
    void odtsDifferInAnElement();
    void rastersDifferInEachOfTheirFields();
    void daqListsDifferInAnOdtOfTheirs();
};

void tst_A2lRecords::anElementOfVersion1IsNotSplit()
{
    auto read = sample::record<StreamingClass_A2L_ODT_ELEMENT>();
    record::fromBytes(
        golden::bytesOfVersion(QStringLiteral("a2l/streamingclass_a2l_odt_element.hex"), 1), read);
    QVERIFY(read == changedSample<StreamingClass_A2L_ODT_ELEMENT>([](auto &expected) {
                expected.split = 0;
                expected.byte_position = 0;
            }));
}

void tst_A2lRecords::aDaqListOfVersion1HasNoOdtCapacity()
{
    auto read = sample::record<StreamingClass_A2L_DAQ>();
    record::fromBytes(golden::bytesOfVersion(QStringLiteral("a2l/streamingclass_a2l_daq.hex"), 1),
                      read);
    QVERIFY(read == changedSample<StreamingClass_A2L_DAQ>([](auto &expected) {
                expected.odt_capacity = 0;
            }));
}

void tst_A2lRecords::aConfigurationBelowVersion3HasTheDefaultExpandedRange_data()
{
    QTest::addColumn<qint32>("version");
    QTest::newRow("version 1") << 1;
    QTest::newRow("version 2") << 2;
}

void tst_A2lRecords::aConfigurationBelowVersion3HasTheDefaultExpandedRange()
{
    QFETCH(qint32, version);
    auto read = sample::record<StreamingClass_A2L_CFG>();
    record::fromBytes(
        golden::bytesOfVersion(QStringLiteral("a2l/streamingclass_a2l_cfg.hex"), version), read);
    QVERIFY(read == changedSample<StreamingClass_A2L_CFG>([](auto &expected) {
                expected.flag_word = 0;
                expected.max_odt_index = 191;
            }));
}

void tst_A2lRecords::aModuleOfAnyVersionHasAllItsFields_data()
{
    QTest::addColumn<qint32>("version");
    QTest::newRow("version 1") << 1;
    QTest::newRow("version 2") << 2;
}

void tst_A2lRecords::aModuleOfAnyVersionHasAllItsFields()
{
    QFETCH(qint32, version);
    StreamingClass_A2L_Module read;
    record::fromBytes(
        golden::bytesOfVersion(QStringLiteral("a2l/streamingclass_a2l_module.hex"), version), read);
    QVERIFY(read == sample::record<StreamingClass_A2L_Module>());
}

void tst_A2lRecords::aNewConfigurationHas191AsHighestOdt()
{
    QCOMPARE(StreamingClass_A2L_CFG().max_odt_index, quint8(191));
}

void tst_A2lRecords::elementsDifferInEachOfTheirFields()
{
    using R = StreamingClass_A2L_ODT_ELEMENT;
    const auto original = sample::record<R>();
    QVERIFY(original == sample::record<R>());
    QVERIFY(original != changedSample<R>([](R &e) { ++e.element_index; }));
    QVERIFY(original != changedSample<R>([](R &e) { ++e.size; }));
    QVERIFY(original != changedSample<R>([](R &e) { ++e.address_extension; }));
    QVERIFY(original != changedSample<R>([](R &e) { ++e.address; }));
    QVERIFY(original != changedSample<R>([](R &e) { e.names.swapItemsAt(0, 1); }));
    QVERIFY(original != changedSample<R>([](R &e) { ++e.split; }));
    QVERIFY(original != changedSample<R>([](R &e) { ++e.byte_position; }));
}

void tst_A2lRecords::odtsDifferInTheNumberOfElements()
{
    using R = StreamingClass_A2L_ODT;
    const auto original = sample::record<R>();
    QVERIFY(original != changedSample<R>([](R &odt) { odt.elements.removeAt(1); }));
    QVERIFY(original != changedSample<R>([](R &odt) { odt.elements.add(); }));
}

void tst_A2lRecords::odtsDifferInAnElement()
{
    using R = StreamingClass_A2L_ODT;
    const auto original = sample::record<R>();
    QVERIFY(original != changedSample<R>([](R &odt) { ++odt.elements.at(1)->size; }));
    QVERIFY(original != changedSample<R>([](R &odt) { ++odt.pid; }));
    QVERIFY(original != changedSample<R>([](R &odt) { ++odt.odt_index; }));
}

void tst_A2lRecords::rastersDifferInEachOfTheirFields()
{
    using R = StreamingClass_A2L_RASTER_EVENT;
    const auto original = sample::record<R>();
    QVERIFY(original == sample::record<R>());
    QVERIFY(original != changedSample<R>([](R &raster) { raster.name.clear(); }));
    QVERIFY(original != changedSample<R>([](R &raster) { raster.short_name.clear(); }));
    QVERIFY(original != changedSample<R>([](R &raster) { ++raster.channel_no; }));
    QVERIFY(original != changedSample<R>([](R &raster) { ++raster.period_cse; }));
    QVERIFY(original != changedSample<R>([](R &raster) { ++raster.period_rate; }));
}

void tst_A2lRecords::daqListsDifferInAnOdtOfTheirs()
{
    using R = StreamingClass_A2L_DAQ;
    const auto original = sample::record<R>();
    QVERIFY(original == sample::record<R>());
    QVERIFY(original != changedSample<R>([](R &daq) { ++daq.odts.at(0)->elements.at(1)->split; }));
    QVERIFY(original != changedSample<R>([](R &daq) { ++daq.odt_capacity; }));
}

QTEST_GUILESS_MAIN(tst_A2lRecords)
#include "tst_a2lrecords.moc"
