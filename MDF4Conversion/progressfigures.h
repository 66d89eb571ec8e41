#pragma once

#include <QString>

#include <optional>
#include <vector>

// What a user wants to know of work that takes its time.
struct ProgressFigures
{
    double elapsed_s = 0;
    // None until there is enough to tell.
    std::optional<double> left_s;
    std::optional<double> bytesPerSecond;
};

// Of `bytes` to be worked through a share `done`, 0 to 1, is done after `elapsed_s`.
[[nodiscard]] ProgressFigures progressFigures(double done, double bytes, double elapsed_s);

// "0:12 elapsed, 0:20 left, 120.0 MB/s"
[[nodiscard]] QString textWhileRunning(const ProgressFigures &figures);
// "0:32, 120.0 MB/s", when the work is done.
[[nodiscard]] QString textWhenDone(const ProgressFigures &figures);

// 12.3 MB, 1.20 GB.
[[nodiscard]] QString sizeText(double bytes);
// 0:07, 12:30, 1:02:03.
[[nodiscard]] QString durationText(double seconds);

// A part of a larger work: its weight, and the share of it that is done, 0 to 1.
struct PartOfWork
{
    double weight = 0;
    double done = 0;
};

// The share of all parts together that is done; parts without weight count a little.
[[nodiscard]] double shareOfAll(const std::vector<PartOfWork> &parts);
