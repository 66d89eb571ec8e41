#include "can/views/canbytefields.h"

#include "can/cantxrow.h"

#include <QClipboard>
#include <QFontDatabase>
#include <QGridLayout>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpression>
#include <QRegularExpressionValidator>

#include <algorithm>

namespace {

constexpr int columns = 16;
constexpr int digits = 2; // of a byte

QLabel *positionLabel(int position, QWidget *parent)
{
    auto *label = new QLabel(QString::number(position), parent);
    label->setAlignment(Qt::AlignCenter);
    label->setForegroundRole(QPalette::PlaceholderText);
    return label;
}

} // namespace

CanByteFields::CanByteFields(QWidget *parent)
    : QWidget(parent)
{
    auto *grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(3);
    grid->setColumnStretch(columns + 1, 1);
    for (int column = 0; column < columns; ++column) {
        m_columnLabels.push_back(positionLabel(column, this));
        grid->addWidget(m_columnLabels.back(), 0, column + 1);
    }
    for (int position = 0; position < maxBytes; ++position) {
        if (position % columns == 0) {
            m_rowLabels.push_back(positionLabel(position, this));
            grid->addWidget(m_rowLabels.back(), position / columns + 1, 0);
        }
        makeField(position);
        grid->addWidget(m_fields.back(), position / columns + 1, position % columns + 1);
    }
}

void CanByteFields::makeField(int position)
{
    static const QRegularExpression hexadecimal(QStringLiteral("[0-9A-Fa-f]{0,2}"));
    auto *field = new QLineEdit(QStringLiteral("00"), this);
    field->setObjectName(QStringLiteral("lineEdit_byte_%1").arg(position));
    field->setAccessibleName(tr("Data byte %1").arg(position));
    field->setToolTip(
        tr("Byte %1 of the frame's data, hexadecimal, 00 to FF. Pasted bytes go on in the "
           "fields behind it.")
            .arg(position));
    field->setMaxLength(digits);
    field->setValidator(new QRegularExpressionValidator(hexadecimal, field));
    field->setAlignment(Qt::AlignCenter);
    const QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    field->setFont(font);
    field->setFixedWidth(QFontMetrics(font).horizontalAdvance(QStringLiteral("00")) + 16);
    field->installEventFilter(this);
    connect(field, &QLineEdit::returnPressed, this, &CanByteFields::returnPressed);
    connect(field, &QLineEdit::textEdited, this, [this, position](const QString &text) {
        if (text.size() == digits)
            moveOn(position);
    });
    m_fields.push_back(field);
}

void CanByteFields::showFields(int count)
{
    for (int i = 0; i < maxBytes; ++i)
        m_fields[std::size_t(i)]->setVisible(i < count);
    for (std::size_t i = 0; i < m_rowLabels.size(); ++i)
        m_rowLabels[i]->setVisible(count > columns && int(i) * columns < count);
    for (std::size_t i = 0; i < m_columnLabels.size(); ++i)
        m_columnLabels[i]->setVisible(int(i) < count);
}

int CanByteFields::rowsFor(int bytes)
{
    return std::max(1, (bytes + columns - 1) / columns) * columns;
}

void CanByteFields::enableFields(int count)
{
    for (int i = 0; i < maxBytes; ++i)
        m_fields[std::size_t(i)]->setEnabled(i < count);
}

QStringList CanByteFields::texts() const
{
    QStringList all;
    for (const QLineEdit *field : m_fields)
        all += field->text();
    return all;
}

void CanByteFields::focusField(int position)
{
    QLineEdit *field = m_fields.at(std::size_t(position));
    field->setFocus();
    field->selectAll();
}

void CanByteFields::setTabOrderBetween(QWidget *first, QWidget *last)
{
    QWidget *before = first;
    for (QLineEdit *field : m_fields) {
        setTabOrder(before, field);
        before = field;
    }
    setTabOrder(before, last);
}

void CanByteFields::moveOn(int position)
{
    if (position + 1 < maxBytes && m_fields[std::size_t(position) + 1]->isEnabled())
        focusField(position + 1);
}

bool CanByteFields::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress
        || !static_cast<QKeyEvent *>(event)->matches(QKeySequence::Paste))
        return QWidget::eventFilter(watched, event);
    const auto field = std::find(m_fields.begin(), m_fields.end(), watched);
    paste(int(field - m_fields.begin()), QGuiApplication::clipboard()->text());
    return true;
}

void CanByteFields::paste(int position, const QString &text)
{
    for (const QString &byte : can::bytesInText(text, maxBytes - position)) {
        if (!m_fields[std::size_t(position)]->isEnabled())
            return;
        m_fields[std::size_t(position)]->setText(byte);
        focusField(position++);
    }
}
