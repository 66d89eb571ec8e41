#include "app/state/appcontroller.h"

#include "app/state/appcomponentbaseclass.h"

#include <QDebug>

namespace {

void logBetweenLines(const QString &text)
{
    const QString line(86, QLatin1Char('#'));
    qDebug().noquote() << line;
    qDebug().noquote() << text;
    qDebug().noquote() << line;
}

} // namespace

AppController::AppController(QObject *parent)
    : QObject(parent)
{}

void AppController::registerComponent(AppComponentBaseClass *component)
{
    Q_ASSERT(component);
    m_components.append(component);
    component->appStateChanged(m_state);
}

void AppController::printRegisteredComponents() const
{
    const QString line(47, QLatin1Char('*'));
    qDebug().noquote() << line;
    qDebug("* AppController - Registered App Components:  *");
    qDebug().noquote() << line;
    for (const AppComponentBaseClass *component : m_components)
        qDebug().noquote() << component->componentName();
    qDebug().noquote() << line;
}

void AppController::slotSetAppState(AppSta_t value)
{
    if (value == m_state) {
        logBetweenLines(QStringLiteral("# App State Stayed Unchanged!"));
        return;
    }
    m_state = value;
    // By index: a component may register another one while it is told.
    for (int i = 0; i < m_components.size(); ++i)
        m_components.at(i)->appStateChanged(m_state);
    emit sigAppStateChanged(m_state);
    logBetweenLines(QStringLiteral("# App State Changed! | ") + appStateDescription());
}
