#pragma once

#include "app/pagetable.h"

#include <QTreeWidget>

// The tree of interfaces, an item for each page and for each group of them.
class InterfaceTree : public QTreeWidget
{
    Q_OBJECT

public:
    explicit InterfaceTree(QWidget *parent = nullptr);

    // Wide enough for every text that is visible.
    [[nodiscard]] QSize sizeHint() const override;

    // Which items depend on what a logger has. The rows name items of the tree.
    void setPages(const std::vector<PageRow> &pages);

    void enableAll();
    // Disables what the logger lacks; an item that is selected then leaves the selection to the
    // first one.
    void enableOnly(const Capabilities &capabilities);

    // The text of the selected item, empty if none is.
    [[nodiscard]] QString selectedText() const;
    // None for a text that no item has.
    [[nodiscard]] QTreeWidgetItem *itemOf(const QString &text) const;

private:
    struct Dependent
    {
        QTreeWidgetItem *item; // owned by the tree
        Needs needs;
        int number;
    };

    std::vector<Dependent> m_dependents;
};
