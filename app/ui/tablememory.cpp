#include "app/ui/tablememory.h"

#include <QHeaderView>
#include <QSettings>

namespace {

constexpr int maxWidth = 4'000; // pixels

struct Store : QSettings
{
    explicit Store(const QString &key)
        : QSettings(QStringLiteral("ZELVO"), QStringLiteral("ZDS"))
        , widths(key + QStringLiteral("/columnWidths"))
        , sortColumn(key + QStringLiteral("/sortColumn"))
        , sortUp(key + QStringLiteral("/sortUp"))
    {}

    const QString widths;
    const QString sortColumn;
    const QString sortUp;
};

// The last section takes the room that is left where it stretches.
bool hasOwnWidth(const QHeaderView &header, int section)
{
    return !header.stretchLastSection() || header.visualIndex(section) < header.count() - 1;
}

} // namespace

void tablememory::save(const QHeaderView &header, const QString &key)
{
    Store store(key);
    QVariantList widths;
    for (int section = 0; section < header.count(); ++section)
        widths.append(header.sectionSize(section));
    store.setValue(store.widths, widths);
    store.setValue(store.sortColumn, header.sortIndicatorSection());
    store.setValue(store.sortUp, header.sortIndicatorOrder() == Qt::AscendingOrder);
}

void tablememory::restore(QHeaderView &header, const QString &key)
{
    const Store store(key);
    const QVariantList widths = store.value(store.widths).toList();
    for (int section = 0; widths.size() == header.count() && section < header.count(); ++section) {
        const int width = widths.at(section).toInt();
        if (hasOwnWidth(header, section) && width >= header.minimumSectionSize()
            && width <= maxWidth)
            header.resizeSection(section, width);
    }
    bool isNumber = false;
    const int column = store.value(store.sortColumn).toInt(&isNumber);
    if (isNumber && column >= 0 && column < header.count())
        header.setSortIndicator(column, store.value(store.sortUp, true).toBool()
                                            ? Qt::AscendingOrder
                                            : Qt::DescendingOrder);
}
