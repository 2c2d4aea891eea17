#include <atomic>
#include <cstdlib>

#include "phn_platform_module.h"

namespace {

std::atomic<bool> ending = false;

// Functions given to atexit run before any module's fini section.
__attribute__((constructor)) void WatchForProcessEnd()
{
    std::atexit([] { ending = true; });
}

} // namespace

int PhnProcessIsEnding()
{
    return ending ? 1 : 0;
}
