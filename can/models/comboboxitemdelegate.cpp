#include "can/models/comboboxitemdelegate.h"

#include "config/valuenames.h"

#include <QComboBox>
#include <QTimer>

namespace {

constexpr std::size_t offeredTypes = 3; // a row of "Range T2" is kept and shown, not made

} // namespace

QWidget *ComboBoxItemDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                                            const QModelIndex &index) const
{
    Q_UNUSED(option)
    Q_UNUSED(index)
    auto *box = new QComboBox(parent);
    for (std::size_t type = 0; type < offeredTypes; ++type)
        box->addItem(valuenames::nameOf(valuenames::canFilterTypes, type));
    box->setAccessibleName(tr("Filter type"));
    // The choice counts at once, not only when the cell is left.
    connect(box, QOverload<int>::of(&QComboBox::activated), this,
            &ComboBoxItemDelegate::takeChoice);
    // Open from the start, once the view has put the editor in its place.
    QTimer::singleShot(0, box, &QComboBox::showPopup);
    return box;
}

void ComboBoxItemDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    auto *box = static_cast<QComboBox *>(editor);
    const QString type = index.data(Qt::EditRole).toString();
    box->setPlaceholderText(type); // shown for a type that isn't offered
    box->setCurrentIndex(box->findText(type));
}

void ComboBoxItemDelegate::setModelData(QWidget *editor, QAbstractItemModel *model,
                                        const QModelIndex &index) const
{
    auto *box = static_cast<QComboBox *>(editor);
    if (box->currentIndex() >= 0) // none: a type that isn't offered stays
        model->setData(index, box->currentText(), Qt::EditRole);
}

void ComboBoxItemDelegate::takeChoice()
{
    auto *box = static_cast<QComboBox *>(sender());
    emit commitData(box);
    emit closeEditor(box);
}
