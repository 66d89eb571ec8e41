#include "app/ui/plainpage.h"

#include <QLabel>
#include <QVBoxLayout>

namespace {

QLabel *plainLabel(const QString &text, const QString &name)
{
    auto *label = new QLabel(text);
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

} // namespace

PlainPage::PlainPage(const QString &title, const QString &text, QWidget *parent)
    : QWidget(parent)
{
    setAccessibleName(title);
    QLabel *titleLabel = plainLabel(title, QStringLiteral("label_page_title"));
    QFont font = titleLabel->font();
    font.setPointSizeF(font.pointSizeF() * 1.6);
    titleLabel->setFont(font);
    QLabel *textLabel = plainLabel(text, QStringLiteral("label_page_text"));
    textLabel->setForegroundRole(QPalette::PlaceholderText);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 20, 24, 20);
    layout->setSpacing(8);
    layout->addWidget(titleLabel);
    layout->addWidget(textLabel);
    layout->addStretch();
}
