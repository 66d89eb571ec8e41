#include "MDF4Conversion/messagelimits.h"

#include <QTest>

using Kind = MessageLimits::Kind;
using Verdict = MessageLimits::Verdict;

Q_DECLARE_METATYPE(MessageLimits::Kind)

class tst_MessageLimits : public QObject
{
    Q_OBJECT

private slots:
    void linesAreShownUpToTheLimit_data();
    void linesAreShownUpToTheLimit();
    void theCounterStopsAtTheLimit();
    void kindsAreCountedApart();
};

void tst_MessageLimits::linesAreShownUpToTheLimit_data()
{
    QTest::addColumn<Kind>("kind");
    QTest::addColumn<int>("limit");
    QTest::newRow("plain") << Kind::Plain << 10000;
    QTest::newRow("status") << Kind::Status << 25000;
    QTest::newRow("warning") << Kind::Warning << 1000;
    QTest::newRow("error") << Kind::Error << 100;
}

void tst_MessageLimits::linesAreShownUpToTheLimit()
{
    QFETCH(Kind, kind);
    QFETCH(int, limit);
    MessageLimits limits;
    for (int line = 1; line < limit; ++line)
        QCOMPARE(int(limits.admit(kind)), int(Verdict::Show));
    QCOMPARE(int(limits.admit(kind)), int(Verdict::ShowAsLast));
    QCOMPARE(int(limits.admit(kind)), int(Verdict::Drop));
    QCOMPARE(int(limits.admit(kind)), int(Verdict::Drop));
}

void tst_MessageLimits::theCounterStopsAtTheLimit()
{
    MessageLimits limits;
    for (int line = 0; line < 150; ++line)
        (void)limits.admit(Kind::Error);
    QCOMPARE(limits.count(Kind::Error), 100);
}

void tst_MessageLimits::kindsAreCountedApart()
{
    MessageLimits limits;
    (void)limits.admit(Kind::Warning);
    (void)limits.admit(Kind::Warning);
    (void)limits.admit(Kind::Error);
    QCOMPARE(limits.count(Kind::Plain), 0);
    QCOMPARE(limits.count(Kind::Status), 0);
    QCOMPARE(limits.count(Kind::Warning), 2);
    QCOMPARE(limits.count(Kind::Error), 1);
}

QTEST_GUILESS_MAIN(tst_MessageLimits)
#include "tst_messagelimits.moc"
