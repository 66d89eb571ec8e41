#include "config/groupnames.h"

namespace groupnames {

QString groupName(const PortName &port, const QString &kind)
{
    const QString suffix = kind.isEmpty() ? QString() : QLatin1Char('_') + kind;
    const QString custom =
        port.customText.isEmpty() ? QStringLiteral("Unspecified") : port.customText;
    const QString labelAndNumber = QStringLiteral("%1_%2").arg(port.label).arg(port.number);
    if (port.mode & OnlyCustomText)
        return custom + suffix;
    if (port.mode & AppendCustomText)
        return labelAndNumber + QLatin1Char('_') + custom + suffix;
    return labelAndNumber + suffix;
}

} // namespace groupnames
