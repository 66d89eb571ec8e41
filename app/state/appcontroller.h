#pragma once

#include "app/state/appstate.h"

#include <QList>
#include <QObject>

class AppComponentBaseClass;

// Owns the state of the tool and tells every registered component of each change by a direct call,
// in the order of registration. Lives on the GUI thread.
class AppController : public QObject
{
    Q_OBJECT

public:
    explicit AppController(QObject *parent = nullptr);

    [[nodiscard]] AppSta_t appState() const { return m_state; }
    [[nodiscard]] QString appStateName() const { return appstate::name(m_state); }
    [[nodiscard]] QString appStateDescription() const { return appstate::description(m_state); }
    // "Unknown State!" for a value that is no state.
    [[nodiscard]] static QString nameOf(AppSta_t state) { return appstate::name(state); }

    // Appends the component, which must live as long as states change, and tells it the current
    // state at once.
    void registerComponent(AppComponentBaseClass *component);
    void printRegisteredComponents() const;

public slots:
    // A component may set a state while it is told of one. The later components are then told of
    // the newer state twice: what they are handed is always the state that holds.
    void slotSetAppState(AppSta_t value);

signals:
    void sigAppStateChanged(AppSta_t &state);

private:
    AppSta_t m_state = APP_STA_DISCONN;
    QList<AppComponentBaseClass *> m_components; // not owned
};
