#include "config/groupnames.h"

#include <QTest>

using groupnames::groupName;
using groupnames::PortName;

class tst_GroupNames : public QObject
{
    Q_OBJECT

private slots:
    void modeAndCustomTextMakeTheName_data();
    void modeAndCustomTextMakeTheName();
    void aGroupWithoutKindHasNoSuffix();
};

void tst_GroupNames::modeAndCustomTextMakeTheName_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("custom");
    QTest::addColumn<QString>("name");

    const QString custom = QStringLiteral("Chassis");
    QTest::newRow("neither bit") << 0 << custom << QStringLiteral("ETH_0_XCP");
    QTest::newRow("other bits") << 4 << custom << QStringLiteral("ETH_0_XCP");
    QTest::newRow("appended") << 1 << custom << QStringLiteral("ETH_0_Chassis_XCP");
    QTest::newRow("alone") << 2 << custom << QStringLiteral("Chassis_XCP");
    QTest::newRow("both bits") << 3 << custom << QStringLiteral("Chassis_XCP");
    QTest::newRow("appended, no text") << 1 << QString() << QStringLiteral("ETH_0_Unspecified_XCP");
    QTest::newRow("alone, no text") << 2 << QString() << QStringLiteral("Unspecified_XCP");
}

void tst_GroupNames::modeAndCustomTextMakeTheName()
{
    QFETCH(int, mode);
    QFETCH(QString, custom);
    const PortName port{QStringLiteral("ETH"), 0, quint8(mode), custom};
    QTEST(groupName(port, QStringLiteral("XCP")), "name");
}

void tst_GroupNames::aGroupWithoutKindHasNoSuffix()
{
    const PortName port{QStringLiteral("CAN"), 11, 0, QString()};
    QCOMPARE(groupName(port, QString()), QStringLiteral("CAN_11"));
}

QTEST_GUILESS_MAIN(tst_GroupNames)
#include "tst_groupnames.moc"
