#pragma once

// What benchmarks share.
namespace bench {

// The peak of this process's resident memory in bytes; 0 where the system doesn't tell.
[[nodiscard]] double peakBytes();

// Prints a figure beside its limit and gives whether it is met. `relation` is "at most" or "at least".
bool bar(const char *what, double value, const char *relation, double limit, bool ok);

} // namespace bench
