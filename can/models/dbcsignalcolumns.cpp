#include "can/models/dbcsignalcolumns.h"

#include "app/ui/plaintooltip.h"
#include "can/dbcmessages.h"
#include "config/shorttext.h"

#include <QStringList>

#include <cmath>

using Signal = StreamingClass_DBC_Signal;
using namespace dbcsignalcolumns;

namespace {

constexpr int doubleDigits = 15; // that every double shows without noise
// Characters that are shown: of a cell more than a usual description has, which the filter shall find.
constexpr int maxCellText = 2'000;
constexpr int maxToolTipText = 1'000; // of a description
constexpr int maxToolTipName = 200;   // and of a name or unit

QString text(double value)
{
    return QString::number(value, 'g', doubleDigits);
}

// A table cell has one line.
QString cellText(const QString &text)
{
    const QString shown = shortText(text, maxCellText);
    return shown.contains(QLatin1Char('\n')) ? shown.simplified() : shown;
}

// An edit that changes nothing is refused, so that nothing is sent for it.
template <class T>
bool change(T &field, const T &value)
{
    if (field == value)
        return false;
    field = value;
    return true;
}

bool setNumber(double &field, const QVariant &value)
{
    bool isNumber = false;
    const double number =
        value.toString().trimmed().replace(QLatin1Char(','), QLatin1Char('.')).toDouble(&isNumber);
    return isNumber && std::isfinite(number) && change(field, number);
}

Column titled(const QString &title, const QString &toolTip,
              Qt::Alignment alignment = Qt::AlignCenter)
{
    Column column;
    column.title = title;
    column.tool_tip = toolTip;
    column.alignment = alignment;
    return column;
}

void makeCheckBox(Column &column, quint8 flag)
{
    column.is_checked = [flag](const Signal &s) { return (s.selection_flags & flag) != 0; };
    column.check = [flag](Signal &s, bool on) {
        s.selection_flags = quint8(on ? s.selection_flags | flag : s.selection_flags & ~flag);
    };
}

Column recordColumn()
{
    Column column =
        titled(QStringLiteral("Record"), QStringLiteral("Ticked: the logger stores the signal"));
    makeCheckBox(column, Signal::recordFlag);
    return column;
}

Column liveColumn()
{
    Column column =
        titled(QStringLiteral("Live"),
               QStringLiteral("Ticked: the value is shown while the logger is connected. Of a "
                              "message of which no signal is recorded, values come once the "
                              "channel is written to the logger, whose filters keep it back "
                              "before"));
    makeCheckBox(column, Signal::liveFlag);
    return column;
}

Column nameColumn()
{
    Column column =
        titled(QStringLiteral("Name"), QStringLiteral("Name of the signal, as recordings show it"),
               Qt::AlignLeft);
    column.text = [](const Signal &s) { return cellText(s.name); };
    column.value = [](const Signal &s) { return s.name; };
    column.set = [](Signal &s, const QVariant &value) {
        const QString name = value.toString().trimmed();
        return !name.isEmpty() && change(s.name, name);
    };
    return column;
}

Column valueColumn()
{
    Column column =
        titled(QStringLiteral("Value"),
               QStringLiteral("Last value that was received, in the signal's unit. Empty: "
                              "none yet"),
               Qt::AlignLeft);
    column.text = [](const Signal &s) {
        return s.live_seen ? QVariant(text(s.live_value)) : QVariant(QString());
    };
    column.set = [](Signal &s, const QVariant &value) {
        s.live_value = value.toDouble();
        s.live_seen = true;
        return true;
    };
    column.has_editor = false;
    return column;
}

Column unitColumn()
{
    Column column = titled(QStringLiteral("Unit"), QStringLiteral("Physical unit of the value"));
    column.text = [](const Signal &s) { return cellText(s.unit); };
    column.value = [](const Signal &s) { return s.unit; };
    column.set = [](Signal &s, const QVariant &value) {
        return change(s.unit, value.toString().trimmed());
    };
    return column;
}

Column numberColumn(const QString &title, const QString &toolTip, double Signal::*field)
{
    Column column = titled(title, toolTip, Qt::AlignRight);
    column.text = [field](const Signal &s) { return text(s.*field); };
    column.set = [field](Signal &s, const QVariant &value) { return setNumber(s.*field, value); };
    return column;
}

Column idColumn()
{
    Column column =
        titled(QStringLiteral("ID [hex]"),
               QStringLiteral("Identifier of the message, hexadecimal: up to 7FF with 11 "
                              "bits, up to 1FFFFFFF with 29 bits"));
    column.text = [](const Signal &s) { return QString::number(s.msg_id, 16).toUpper(); };
    return column;
}

Column descriptionColumn()
{
    Column column = titled(QStringLiteral("Description"),
                           QStringLiteral("Comment on the signal in the DBC file"), Qt::AlignLeft);
    column.text = [](const Signal &s) { return cellText(s.description); };
    return column;
}

Column columnOf(Field field)
{
    switch (field) {
    case Field::Record:
        return recordColumn();
    case Field::Live:
        return liveColumn();
    case Field::Name:
        return nameColumn();
    case Field::Value:
        return valueColumn();
    case Field::Unit:
        return unitColumn();
    case Field::Multiplicator:
        return numberColumn(QStringLiteral("Multiplicator"),
                            QStringLiteral("Value = raw value x multiplicator + offset"),
                            &Signal::factor);
    case Field::Offset:
        return numberColumn(QStringLiteral("Offset"),
                            QStringLiteral("Added to the scaled raw value, in the signal's unit"),
                            &Signal::offset);
    case Field::Id:
        return idColumn();
    case Field::Description:
        return descriptionColumn();
    }
    return {};
}

QString layoutInMessage(const Signal &s)
{
    return QStringLiteral("Message %1 (%2-bit identifier, %3 bytes)\n"
                          "Start bit %4, %5 bits, %6, %7")
        .arg(QString::number(s.msg_id, 16).toUpper())
        .arg(s.extended_id ? 29 : 11)
        .arg(s.dlc)
        .arg(s.start_bit)
        .arg(s.bit_length)
        .arg(s.little_endian ? QStringLiteral("Intel") : QStringLiteral("Motorola"),
             can::valueKindText(s));
}

} // namespace

