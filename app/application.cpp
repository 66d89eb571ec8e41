#include "app/application.h"

#include <QDebug>

#include <exception>

bool Application::notify(QObject *receiver, QEvent *event)
{
    try {
        return QApplication::notify(receiver, event);
    } catch (const std::exception &e) {
        qCritical("Exception in an event of %s: %s", receiver->metaObject()->className(), e.what());
    } catch (...) {
        qCritical("Unknown exception in an event of %s", receiver->metaObject()->className());
    }
    return false;
}
