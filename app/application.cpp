#include "app/application.h"

#include <QDebug>

#include <exception>

bool Application::notify(QObject *receiver, QEvent *event)
{
    const char *className = receiver->metaObject()->className(); // it may be gone behind the event
    try {
        return QApplication::notify(receiver, event);
    } catch (const std::exception &e) {
        qCritical("Exception in an event of %s: %s", className, e.what());
    } catch (...) {
        qCritical("Unknown exception in an event of %s", className);
    }
    return false;
}