std::vector<Field> dbcsignalcolumns::fieldsOf(Model_DBC_Signals::Layout layout)
{
    if (layout == Model_DBC_Signals::Layout::SelectionDialog)
        return {Field::Record, Field::Id, Field::Name, Field::Unit, Field::Description};
    return {Field::Record,        Field::Live,   Field::Name, Field::Value,      Field::Unit,
            Field::Multiplicator, Field::Offset, Field::Id,   Field::Description};
}

std::vector<Column> dbcsignalcolumns::columnsOf(Model_DBC_Signals::Layout layout)
{
    std::vector<Column> columns;
    for (const Field field : fieldsOf(layout)) {
        columns.push_back(columnOf(field));
        if (layout == Model_DBC_Signals::Layout::SelectionDialog)
            columns.back().set = {};
    }
    return columns;
}

QVariant dbcsignalcolumns::sortValue(const Signal &signal, Field field)
{
    switch (field) {
    case Field::Record:
        return (signal.selection_flags & Signal::recordFlag) != 0 ? 1 : 0;
    case Field::Live:
        return (signal.selection_flags & Signal::liveFlag) != 0 ? 1 : 0;
    case Field::Name:
        return signal.name;
    case Field::Value:
        return signal.live_seen ? QVariant(signal.live_value) : QVariant();
    case Field::Unit:
        return signal.unit;
    case Field::Multiplicator:
        return signal.factor;
    case Field::Offset:
        return signal.offset;
    case Field::Id:
        return signal.msg_id;
    case Field::Description:
        return signal.description;
    }
    return {};
}

bool dbcsignalcolumns::isForLogger(Field field)
{
    return field != Field::Live && field != Field::Value;
}

QString dbcsignalcolumns::toolTip(const Signal &signal, const QString &lastLine)
{
    QStringList lines{shortText(signal.name, maxToolTipName), layoutInMessage(signal)};
    lines += QStringLiteral("Value = raw x %1 + %2, %3 to %4 %5")
                 .arg(text(signal.factor), text(signal.offset), text(signal.minimum),
                      text(signal.maximum), shortText(signal.unit, maxToolTipName))
                 .trimmed();
    if (signal.mux_kind == MultiplexedSignal)
        lines += QStringLiteral("Sent while the multiplexor is %1").arg(signal.mux_value);
    if (!signal.description.isEmpty())
        lines += shortText(signal.description, maxToolTipText);
    if (!lastLine.isEmpty())
        lines += lastLine;
    return plainToolTip(lines.join(QLatin1Char('\n')));
}
