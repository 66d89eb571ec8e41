#include "can/views/dialogcanexpoptscfg.h"

#include <QDialogButtonBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

class tst_DialogCanExpOptsCfg : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { m_dialog.reset(); }

    void theTitleNamesThePort();
    void theModeIsShown_data();
    void theModeIsShown();
    void aChoiceSetsTheBitsOfTheMode_data();
    void aChoiceSetsTheBitsOfTheMode();
    void aModeThatIsNotChangedKeepsItsBits();
    void theNamesFollowTheTypedText();
    void theNamesFollowTheChoice();
    void anEmptyNameIsUnspecified();
    void theEthernetPortHasItsOwnKind();
    void blanksAroundTheNameAreDropped();
    void theNameIsEditedFirst();
    void returnAcceptsAndEscapeRejects();

private:
    DialogCanExpOptsCfg &open(const QString &customName, int mode,
                              const QString &label = QStringLiteral("CAN"))
    {
        m_dialog = std::make_unique<DialogCanExpOptsCfg>(label, 4, customName, quint8(mode));
        return *m_dialog;
    }
    QRadioButton *choice(const QString &name)
    {
        return m_dialog->findChild<QRadioButton *>(QStringLiteral("radioButton_") + name);
    }
    QLineEdit *line()
    {
        return m_dialog->findChild<QLineEdit *>(QStringLiteral("lineEdit_custom_name"));
    }
    // All shown names of channel groups.
    QString names()
    {
        QStringList names;
        for (const char *kind : {"DBC", "DBCMUX", "CCP_XCP", "XCP"}) {
            const auto *name = m_dialog->findChild<QLineEdit *>(QStringLiteral("lineEdit_name_")
                                                                + QLatin1String(kind));
            if (name)
                names += name->text();
        }
        return names.join(QLatin1Char(' '));
    }

    std::unique_ptr<DialogCanExpOptsCfg> m_dialog;
};

void tst_DialogCanExpOptsCfg::theTitleNamesThePort()
{
    QCOMPARE(open({}, 0).windowTitle(), QStringLiteral("CAN-4 Export Options"));
    QCOMPARE(open({}, 0, QStringLiteral("ETH")).windowTitle(),
             QStringLiteral("ETH-4 Export Options"));
}

void tst_DialogCanExpOptsCfg::theModeIsShown_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("checked");

    QTest::newRow("neither") << 0 << "port";
    QTest::newRow("bit 0") << 1 << "append";
    QTest::newRow("bit 1") << 2 << "only";
    QTest::newRow("both") << 3 << "only";
    QTest::newRow("other bits") << 0xFC << "port";
}

void tst_DialogCanExpOptsCfg::theModeIsShown()
{
    QFETCH(int, mode);
    QFETCH(QString, checked);
    open(QStringLiteral("Chassis"), mode);
    for (const char *name : {"port", "append", "only"})
        QCOMPARE(choice(QLatin1String(name))->isChecked(), QLatin1String(name) == checked);
    QCOMPARE(line()->text(), QStringLiteral("Chassis"));
}

void tst_DialogCanExpOptsCfg::aChoiceSetsTheBitsOfTheMode_data()
{
    QTest::addColumn<int>("before");
    QTest::addColumn<QString>("chosen");
    QTest::addColumn<int>("after");

    QTest::newRow("append") << 0 << "append" << 1;
    QTest::newRow("alone") << 1 << "only" << 2;
    QTest::newRow("neither") << 3 << "port" << 0;
    QTest::newRow("other bits stay") << 0xFE << "append" << 0xFD;
}

void tst_DialogCanExpOptsCfg::aChoiceSetsTheBitsOfTheMode()
{
    QFETCH(int, before);
    QFETCH(QString, chosen);
    open({}, before);
    choice(chosen)->click();
    QTEST(int(m_dialog->mode()), "after");
}

void tst_DialogCanExpOptsCfg::aModeThatIsNotChangedKeepsItsBits()
{
    QCOMPARE(int(open({}, 3).mode()), 3);
    choice(QStringLiteral("port"))->click();
    choice(QStringLiteral("only"))->click();
    QCOMPARE(int(m_dialog->mode()), 3);
}

void tst_DialogCanExpOptsCfg::theNamesFollowTheTypedText()
{
    open(QStringLiteral("Chas"), 1).show();
    QCOMPARE(names(), QStringLiteral("CAN_4_Chas_DBC CAN_4_Chas_DBCMUX CAN_4_Chas_CCP_XCP"));
    line()->setFocus();
    line()->end(false);
    QTest::keyClicks(line(), QStringLiteral("sis"));
    QCOMPARE(names(),
             QStringLiteral("CAN_4_Chassis_DBC CAN_4_Chassis_DBCMUX CAN_4_Chassis_CCP_XCP"));
    QCOMPARE(m_dialog->customName(), QStringLiteral("Chassis"));
}

void tst_DialogCanExpOptsCfg::theNamesFollowTheChoice()
{
    open(QStringLiteral("Chassis"), 1);
    choice(QStringLiteral("only"))->click();
    QCOMPARE(names(), QStringLiteral("Chassis_DBC Chassis_DBCMUX Chassis_CCP_XCP"));
    choice(QStringLiteral("port"))->click();
    QCOMPARE(names(), QStringLiteral("CAN_4_DBC CAN_4_DBCMUX CAN_4_CCP_XCP"));
}

void tst_DialogCanExpOptsCfg::anEmptyNameIsUnspecified()
{
    open(QStringLiteral("X"), 2);
    line()->clear();
    QCOMPARE(names(), QStringLiteral("Unspecified_DBC Unspecified_DBCMUX Unspecified_CCP_XCP"));
}

void tst_DialogCanExpOptsCfg::theEthernetPortHasItsOwnKind()
{
    open(QStringLiteral("Camera"), 1, QStringLiteral("ETH"));
    QCOMPARE(names(), QStringLiteral("ETH_4_Camera_XCP"));
}

void tst_DialogCanExpOptsCfg::blanksAroundTheNameAreDropped()
{
    QCOMPARE(open(QStringLiteral(" My bus "), 2).customName(), QStringLiteral("My bus"));
    QCOMPARE(names(), QStringLiteral("My bus_DBC My bus_DBCMUX My bus_CCP_XCP"));
}

void tst_DialogCanExpOptsCfg::theNameIsEditedFirst()
{
    open({}, 1).show();
    QVERIFY(QTest::qWaitForWindowActive(m_dialog.get()));
    QVERIFY(line()->hasFocus());
}

void tst_DialogCanExpOptsCfg::returnAcceptsAndEscapeRejects()
{
    open({}, 1).show();
    QTest::keyClick(line(), Qt::Key_Return);
    QCOMPARE(m_dialog->result(), int(QDialog::Accepted));
    m_dialog->show();
    QTest::keyClick(line(), Qt::Key_Escape);
    QCOMPARE(m_dialog->result(), int(QDialog::Rejected));
}

QTEST_MAIN(tst_DialogCanExpOptsCfg)
#include "tst_dialogcanexpoptscfg.moc"
