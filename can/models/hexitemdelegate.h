#pragma once

#include <QStyledItemDelegate>

// Edits a cell of hexadecimal text: nothing else can be typed.
class HexItemDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override;
};
