#include "cli/interruption.h"

#include <QtGlobal>

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
#ifndef Q_OS_WIN
    std::signal(SIGHUP, note);
    // A reader that has gone and a file that may not grow are failed writes, no reason to leave
    // files behind.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
#endif
}

bool requested()
{
    return noted;
}

} // namespace interruption
