#pragma once

#include "app/state/appcomponentbaseclass.h"

#include <QList>
#include <QWidget>

class Logger_Data_Handler_Class;

// Base of the pages: enables what edits the configuration by the state of the tool, and redraws
// when the whole configuration was read. A page never changes the configuration itself: it has the
// handler write, and shows what comes back. The window registers it when it is fully built.
class LoggerPage : public QWidget, public AppComponentBaseClass
{
    Q_OBJECT

public:
    // The handler must outlive the page. The number is that of the page's port, counted from 0.
    LoggerPage(AppController *controller, const QString &componentName,
               Logger_Data_Handler_Class *handler, QWidget *parent = nullptr, int number = 0);

    void appStateChanged(AppSta_t &state) override;

    [[nodiscard]] int number() const { return m_number; }

public slots:
    // Calls redraw() with the signals of all widgets blocked: showing a value never writes one.
    void showConfiguration();

protected:
    [[nodiscard]] Logger_Data_Handler_Class *handler() const { return m_handler; }
    // Signals carry the number of the port that they are about; a page heeds its own only.
    [[nodiscard]] bool isOwnNumber(int number) const { return number == m_number; }

    // For the result of a write of the handler, which it gives back: once it is written, what the
    // logger echoed is applied. So a change that follows without events between begins with it.
    bool withEcho(bool isWritten);

    // The widgets that edit the configuration. They are to be enabled as long as the handler takes
    // changes.
    void setConfigurationWidgets(const QList<QWidget *> &widgets);

    // Shows the values of the configuration.
    virtual void redraw() = 0;
    // For pages that show more of it than redraw() does.
    virtual void wholeConfigurationRead() { showConfiguration(); }
    // What else a page does in a state, after its widgets were enabled or disabled.
    virtual void stateApplied(AppSta_t state) { Q_UNUSED(state) }

private:
    Logger_Data_Handler_Class *m_handler;    // not owned
    QList<QWidget *> m_configurationWidgets; // belong to the page
    const int m_number;
};
