#include "can/models/modelidfilterelements.h"

#include "can/canfilters.h"
#include "config/valuenames.h"

#include <algorithm>
#include <limits>
#include <optional>

namespace {

QString hexOf(quint32 id)
{
    return QString::number(id, 16).toUpper();
}

// Hexadecimal digits, with or without "0x". A number beyond 32 bits is the largest of them.
std::optional<quint32> idOf(const QString &text)
{
    QString digits = text.trimmed();
    if (digits.startsWith(QLatin1String("0x"), Qt::CaseInsensitive))
        digits.remove(0, 2);
    const auto isHex = [](QChar c) {
        return (c >= QLatin1Char('0') && c <= QLatin1Char('9'))
               || (c >= QLatin1Char('A') && c <= QLatin1Char('F'))
               || (c >= QLatin1Char('a') && c <= QLatin1Char('f'));
    };
    if (digits.isEmpty() || !std::all_of(digits.begin(), digits.end(), isHex))
        return std::nullopt;
    bool fits = false;
    const uint id = digits.toUInt(&fits, 16);
    return fits ? id : std::numeric_limits<quint32>::max();
}

bool setType(CanIdFilterElement &row, const QVariant &text)
{
    const auto &names = valuenames::canFilterTypes;
    const QString typed = text.toString();
    const auto name = std::find_if(std::begin(names), std::end(names),
                                   [&typed](const char *n) { return typed == QLatin1String(n); });
    if (name == std::end(names))
        return false;
    row.filter_type = quint8(name - std::begin(names));
    return true;
}

TableColumn<CanIdFilterElement> idColumn(const QString &title, const QString &toolTip,
                                         quint32 CanIdFilterElement::*id)
{
    TableColumn<CanIdFilterElement> column;
    column.title = title;
    column.tool_tip = toolTip;
    column.text = [id](const CanIdFilterElement &row) { return hexOf(row.*id); };
    column.set = [id](CanIdFilterElement &row, const QVariant &text) {
        const std::optional<quint32> typed = idOf(text.toString());
        if (typed)
            row.*id = *typed;
        return typed.has_value();
    };
    return column;
}

TableColumn<CanIdFilterElement> flagColumn(const QString &title, const QString &toolTip,
                                           const QString &clear, const QString &set,
                                           quint8 CanIdFilterElement::*flag)
{
    TableColumn<CanIdFilterElement> column;
    column.title = title;
    column.alignment = Qt::AlignLeft; // beside the box
    column.tool_tip = toolTip;
    column.text = [=](const CanIdFilterElement &row) { return row.*flag != 0 ? set : clear; };
    column.is_checked = [flag](const CanIdFilterElement &row) { return row.*flag != 0; };
    column.check = [flag](CanIdFilterElement &row, bool on) { row.*flag = on ? 1 : 0; };
    return column;
}

std::vector<TableColumn<CanIdFilterElement>> columns()
{
    TableColumn<CanIdFilterElement> type;
    type.title = QStringLiteral("Type");
    type.tool_tip = QStringLiteral("How ID-1 and ID-2 are compared with a frame's identifier");
    type.text = [](const CanIdFilterElement &row) {
        return valuenames::nameOf(valuenames::canFilterTypes, row.filter_type);
    };
    type.set = setType;
    return {
        type,
        flagColumn(
            QStringLiteral("Reject/Accept\r\non Match"),
            QStringLiteral("Checked: frames that match are rejected, else they are accepted"),
            QStringLiteral("Accept"), QStringLiteral("Reject"), &CanIdFilterElement::reject),
        flagColumn(QStringLiteral("11/29-Bit-ID"),
                   QStringLiteral("Checked: the row is about 29-bit identifiers, else 11-bit ones"),
                   QStringLiteral("11-Bit"), QStringLiteral("29-Bit"),
                   &CanIdFilterElement::extended),
        idColumn(QStringLiteral("ID-1\r\n[hex]"),
                 QStringLiteral("First identifier, hexadecimal: up to 7FF or 1FFFFFFF"),
                 &CanIdFilterElement::id1),
        idColumn(QStringLiteral("ID-2\r\n[hex]"),
                 QStringLiteral("Second identifier or the mask, hexadecimal: up to 7FF or "
                                "1FFFFFFF"),
                 &CanIdFilterElement::id2),
    };
}

} // namespace

ModelIDFilterElements::ModelIDFilterElements(QObject *parent)
    : ColumnTableModel(columns(), parent)
{}

void ModelIDFilterElements::setRows(const OwnedList<CanIdFilterElement> &rows)
{
    beginResetModel();
    m_rows.clear();
    for (const CanIdFilterElement *row : rows)
        m_rows.append(*row);
    endResetModel();
}

void ModelIDFilterElements::copyRowsTo(OwnedList<CanIdFilterElement> &rows) const
{
    rows.clear();
    for (const CanIdFilterElement &row : qAsConst(m_rows))
        rows.add() = row;
}

void ModelIDFilterElements::insertNew(int row)
{
    beginInsertRows({}, row, row);
    m_rows.insert(row, CanIdFilterElement{0, ClassicFilter, 0, 0, can::maxExtendedId});
    endInsertRows();
}

bool ModelIDFilterElements::removeRows(int row, int count, const QModelIndex &parent)
{
    if (parent.isValid() || row < 0 || count < 1 || row > m_rows.size() - count)
        return false;
    beginRemoveRows({}, row, row + count - 1);
    m_rows.erase(m_rows.begin() + row, m_rows.begin() + row + count);
    endRemoveRows();
    return true;
}

QVariant ModelIDFilterElements::otherData(int row, int column, int role) const
{
    Q_UNUSED(row)
    return role == Qt::ToolTipRole ? headerData(column, Qt::Horizontal, role) : QVariant();
}

void ModelIDFilterElements::edited(int row, int column)
{
    CanIdFilterElement &element = m_rows[row];
    const quint32 limit = element.extended ? can::maxExtendedId : can::maxStandardId;
    if (element.id1 <= limit && element.id2 <= limit) {
        ColumnTableModel::edited(row, column);
        return;
    }
    element.id1 = std::min(element.id1, limit);
    element.id2 = std::min(element.id2, limit);
    tellRowChanged(row);
}
