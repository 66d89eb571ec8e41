#include "can/models/hexitemdelegate.h"

#include <QLineEdit>
#include <QTest>

class tst_HexItemDelegate : public QObject
{
    Q_OBJECT

private slots:
    void onlyHexadecimalDigitsCanBeTyped();
    void theUsualPrefixCanBeTyped();
    void noMoreThanEightDigitsCanBeTyped();

private:
    static QString typed(const QString &keys)
    {
        QWidget parent;
        const HexItemDelegate delegate;
        QWidget *editor = delegate.createEditor(&parent, {}, {});
        QTest::keyClicks(editor, keys);
        return qobject_cast<QLineEdit *>(editor)->text();
    }
};

void tst_HexItemDelegate::onlyHexadecimalDigitsCanBeTyped()
{
    QCOMPARE(typed(QStringLiteral("-1gF x0.")), QStringLiteral("1F0"));
}

void tst_HexItemDelegate::theUsualPrefixCanBeTyped()
{
    QCOMPARE(typed(QStringLiteral("0x7fF")), QStringLiteral("0x7fF"));
}

void tst_HexItemDelegate::noMoreThanEightDigitsCanBeTyped()
{
    QCOMPARE(typed(QStringLiteral("123456789")), QStringLiteral("12345678"));
}

QTEST_MAIN(tst_HexItemDelegate)
#include "tst_hexitemdelegate.moc"
