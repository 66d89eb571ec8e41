#pragma once

#include <QString>
#include <QStringList>

// The names of what a message is about: the first ones, and how many more there are. A hostile
// configuration may bring any number.
[[nodiscard]] QString nameList(const QStringList &names);
