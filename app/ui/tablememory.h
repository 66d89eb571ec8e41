#pragma once

#include <QString>

class QHeaderView;

// Remembers how wide the user made a table's columns and by which one he sorted it, in the
// program's settings under a key of the table's own.
namespace tablememory {

void save(const QHeaderView &header, const QString &key);

// Sets the widths and the sort indicator. What doesn't fit the table leaves it as it is.
void restore(QHeaderView &header, const QString &key);

} // namespace tablememory
