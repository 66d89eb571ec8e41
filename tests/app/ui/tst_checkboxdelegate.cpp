#include "app/ui/checkboxdelegate.h"

#include <QStandardItemModel>
#include <QTableView>
#include <QTest>

class tst_CheckBoxDelegate : public QObject
{
    Q_OBJECT

private slots:
    void aClickAnywhereInTheCellChangesTheBox();
    void aDoubleClickIsTwoClicks();
    void selectingMoreRowsChangesNoBox();
    void aBoxThatCannotBeChangedStays();
    void theSpaceBarChangesTheBox();
    void theBoxStandsInTheMiddle();
};

namespace {

struct Table
{
    Table()
    {
        auto *item = new QStandardItem;
        item->setCheckable(true);
        item->setEditable(false);
        model.setItem(0, item);
        view.setModel(&model);
        view.setItemDelegateForColumn(0, new CheckBoxDelegate(&view));
        view.setColumnWidth(0, 200);
        view.show();
    }
    [[nodiscard]] QRect cell() const { return view.visualRect(model.index(0, 0)); }
    [[nodiscard]] bool isChecked() const { return model.item(0)->checkState() == Qt::Checked; }
    void click(const QPoint &place, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::mouseClick(view.viewport(), Qt::LeftButton, modifiers, place);
    }

    QStandardItemModel model{1, 1};
    QTableView view;
};

} // namespace

void tst_CheckBoxDelegate::aClickAnywhereInTheCellChangesTheBox()
{
    Table table;
    table.click(table.cell().center());
    QVERIFY(table.isChecked());
    table.click(table.cell().topLeft() + QPoint(2, 2));
    QVERIFY(!table.isChecked());
}

void tst_CheckBoxDelegate::aDoubleClickIsTwoClicks()
{
    Table table;
    table.click(table.cell().center());
    QTest::mouseDClick(table.view.viewport(), Qt::LeftButton, {}, table.cell().center());
    QTest::mouseRelease(table.view.viewport(), Qt::LeftButton, {}, table.cell().center());
    QVERIFY(!table.isChecked());
}

void tst_CheckBoxDelegate::selectingMoreRowsChangesNoBox()
{
    Table table;
    table.click(table.cell().center(), Qt::ControlModifier);
    table.click(table.cell().center(), Qt::ShiftModifier);
    QVERIFY(!table.isChecked());
}

void tst_CheckBoxDelegate::aBoxThatCannotBeChangedStays()
{
    Table table;
    table.model.item(0)->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
    table.click(table.cell().center());
    QVERIFY(!table.isChecked());
}

void tst_CheckBoxDelegate::theSpaceBarChangesTheBox()
{
    Table table;
    table.view.setCurrentIndex(table.model.index(0, 0));
    QTest::keyClick(&table.view, Qt::Key_Space);
    QVERIFY(table.isChecked());
}

void tst_CheckBoxDelegate::theBoxStandsInTheMiddle()
{
    Table table;
    const auto drawn = [&table] { return table.view.viewport()->grab(table.cell()).toImage(); };
    const QImage unchecked = drawn();
    table.model.item(0)->setCheckState(Qt::Checked);
    const QImage checked = drawn();
    QRect changed;
    for (int x = 0; x < checked.width(); ++x) {
        for (int y = 0; y < checked.height(); ++y) {
            if (checked.pixel(x, y) != unchecked.pixel(x, y))
                changed |= QRect(x, y, 1, 1);
        }
    }
    QVERIFY(!changed.isEmpty());
    QVERIFY(qAbs(changed.center().x() - checked.rect().center().x()) < 5);
}

QTEST_MAIN(tst_CheckBoxDelegate)
#include "tst_checkboxdelegate.moc"
