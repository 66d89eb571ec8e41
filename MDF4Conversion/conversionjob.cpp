#include "MDF4Conversion/conversionjob.h"

QString environmentUser()
{
    const QString name = qEnvironmentVariable("USERNAME");
    return name.isEmpty() ? qEnvironmentVariable("USER") : name;
}
