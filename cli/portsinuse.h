#pragma once

#include "config/record/record.h"

// A port is in use when its record differs from what it is after a reset: it is switched on, or
// something has been set up for it.
template <class R>
[[nodiscard]] bool isInUse(const R &port)
{
    return !record::equal(port, R());
}
