#pragma once

#include <QString>

// Why the file can't be opened for reading, for the user and without its name: it isn't there, is a
// folder or a device, or the system refuses it. Empty when it can be opened.
[[nodiscard]] QString whyUnreadable(const QString &path);
