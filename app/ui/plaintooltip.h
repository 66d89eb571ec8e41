#pragma once

#include "config/shorttext.h"

#include <QString>

// The text as a tool tip that shows markup in it as it is, and its line breaks. Only the beginning
// of one that no screen holds. Said to be rich text, since otherwise Qt would guess.
[[nodiscard]] inline QString plainToolTip(const QString &text)
{
    constexpr int most = 4'000; // characters
    return QStringLiteral("<p style='white-space:pre-wrap'>")
           + shortText(text, most).toHtmlEscaped() + QStringLiteral("</p>");
}
