#include "app/ui/onlycontrol.h"

OnlyControl::OnlyControl(QWidget *control)
    : m_focus(control->window()->focusWidget())
{
    control->setFocus();
    const auto siblings =
        control->parentWidget()->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
    for (QWidget *sibling : siblings) {
        if (sibling == control || sibling->isWindow() || !sibling->isEnabled())
            continue;
        sibling->setEnabled(false);
        m_disabled.append(sibling);
    }
}

OnlyControl::~OnlyControl()
{
    for (const QPointer<QWidget> &widget : qAsConst(m_disabled))
        if (widget)
            widget->setEnabled(true);
    if (m_focus)
        m_focus->setFocus();
}
