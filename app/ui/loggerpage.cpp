#include "app/ui/loggerpage.h"

#include "link/logger_data_handler_class.h"

#include <QSignalBlocker>

#include <vector>

LoggerPage::LoggerPage(AppController *controller, const QString &componentName,
                       Logger_Data_Handler_Class *handler, QWidget *parent, int number)
    : QWidget(parent)
    , AppComponentBaseClass(controller, componentName)
    , m_handler(handler)
    , m_number(number)
{
    Q_ASSERT(handler);
    connect(handler, &Logger_Data_Handler_Class::signal_full_update, this,
            [this] { wholeConfigurationRead(); });
}

void LoggerPage::appStateChanged(AppSta_t &state)
{
    const AppSta_t entered = state;
    if (const std::optional<bool> editable = appstate::configurationEditable(entered))
        for (QWidget *widget : qAsConst(m_configurationWidgets))
            widget->setEnabled(*editable);
    stateApplied(entered);
}

void LoggerPage::showConfiguration()
{
    std::vector<QSignalBlocker> blockers;
    const QList<QWidget *> widgets = findChildren<QWidget *>();
    for (QWidget *widget : widgets)
        if (!widget->objectName().startsWith(QStringLiteral("qt_"))) // inner parts of a widget
            blockers.emplace_back(widget);
    redraw();
}

bool LoggerPage::withEcho(bool isWritten)
{
    if (isWritten)
        m_handler->applyWaitingRecords();
    return isWritten;
}

void LoggerPage::setConfigurationWidgets(const QList<QWidget *> &widgets)
{
    m_configurationWidgets = widgets;
}
