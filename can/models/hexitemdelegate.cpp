#include "can/models/hexitemdelegate.h"

#include <QLineEdit>
#include <QRegularExpressionValidator>

QWidget *HexItemDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                                       const QModelIndex &index) const
{
    Q_UNUSED(option)
    Q_UNUSED(index)
    auto *line = new QLineEdit(parent);
    line->setFrame(false);
    line->setAccessibleName(tr("Identifier, hexadecimal"));
    line->setValidator(new QRegularExpressionValidator(
        QRegularExpression(QStringLiteral("(0[xX])?[0-9A-Fa-f]{1,8}")), line));
    return line;
}
