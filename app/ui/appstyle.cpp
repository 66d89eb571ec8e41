#include "app/ui/appstyle.h"

#include <QApplication>
#include <QDebug>
#include <QPalette>
#include <QProxyStyle>
#include <QStyleFactory>

namespace {

constexpr int rowPadding = 6;     // of lists and trees, in pixels
constexpr int buttonPadding = 12; // beside the text of a button

// Fusion with more room in lists, and without pictures on the buttons of dialogs.
class CalmStyle : public QProxyStyle
{
public:
    CalmStyle()
        : QProxyStyle(QStringLiteral("Fusion"))
    {}

    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *data) const override
    {
        if (hint == SH_DialogButtonBox_ButtonsHaveIcons)
            return 0;
        return QProxyStyle::styleHint(hint, option, widget, data);
    }

    QSize sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &size,
                           const QWidget *widget) const override
    {
        QSize result = QProxyStyle::sizeFromContents(type, option, size, widget);
        if (type == CT_ItemViewItem)
            result.rheight() += rowPadding;
        else if (type == CT_PushButton)
            result.rwidth() += buttonPadding;
        return result;
    }
};

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
    application.setStyle(new CalmStyle); // which takes it over
    application.setPalette(calmPalette());
}
