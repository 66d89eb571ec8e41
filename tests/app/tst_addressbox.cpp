#include "tests/app/windowbench.h"

#include <QFile>
#include <QLineEdit>
#include <QTest>

class tst_AddressBox : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_bench = std::make_unique<WindowBench>(); }
    void cleanup() { m_bench.reset(); }

    void theStoredAddressStandsFirst();
    void aStoredStandardAddressStandsOnce();
    void typingReplacesTheCurrentItem();
    void typingInTheMiddleKeepsTheCursorThere();
    void typingAnItemSelectsIt();
    void blanksAreTrimmedForConnectingAndStoring();
    void theAddressIsStoredWhenTheSequenceStarts();
    void anAddressThatDoesNotConnectIsNotStored();
    void returnConnects();

private:
    void store(const QByteArray &address) const
    {
        QFile file(m_bench->settingsPath());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("[general]\nip_address = " + address + "\n");
    }
    QStringList items() const
    {
        QStringList texts;
        for (int i = 0; i < m_bench->addressBox()->count(); ++i)
            texts += m_bench->addressBox()->itemText(i);
        return texts;
    }
    void type(const QString &text) const
    {
        QLineEdit *line = m_bench->addressBox()->lineEdit();
        line->selectAll();
        QTest::keyClicks(line, text);
    }
    QString stored() const { return UserSettings(m_bench->settingsPath()).ipAddress(); }

    std::unique_ptr<WindowBench> m_bench;
};

namespace {

const QStringList defaults = {QStringLiteral("192.168.2.1"), QStringLiteral("192.168.1.111"),
                              QStringLiteral("192.168.200.1")};

} // namespace

void tst_AddressBox::theStoredAddressStandsFirst()
{
    QCOMPARE(items(), defaults);
    m_bench = std::make_unique<WindowBench>();
    store("127.0.0.9");
    QCOMPARE(items(), QStringList({QStringLiteral("127.0.0.9")}) + defaults.mid(1));
    QCOMPARE(m_bench->addressBox()->currentText(), QStringLiteral("127.0.0.9"));
}

void tst_AddressBox::aStoredStandardAddressStandsOnce()
{
    store("192.168.200.1");
    QCOMPARE(items(),
             QStringList({QStringLiteral("192.168.200.1"), QStringLiteral("192.168.1.111")}));
}

void tst_AddressBox::typingReplacesTheCurrentItem()
{
    m_bench->window();
    type(QStringLiteral("10.0.0.5"));
    QCOMPARE(items(), QStringList({QStringLiteral("10.0.0.5")}) + defaults.mid(1));
    QCOMPARE(m_bench->addressBox()->currentText(), QStringLiteral("10.0.0.5"));
    QCOMPARE(m_bench->addressBox()->lineEdit()->cursorPosition(), 8);
}

void tst_AddressBox::typingInTheMiddleKeepsTheCursorThere()
{
    m_bench->window();
    QLineEdit *line = m_bench->addressBox()->lineEdit();
    line->setCursorPosition(8); // 192.168.|2.1
    QTest::keyClicks(line, QStringLiteral("11"));
    QCOMPARE(m_bench->addressBox()->itemText(0), QStringLiteral("192.168.112.1"));
    QCOMPARE(line->cursorPosition(), 10);
}

void tst_AddressBox::typingAnItemSelectsIt()
{
    m_bench->window();
    type(QStringLiteral("192.168.1.111"));
    QCOMPARE(m_bench->addressBox()->currentIndex(), 1);
    QCOMPARE(items().at(1), QStringLiteral("192.168.1.111"));
    QCOMPARE(m_bench->addressBox()->count(), 3);
}

void tst_AddressBox::blanksAreTrimmedForConnectingAndStoring()
{
    m_bench->window();
    type(QStringLiteral(" 10.0.0.5 "));
    m_bench->connectByButton(true);
    QCOMPARE(m_bench->link->calls().first(), QStringLiteral("connect 10.0.0.5"));
    QCOMPARE(stored(), QStringLiteral("10.0.0.5"));
}

void tst_AddressBox::theAddressIsStoredWhenTheSequenceStarts()
{
    m_bench->window();
    type(QStringLiteral("10.0.0.6"));
    m_bench->link->session.version.reset();
    m_bench->connectByButton(true);
    QCOMPARE(stored(), QStringLiteral("10.0.0.6"));
}

void tst_AddressBox::anAddressThatDoesNotConnectIsNotStored()
{
    m_bench->window();
    type(QStringLiteral("10.0.0.7"));
    m_bench->link->connects = false;
    m_bench->connectByButton(true);
    QCOMPARE(stored(), QStringLiteral("192.168.2.1"));
}

void tst_AddressBox::returnConnects()
{
    m_bench->window();
    QTest::keyClick(m_bench->addressBox()->lineEdit(), Qt::Key_Return);
    QCOMPARE(m_bench->link->calls().value(0), QStringLiteral("connect 192.168.2.1"));
}

QTEST_MAIN(tst_AddressBox)
#include "tst_addressbox.moc"
