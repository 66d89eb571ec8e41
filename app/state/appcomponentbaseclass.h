#pragma once

#include "app/state/appstate.h"

#include <QString>

class AppController;

// What reacts to the state of the tool: a further base of views and of the link's facade. The base
// doesn't register itself, since registration calls back at once: its owner registers it when it
// is fully built.
class AppComponentBaseClass
{
public:
    // Without a controller nothing is kept; such a component must not be used in a change of state.
    AppComponentBaseClass(AppController *controller, const QString &componentName);
    virtual ~AppComponentBaseClass() = default;
    AppComponentBaseClass(const AppComponentBaseClass &) = delete;
    AppComponentBaseClass &operator=(const AppComponentBaseClass &) = delete;

    // Every component overrides this. The reference is to the controller's own state, so a body
    // that sets another state copies the value first.
    virtual void appStateChanged(AppSta_t &state);

    void setAppState(AppSta_t state);
    void registerToController();

    [[nodiscard]] AppController *appController() const { return m_controller; }
    [[nodiscard]] QString componentName() const { return m_componentName; }

private:
    AppController *m_controller = nullptr; // not owned
    QString m_componentName;               // for logs only
};
