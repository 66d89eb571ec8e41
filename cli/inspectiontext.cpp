#include "cli/inspectiontext.h"

#include "cli/configurationtext.h"
#include "cli/console.h"
#include "cli/dbctext.h"
#include "cli/fileinspection.h"
#include "cli/logtext.h"
#include "cli/textsections.h"

namespace {

QString databaseText(const FileInspection &inspection)
{
    return QStringLiteral("%1: DBC file, %2 bytes\n")
               .arg(printable(displayName(inspection.file)), QString::number(inspection.size))
           + dbcText(*inspection.database);
}

QString headText(const FileInspection &inspection)
{
    const QString kind = inspection.kind == FileHead::Kind::RawLog
                             ? QStringLiteral("raw log")
                             : QStringLiteral("configuration");
    return QStringLiteral("%1: %2, %3 bytes, configuration version %4\n")
        .arg(printable(displayName(inspection.file)), kind, QString::number(inspection.size),
             QString::number(inspection.configuration->version));
}

} // namespace

QString inspectionText(const FileInspection &inspection)
{
    if (inspection.database && inspection.failure.isEmpty())
        return databaseText(inspection);
    if (!inspection.configuration)
        return {};
    QString text = headText(inspection) + configurationText(*inspection.configuration);
    if (inspection.log)
        text += logText(*inspection.log);
    return text;
}
