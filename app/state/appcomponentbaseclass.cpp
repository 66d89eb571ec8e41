#include "app/state/appcomponentbaseclass.h"

#include "app/state/appcontroller.h"

#include <QDebug>

AppComponentBaseClass::AppComponentBaseClass(AppController *controller,
                                             const QString &componentName)
{
    if (!controller) {
        qWarning().noquote() << QStringLiteral(
                                    "App Component %1 initialized without a valid Pointer to the "
                                    "App Controller!")
                                    .arg(componentName);
        return;
    }
    m_controller = controller;
    m_componentName = componentName;
}

void AppComponentBaseClass::appStateChanged(AppSta_t &state)
{
    qWarning().noquote() << QStringLiteral("Virtual Method appStateChanged(")
                                + appstate::name(state)
                                + QStringLiteral(") of Parent Called, please override it in your "
                                                 "Child Class")
                                + m_componentName + QLatin1Char('.');
}

void AppComponentBaseClass::setAppState(AppSta_t state)
{
    Q_ASSERT(m_controller);
    m_controller->slotSetAppState(state);
    const QString line(63, QLatin1Char('!'));
    qDebug().noquote() << line;
    qDebug().noquote() << QStringLiteral("App State Change triggered from: ") + m_componentName
                              + appstate::name(state);
    qDebug().noquote() << line;
}

void AppComponentBaseClass::registerToController()
{
    Q_ASSERT(m_controller);
    m_controller->registerComponent(this);
}
