#include "app/interfacetree.h"

#include <QHeaderView>
#include <QScrollBar>

namespace {

QString numbered(const QString &text, int number)
{
    return text.contains(QStringLiteral("%1")) ? text.arg(number) : text;
}

} // namespace

InterfaceTree::InterfaceTree(QWidget *parent)
    : QTreeWidget(parent)
{
    setColumnCount(1);
    header()->hide();
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    for (const TreeRow &row : treeTable()) {
        QTreeWidgetItem *above = row.parent ? itemOf(QLatin1String(row.parent)) : nullptr;
        for (int number = 0; number < row.count; ++number) {
            auto *item = above ? new QTreeWidgetItem(above) : new QTreeWidgetItem(this);
            item->setText(0, numbered(QLatin1String(row.text), number));
            item->setToolTip(0, numbered(QLatin1String(row.tool_tip), number));
            item->setIcon(0, icons::icon(row.symbol));
        }
    }
    for (const char *open : {"Datalogger", "Interfaces", "Modules"})
        itemOf(QLatin1String(open))->setExpanded(true);
}

QSize InterfaceTree::sizeHint() const
{
    const int width =
        sizeHintForColumn(0) + verticalScrollBar()->sizeHint().width() + 2 * frameWidth();
    return {width, QTreeWidget::sizeHint().height()};
}

void InterfaceTree::setPages(const std::vector<PageRow> &pages)
{
    m_dependents.clear();
    for (const PageRow &row : pages)
        for (int number = 0; number < row.count; ++number)
            if (QTreeWidgetItem *item = itemOf(numbered(row.tree_text, number)))
                m_dependents.push_back({item, row.needs, number});
}

void InterfaceTree::enableAll()
{
    for (const Dependent &dependent : m_dependents)
        dependent.item->setDisabled(false);
}

void InterfaceTree::enableOnly(const Capabilities &capabilities)
{
    for (const Dependent &dependent : m_dependents)
        dependent.item->setDisabled(!isCapable(capabilities, dependent.needs, dependent.number));
    if (currentItem() && currentItem()->isDisabled())
        setCurrentItem(topLevelItem(0));
}

QString InterfaceTree::selectedText() const
{
    const QList<QTreeWidgetItem *> selected = selectedItems();
    return selected.isEmpty() ? QString() : selected.first()->text(0);
}

QTreeWidgetItem *InterfaceTree::itemOf(const QString &text) const
{
    return findItems(text, Qt::MatchExactly | Qt::MatchCaseSensitive | Qt::MatchRecursive).value(0);
}
