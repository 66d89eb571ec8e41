#pragma once

#include "MDF4Conversion/rld2xxxrecord.h"

#include <QString>

#include <map>
#include <optional>

// Judges a running rld2xxx from what one poll after the other finds. Knows neither process nor
// shared memory.
class Rld2xxxWatch
{
public:
    // Polls of a process that neither runs nor has finished, until it is given up: its last words
    // in the record may come later than the news of its end.
    static constexpr int maxSilentPolls = 16;

    // What is to be shown of a record: groups of fields with their values.
    using Tree = std::map<QString, std::map<QString, QString>>;

    struct Finding
    {
        // Another version than this program speaks; told once.
        std::optional<quint32> incompatibleVersion;
        std::optional<uint> percent; // none while the size of the input is unknown
        Tree tree;
    };

    [[nodiscard]] Finding look(const Rld2xxxRecord &record);

    // Behind the output of the process; true when it is to be given up.
    [[nodiscard]] bool isSilentTooLong(bool processRuns, bool isFinished);

private:
    bool m_isVersionChecked = false;
    int m_silentPolls = 0;
};

// Bytes read of the size, in percent, rounded; at most 100.
[[nodiscard]] uint percentRead(quint64 bytesRead, quint64 fileSize);
