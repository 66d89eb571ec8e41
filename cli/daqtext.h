#pragma once

#include <QString>

struct StreamingClass_A2L_Module;

// CCP or XCP of one port: parameters, events, DAQ lists and measurements. Empty for a module
// without any content.
[[nodiscard]] QString daqText(const QString &port, const StreamingClass_A2L_Module &module);
