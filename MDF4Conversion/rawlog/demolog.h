#pragma once

#include <QStringList>

#include <functional>

// Makes raw logs to try the program with.
namespace demolog {

struct Result
{
    QStringList files; // paths of the finished logs
    QString failure;   // names the file and the cause; null when all went well
    bool cancelled = false;
};

// Makes the synthetic logs and a demonstration drive of `seconds`, at least 1, in `folder`, which
// is made if it is missing. The drive is the same byte for byte on every machine. `progress` gets 0 to
// 100 and returns false to cancel; what is unfinished is removed then, as it is after a failure.
[[nodiscard]] Result makeAll(const QString &folder, int seconds,
                             const std::function<bool(int)> &progress);

} // namespace demolog
