#include "link/systemflags.h"

#include <QTest>

class tst_SystemFlags : public QObject
{
    Q_OBJECT

private slots:
    void bit11SaysWhetherLoggingRuns();
    void bits8And12SayHowTheAuxiliarySupplyIs_data();
    void bits8And12SayHowTheAuxiliarySupplyIs();
};

void tst_SystemFlags::bit11SaysWhetherLoggingRuns()
{
    QCOMPARE(systemflags::loggingText(0x800), QStringLiteral("recording"));
    QCOMPARE(systemflags::loggingText(~0x800U), QStringLiteral("stopped"));
    QCOMPARE(systemflags::loggingText(0), QStringLiteral("stopped"));
}

void tst_SystemFlags::bits8And12SayHowTheAuxiliarySupplyIs_data()
{
    QTest::addColumn<quint32>("flags");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("hasFault");
    QTest::newRow("off") << quint32(0) << QStringLiteral("off") << false;
    QTest::newRow("on") << quint32(0x1000) << QStringLiteral("on") << false;
    QTest::newRow("off, fault") << quint32(0x100) << QStringLiteral("off/fault occured") << true;
    QTest::newRow("on, fault") << quint32(0x1100) << QStringLiteral("on/fault occured") << true;
    QTest::newRow("other bits") << ~quint32(0x1100) << QStringLiteral("off") << false;
}

void tst_SystemFlags::bits8And12SayHowTheAuxiliarySupplyIs()
{
    QFETCH(quint32, flags);
    QTEST(systemflags::auxSupplyText(flags), "text");
    QTEST(systemflags::hasAuxSupplyFault(flags), "hasFault");
}

QTEST_GUILESS_MAIN(tst_SystemFlags)
#include "tst_systemflags.moc"
