#include "cli/interruption.h"

#include <atomic>
#include <csignal>

namespace interruption {
namespace {

// A signal handler has no other place to leave its news.
std::atomic<bool> noted{false};
static_assert(std::atomic<bool>::is_always_lock_free, "written by a signal handler");

void note(int)
{
    noted = true;
}

} // namespace

void watch()
{
    std::signal(SIGINT, note);
    std::signal(SIGTERM, note);
}

bool requested()
{
    return noted;
}

} // namespace interruption
