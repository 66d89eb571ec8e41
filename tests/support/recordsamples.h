#pragma once

#include "config/record/samplevalues.h"
#include "config/terminalstruct.h"

namespace sample {

// A record in which every streamed value differs from its neighbours (see SampleValues).
template <class R>
[[nodiscard]] R record(int listSize = 2)
{
    R filled;
    ::record::SampleValues(listSize).fill(filled);
    return filled;
}

} // namespace sample
