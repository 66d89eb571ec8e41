#include "can/views/canbytefields.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>

class tst_CanByteFields : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void aFullFieldLeadsToTheNextOne();
    void theLastEnabledFieldKeepsTheFocus();
    void onlyHexadecimalDigitsCanBeTyped();
    void pastedBytesSpreadOverTheFields_data();
    void pastedBytesSpreadOverTheFields();
    void aPasteEndsAtTheLastEnabledField();
    void onlyTheFieldsOfTheFormatShow();
    void everyFieldSaysWhatItIs();
    void returnIsTold();

private:
    QLineEdit *field(int position) const
    {
        return m_fields->findChild<QLineEdit *>(QStringLiteral("lineEdit_byte_%1").arg(position));
    }
    void pasteInto(int position, const QString &text)
    {
        QGuiApplication::clipboard()->setText(text);
        QTest::keySequence(field(position), QKeySequence(QKeySequence::Paste));
    }

    std::unique_ptr<CanByteFields> m_fields;
};

void tst_CanByteFields::init()
{
    m_fields = std::make_unique<CanByteFields>();
    m_fields->showFields(64);
    m_fields->enableFields(8);
    m_fields->show();
    m_fields->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_fields.get()));
}

void tst_CanByteFields::aFullFieldLeadsToTheNextOne()
{
    m_fields->focusField(0);
    QTest::keyClicks(field(0), QStringLiteral("a"));
    QVERIFY(field(0)->hasFocus());
    QTest::keyClicks(field(0), QStringLiteral("b"));
    QVERIFY(field(1)->hasFocus());
    QCOMPARE(m_fields->texts().mid(0, 2),
             QStringList({QStringLiteral("ab"), QStringLiteral("00")}));
}

void tst_CanByteFields::theLastEnabledFieldKeepsTheFocus()
{
    m_fields->focusField(7);
    QTest::keyClicks(field(7), QStringLiteral("12"));
    QVERIFY(field(7)->hasFocus());
}

void tst_CanByteFields::onlyHexadecimalDigitsCanBeTyped()
{
    m_fields->focusField(0);
    QTest::keyClicks(field(0), QStringLiteral("xg1-"));
    QCOMPARE(field(0)->text(), QStringLiteral("1"));
}

void tst_CanByteFields::pastedBytesSpreadOverTheFields_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("blanks") << QStringLiteral("01 a2 FF");
    QTest::newRow("nothing between") << QStringLiteral("01a2FF");
    QTest::newRow("prefixes") << QStringLiteral("0x01, 0xa2, 0xFF");
    QTest::newRow("a single digit") << QStringLiteral("1 a2 FF");
}

void tst_CanByteFields::pastedBytesSpreadOverTheFields()
{
    QFETCH(QString, text);
    pasteInto(1, text);
    QCOMPARE(m_fields->texts().mid(0, 5).join(QLatin1Char(' ')), QStringLiteral("00 01 a2 FF 00"));
}

void tst_CanByteFields::aPasteEndsAtTheLastEnabledField()
{
    pasteInto(6, QStringLiteral("01 02 03 04"));
    QCOMPARE(m_fields->texts().mid(6, 3).join(QLatin1Char(' ')), QStringLiteral("01 02 00"));
}

void tst_CanByteFields::onlyTheFieldsOfTheFormatShow()
{
    m_fields->showFields(8);
    QVERIFY(field(7)->isVisible());
    QVERIFY(!field(8)->isVisible());
    m_fields->showFields(64);
    QVERIFY(field(63)->isVisible());
}

void tst_CanByteFields::everyFieldSaysWhatItIs()
{
    for (int i = 0; i < CanByteFields::maxBytes; ++i) {
        QVERIFY(field(i)->accessibleName().endsWith(QString::number(i)));
        QVERIFY(!field(i)->toolTip().isEmpty());
    }
}

void tst_CanByteFields::returnIsTold()
{
    const QSignalSpy told(m_fields.get(), &CanByteFields::returnPressed);
    QTest::keyClick(field(3), Qt::Key_Return);
    QCOMPARE(told.size(), 1);
}

QTEST_MAIN(tst_CanByteFields)
#include "tst_canbytefields.moc"
