#include "can/models/comboboxitemdelegate.h"
#include "can/models/modelidfilterelements.h"

#include <QComboBox>
#include <QSignalSpy>
#include <QTest>

class tst_ComboBoxItemDelegate : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void itOffersThreeTypesInTheirOrder();
    void itBeginsWithTheTypeOfTheRow();
    void aChosenTypeGoesToTheRow();
    void aTypeThatIsNotOfferedStays();
    void aChoiceEndsTheEdit();

private:
    [[nodiscard]] QModelIndex cell(int row) const
    {
        return m_model->index(row, ModelIDFilterElements::Type);
    }
    QComboBox *openEditor(int row)
    {
        QWidget *editor = m_delegate->createEditor(m_view.get(), {}, cell(row));
        m_delegate->setEditorData(editor, cell(row));
        return qobject_cast<QComboBox *>(editor);
    }

    std::unique_ptr<ModelIDFilterElements> m_model;
    std::unique_ptr<ComboBoxItemDelegate> m_delegate;
    std::unique_ptr<QWidget> m_view;
};

void tst_ComboBoxItemDelegate::init()
{
    m_view = std::make_unique<QWidget>();
    m_delegate = std::make_unique<ComboBoxItemDelegate>();
    m_model = std::make_unique<ModelIDFilterElements>();
    OwnedList<CanIdFilterElement> filters;
    filters.add().filter_type = 1;
    filters.add().filter_type = 3;
    m_model->setRows(filters);
}

void tst_ComboBoxItemDelegate::itOffersThreeTypesInTheirOrder()
{
    const QComboBox *box = openEditor(0);
    QCOMPARE(box->count(), 3);
    QCOMPARE(box->itemText(0), QStringLiteral("Range"));
    QCOMPARE(box->itemText(1), QStringLiteral("Dual"));
    QCOMPARE(box->itemText(2), QStringLiteral("Classic"));
}

void tst_ComboBoxItemDelegate::itBeginsWithTheTypeOfTheRow()
{
    QCOMPARE(openEditor(0)->currentText(), QStringLiteral("Dual"));
}

void tst_ComboBoxItemDelegate::aChosenTypeGoesToTheRow()
{
    QComboBox *box = openEditor(0);
    box->setCurrentIndex(2);
    m_delegate->setModelData(box, m_model.get(), cell(0));
    QCOMPARE(cell(0).data().toString(), QStringLiteral("Classic"));
}

void tst_ComboBoxItemDelegate::aTypeThatIsNotOfferedStays()
{
    QComboBox *box = openEditor(1);
    QCOMPARE(box->currentIndex(), -1);
    QCOMPARE(box->placeholderText(), QStringLiteral("Range T2"));
    m_delegate->setModelData(box, m_model.get(), cell(1));
    QCOMPARE(cell(1).data().toString(), QStringLiteral("Range T2"));
}

void tst_ComboBoxItemDelegate::aChoiceEndsTheEdit()
{
    QComboBox *box = openEditor(0);
    const QSignalSpy committed(m_delegate.get(), &ComboBoxItemDelegate::commitData);
    int closed = 0;
    connect(m_delegate.get(), &ComboBoxItemDelegate::closeEditor, this, [&closed] { ++closed; });
    QTest::keyClick(box, Qt::Key_Down);
    QCOMPARE(box->currentText(), QStringLiteral("Classic"));
    QCOMPARE(committed.count(), 1);
    QCOMPARE(closed, 1);
}

QTEST_MAIN(tst_ComboBoxItemDelegate)
#include "tst_comboboxitemdelegate.moc"
