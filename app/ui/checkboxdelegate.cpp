#include "app/ui/checkboxdelegate.h"

#include <QApplication>
#include <QMouseEvent>
#include <QStyle>

void CheckBoxDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                             const QModelIndex &index) const
{
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    const bool hasBox = cell.features.testFlag(QStyleOptionViewItem::HasCheckIndicator);
    cell.features.setFlag(QStyleOptionViewItem::HasCheckIndicator, false);
    const QStyle *style = cell.widget ? cell.widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &cell, painter, cell.widget);
    if (!hasBox)
        return;

    QStyleOptionViewItem box = cell;
    const QSize size(style->pixelMetric(QStyle::PM_IndicatorWidth, &cell, cell.widget),
                     style->pixelMetric(QStyle::PM_IndicatorHeight, &cell, cell.widget));
    box.rect = QStyle::alignedRect(cell.direction, Qt::AlignCenter, size, cell.rect);
    box.state.setFlag(QStyle::State_HasFocus, false);
    box.state.setFlag(cell.checkState == Qt::Checked ? QStyle::State_On : QStyle::State_Off);
    style->drawPrimitive(QStyle::PE_IndicatorItemViewItemCheck, &box, painter, cell.widget);
}

bool CheckBoxDelegate::editorEvent(QEvent *event, QAbstractItemModel *model,
                                   const QStyleOptionViewItem &option, const QModelIndex &index)
{
    // The release of a second click doesn't come here.
    if (event->type() != QEvent::MouseButtonRelease && event->type() != QEvent::MouseButtonDblClick)
        return QStyledItemDelegate::editorEvent(event, model, option, index);
    const auto *click = static_cast<QMouseEvent *>(event);
    if (click->button() != Qt::LeftButton || click->modifiers() != Qt::NoModifier
        || !option.rect.contains(click->pos()) || !index.flags().testFlag(Qt::ItemIsUserCheckable)
        || !index.flags().testFlag(Qt::ItemIsEnabled))
        return false;
    const bool isChecked = index.data(Qt::CheckStateRole).toInt() == Qt::Checked;
    return model->setData(index, isChecked ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
}
