#pragma once

#include <QStringList>

class LogStatistics;

// Says what is wrong, and what may be wrong, in a log. The conversion judges alike.
void addFindings(const LogStatistics &statistics, QStringList &errors, QStringList &warnings);
