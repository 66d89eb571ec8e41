#include "measure.h"

#include <QFile>

#include <cstdio>

double bench::peakBytes()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').first().toDouble() * 1024;
    }
    return 0;
}

bool bench::bar(const char *what, double value, const char *relation, double limit, bool ok)
{
    std::printf("  %-4s %s: %.2f (%s %.2f)\n", ok ? "ok" : "MISS", what, value, relation, limit);
    return ok;
}
