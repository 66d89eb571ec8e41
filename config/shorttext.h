#pragma once

#include <QString>

// The text if it has at most `maxLength` UTF-16 units, else its beginning and an ellipsis in as many.
// For what is shown of texts of any length, such as a file gives: to lay a text out takes the longer
// the longer it is. `maxLength` is at least 2.
[[nodiscard]] QString shortText(const QString &text, int maxLength);
