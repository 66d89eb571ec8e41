#include "MDF4Conversion/rld2xxxwatch.h"

#include <QTest>

using Counter = Rld2xxxRecord::Counter;

namespace {

Rld2xxxRecord recordOf(quint32 version, quint64 fileSize = 0, quint64 bytesRead = 0)
{
    Rld2xxxRecord record;
    record.setVersion(version);
    record.setCounter(Counter::FileSize, fileSize);
    record.setCounter(Counter::BytesRead, bytesRead);
    return record;
}

QString valueOf(const Rld2xxxWatch::Finding &finding, const char *group, const char *field)
{
    return finding.tree.at(QLatin1String(group)).at(QLatin1String(field));
}

} // namespace

class tst_Rld2xxxWatch : public QObject
{
    Q_OBJECT

private slots:
    void version3IsCompatible();
    void anotherVersionIsToldOnce();
    void theVersionIsCheckedOnce();
    void version0IsNoVersionYet();
    void aFileSizeOf0GivesNoProgress();
    void progressIsRounded_data();
    void progressIsRounded();
    void theTreeHasTwoGroupsInDecimal();
    void theSixteenthSilentPollIsTooMuch();
    void aRunningProcessIsNotSilent();
    void aFinishedOneIsNotSilent();
};

void tst_Rld2xxxWatch::version3IsCompatible()
{
    Rld2xxxWatch watch;
    QVERIFY(!watch.look(recordOf(3)).incompatibleVersion);
}

void tst_Rld2xxxWatch::anotherVersionIsToldOnce()
{
    Rld2xxxWatch watch;
    QCOMPARE(watch.look(recordOf(2)).incompatibleVersion.value_or(0), quint32(2));
    QVERIFY(!watch.look(recordOf(2)).incompatibleVersion);
}

void tst_Rld2xxxWatch::theVersionIsCheckedOnce()
{
    Rld2xxxWatch watch;
    (void)watch.look(recordOf(3));
    QVERIFY(!watch.look(recordOf(4)).incompatibleVersion);
}

void tst_Rld2xxxWatch::version0IsNoVersionYet()
{
    Rld2xxxWatch watch;
    QVERIFY(!watch.look(recordOf(0)).incompatibleVersion);
    QCOMPARE(watch.look(recordOf(4)).incompatibleVersion.value_or(0), quint32(4));
}

void tst_Rld2xxxWatch::aFileSizeOf0GivesNoProgress()
{
    Rld2xxxWatch watch;
    QVERIFY(!watch.look(recordOf(3, 0, 100)).percent);
}

void tst_Rld2xxxWatch::progressIsRounded_data()
{
    QTest::addColumn<quint64>("bytesRead");
    QTest::addColumn<quint64>("fileSize");
    QTest::addColumn<uint>("percent");
    QTest::newRow("nothing") << quint64(0) << quint64(1000) << 0U;
    QTest::newRow("down") << quint64(444) << quint64(1000) << 44U;
    QTest::newRow("up") << quint64(445) << quint64(1000) << 45U;
    QTest::newRow("all") << quint64(1000) << quint64(1000) << 100U;
    QTest::newRow("more than there is") << quint64(2000) << quint64(1000) << 100U;
    QTest::newRow("huge") << (~quint64(0)) / 2 << ~quint64(0) << 50U;
}

void tst_Rld2xxxWatch::progressIsRounded()
{
    QFETCH(quint64, bytesRead);
    QFETCH(quint64, fileSize);
    QFETCH(uint, percent);
    Rld2xxxWatch watch;
    QCOMPARE(watch.look(recordOf(3, fileSize, bytesRead)).percent.value_or(999), percent);
}

void tst_Rld2xxxWatch::theTreeHasTwoGroupsInDecimal()
{
    Rld2xxxRecord record = recordOf(3, ~quint64(0), 20);
    record.setCounter(Counter::ConvertedElements, 30);
    record.setCounter(Counter::FilteredChunks, 40);
    record.setCounter(Counter::RldInPipeline, 50);
    record.setCounter(Counter::OutputElementsInPipeline, 60);
    record.setCounter(Counter::WrittenElements, 70);
    Rld2xxxWatch watch;
    const Rld2xxxWatch::Finding finding = watch.look(record);
    QCOMPARE(int(finding.tree.size()), 2);
    QCOMPARE(int(finding.tree.at(QStringLiteral("Process")).size()), 4);
    QCOMPARE(int(finding.tree.at(QStringLiteral("Pipeline")).size()), 3);
    QCOMPARE(valueOf(finding, "Process", "File Size"), QStringLiteral("18446744073709551615"));
    QCOMPARE(valueOf(finding, "Process", "Bytes Read"), QStringLiteral("20"));
    QCOMPARE(valueOf(finding, "Process", "Converted Elements"), QStringLiteral("30"));
    QCOMPARE(valueOf(finding, "Process", "Filtered RLD Chunks"), QStringLiteral("40"));
    QCOMPARE(valueOf(finding, "Pipeline", "RLD in pipeline"), QStringLiteral("50"));
    QCOMPARE(valueOf(finding, "Pipeline", "Output Elements in pipeline"), QStringLiteral("60"));
    QCOMPARE(valueOf(finding, "Pipeline", "Written Elements"), QStringLiteral("70"));
}

void tst_Rld2xxxWatch::theSixteenthSilentPollIsTooMuch()
{
    Rld2xxxWatch watch;
    for (int poll = 1; poll <= 15; ++poll)
        QVERIFY(!watch.isSilentTooLong(false, false));
    QVERIFY(watch.isSilentTooLong(false, false));
}

void tst_Rld2xxxWatch::aRunningProcessIsNotSilent()
{
    Rld2xxxWatch watch;
    for (int poll = 1; poll <= 100; ++poll)
        QVERIFY(!watch.isSilentTooLong(true, false));
    QVERIFY(!watch.isSilentTooLong(false, false));
}

void tst_Rld2xxxWatch::aFinishedOneIsNotSilent()
{
    Rld2xxxWatch watch;
    for (int poll = 1; poll <= 100; ++poll)
        QVERIFY(!watch.isSilentTooLong(false, true));
}

QTEST_GUILESS_MAIN(tst_Rld2xxxWatch)
#include "tst_rld2xxxwatch.moc"
