#pragma once

// Ctrl-C and requests to end, noted instead of ending the program. Process-wide, as signals are.
namespace interruption {

// From now on Ctrl-C is noted.
void watch();
[[nodiscard]] bool requested();

} // namespace interruption
