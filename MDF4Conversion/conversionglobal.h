#pragma once

#include <QFlags>
#include <QObject>

// The formats that a raw log is converted to. The values are flags that settings hold; the keys
// name the formats to the user and to other programs.
class ConversionGlobal
{
    Q_GADGET

public:
    enum OutputFormat { NONE = 0, MDF4 = 1, BLF = 2, ASC = 4, ASC_ZIP = 8 };
    Q_ENUM(OutputFormat)
    Q_DECLARE_FLAGS(OutputFormatFlags, OutputFormat)
    Q_FLAG(OutputFormatFlags)
};
Q_DECLARE_OPERATORS_FOR_FLAGS(ConversionGlobal::OutputFormatFlags)
