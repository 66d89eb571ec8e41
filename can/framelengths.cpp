#include "can/framelengths.h"

#include <algorithm>

namespace can {

const std::vector<int> &dataLengths(FrameFormat format)
{
    static const std::vector<int> classic = {0, 1, 2, 3, 4, 5, 6, 7, 8};
    static const std::vector<int> fd = {0, 1, 2, 3, 4, 5, 6, 7, 8, 12, 16, 20, 24, 32, 48, 64};
    return format == FrameFormat::Fd ? fd : classic;
}

bool isDataLength(int bytes, FrameFormat format)
{
    const std::vector<int> &lengths = dataLengths(format);
    return std::binary_search(lengths.begin(), lengths.end(), bytes);
}

int lengthOfDlc(int dlc, FrameFormat format)
{
    const std::vector<int> &lengths = dataLengths(format);
    return lengths.at(std::size_t(std::clamp(dlc, 0, int(lengths.size()) - 1)));
}

int dlcOfLength(int bytes, FrameFormat format)
{
    const std::vector<int> &lengths = dataLengths(format);
    const auto found = std::lower_bound(lengths.begin(), lengths.end(), bytes);
    return int(std::min(found, lengths.end() - 1) - lengths.begin());
}

int lengthThatHolds(int bytes, FrameFormat format)
{
    return lengthOfDlc(dlcOfLength(bytes, format), format);
}

} // namespace can
