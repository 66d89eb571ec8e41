#pragma once

#include "app/ui/icons.h"
#include "link/capabilities.h"

#include <QString>

#include <vector>

class AppController;
class Logger_Data_Handler_Class;
class QWidget;
class UserPrompt;
class UserSettings;

// What a logger must have for a page to be of use.
enum class Needs { Nothing, Agm, Gps, Can, Lte, Ethernet, Rs485, EtherCat };

// True if the logger has the thing, for numbered ones the one with this number, counted from 0.
[[nodiscard]] bool isCapable(const Capabilities &capabilities, Needs needs, int number);

// What a page is made with.
struct PageContext
{
    AppController *controller;
    Logger_Data_Handler_Class *handler;
    UserPrompt *prompt; // these two outlive the page
    UserSettings *settings;
    QString objectName;
    QString title;
    int number; // 0 for what there is only once
    QWidget *parent;
};

// One kind of page. Texts hold %1 for the number where there are several.
struct PageRow
{
    using Factory = QWidget *(*)(const PageContext &context);

    QString object_name;
    QString tree_text; // the item that selects the page
    Needs needs = Needs::Nothing;
    int count = 1;
    Factory make = nullptr;
};

// All pages, in the order in which they are made and told of a new state.
[[nodiscard]] std::vector<PageRow> pageTable();

// The window for commands as text, a dialog.
[[nodiscard]] QWidget *makeDebugWindow(const PageContext &context);

// One kind of item of the tree of interfaces.
struct TreeRow
{
    const char *parent; // text of the item above; none: at the top
    const char *text;   // with %1 for the number where there are several
    int count;
    icons::Symbol symbol;
    const char *tool_tip;
};

// All items, each behind the one above it.
[[nodiscard]] const std::vector<TreeRow> &treeTable();
