#include "app/ui/appstyle.h"

#include <QApplication>
#include <QDebug>
#include <QPalette>
#include <QStyle>
#include <QStyleFactory>

namespace {

QPalette calmPalette()
{
    const QColor text(0x1F, 0x29, 0x33);
    const QColor faintText(0x8A, 0x94, 0x9E);
    const QColor accent(0x1F, 0x6F, 0xA8);

    QPalette palette(QColor(0xEE, 0xF0, 0xF2), QColor(0xF3, 0xF4, 0xF6));
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::ButtonText, text);
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::AlternateBase, QColor(0xF6, 0xF8, 0xFA));
    palette.setColor(QPalette::ToolTipBase, QColor(0xFF, 0xFF, 0xFF));
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::PlaceholderText, faintText);
    palette.setColor(QPalette::Highlight, accent);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, accent);
    for (const QPalette::ColorRole role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, faintText);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(0xC9, 0xCF, 0xD5));
    palette.setColor(QPalette::Disabled, QPalette::Base, QColor(0xF3, 0xF4, 0xF6));
    return palette;
}

} // namespace

void appstyle::apply(QApplication &application)
{
    qDebug("Windows Vista Style");
    if (QStyle *native = QStyleFactory::create(QStringLiteral("windowsvista"))) {
        application.setStyle(native);
        return;
    }
    application.setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    application.setPalette(calmPalette());
}
