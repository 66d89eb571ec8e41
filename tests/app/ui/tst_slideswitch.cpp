#include "app/ui/slideswitch.h"

#include <QAccessible>
#include <QSignalSpy>
#include <QTest>

class tst_SlideSwitch : public QObject
{
    Q_OBJECT

private slots:
    void aClickAnywhereSwitches_data();
    void aClickAnywhereSwitches();
    void theSpaceBarSwitches();
    void settingItIsNoClick();
    void aDisabledSwitchStays();
    void itIsACheckBoxToAssistiveTools();
    void onAndOffLookDifferent();
    void theKnobMirrorsForRightToLeft();

private:
    static QImage picture(SlideSwitch &widget);
};

QImage tst_SlideSwitch::picture(SlideSwitch &widget)
{
    widget.resize(widget.sizeHint());
    return widget.grab().toImage();
}

void tst_SlideSwitch::aClickAnywhereSwitches_data()
{
    QTest::addColumn<bool>("onTheText");
    QTest::newRow("track") << false;
    QTest::newRow("text") << true;
}

void tst_SlideSwitch::aClickAnywhereSwitches()
{
    QFETCH(bool, onTheText);
    SlideSwitch widget;
    widget.setText(QStringLiteral("Transparent mode"));
    widget.show();
    const QSignalSpy clicked(&widget, &SlideSwitch::clicked);
    const int x = onTheText ? widget.width() - 4 : 10;
    QTest::mouseClick(&widget, Qt::LeftButton, {}, {x, widget.height() / 2});
    QVERIFY(widget.isChecked());
    QCOMPARE(clicked.count(), 1);
    QCOMPARE(clicked.first().first().toBool(), true);
}

void tst_SlideSwitch::theSpaceBarSwitches()
{
    SlideSwitch widget;
    QTest::keyClick(&widget, Qt::Key_Space);
    QVERIFY(widget.isChecked());
    QTest::keyClick(&widget, Qt::Key_Space);
    QVERIFY(!widget.isChecked());
}

void tst_SlideSwitch::settingItIsNoClick()
{
    SlideSwitch widget;
    const QSignalSpy clicked(&widget, &SlideSwitch::clicked);
    widget.setChecked(true);
    QVERIFY(clicked.isEmpty());
}

void tst_SlideSwitch::aDisabledSwitchStays()
{
    SlideSwitch widget;
    widget.setEnabled(false);
    QTest::mouseClick(&widget, Qt::LeftButton);
    QVERIFY(!widget.isChecked());
}

void tst_SlideSwitch::itIsACheckBoxToAssistiveTools()
{
    SlideSwitch widget;
    widget.setAccessibleName(QStringLiteral("Transparent mode"));
    QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(&widget);
    QVERIFY(accessible);
    QCOMPARE(accessible->role(), QAccessible::CheckBox);
    QCOMPARE(accessible->text(QAccessible::Name), QStringLiteral("Transparent mode"));
    QVERIFY(!accessible->state().checked);
    widget.setChecked(true);
    QVERIFY(accessible->state().checked);
}

void tst_SlideSwitch::onAndOffLookDifferent()
{
    SlideSwitch widget;
    const QImage off = picture(widget);
    widget.setChecked(true);
    const QImage on = picture(widget);
    widget.setEnabled(false);
    const QImage disabled = picture(widget);
    QVERIFY(off != on);
    QVERIFY(on != disabled);
}

void tst_SlideSwitch::theKnobMirrorsForRightToLeft()
{
    SlideSwitch widget;
    const QImage leftToRight = picture(widget);
    widget.setLayoutDirection(Qt::RightToLeft);
    QVERIFY(picture(widget) != leftToRight);
}

QTEST_MAIN(tst_SlideSwitch)
#include "tst_slideswitch.moc"
