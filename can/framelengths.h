#pragma once

#include <vector>

// How many bytes of data a frame can have, and its DLC codes (ISO 11898-1, coding of the data length
// code).
namespace can {

enum class FrameFormat { Classic, Fd };

// The lengths that a frame can have, in bytes, by its DLC code from 0.
[[nodiscard]] const std::vector<int> &dataLengths(FrameFormat format);

[[nodiscard]] bool isDataLength(int bytes, FrameFormat format);

// The number of bytes behind a DLC code; a code above the last one is as long as that.
[[nodiscard]] int lengthOfDlc(int dlc, FrameFormat format);

// The DLC code of the shortest frame that holds so many bytes; the last code where none does.
[[nodiscard]] int dlcOfLength(int bytes, FrameFormat format);

// The bytes of the shortest frame that holds so many; of the longest one where none does.
[[nodiscard]] int lengthThatHolds(int bytes, FrameFormat format);

} // namespace can
