#include "MDF4Conversion/Interface_MDF4_Factory/namelist.h"

#include <QCoreApplication>

namespace {

constexpr int shownNames = 20;

} // namespace

QString nameList(const QStringList &names)
{
    const QString shown = names.mid(0, shownNames).join(QStringLiteral(", "));
    if (names.size() <= shownNames)
        return shown;
    return QCoreApplication::translate("Conversion", "%1 and %2 more")
        .arg(shown, QString::number(names.size() - shownNames));
}
