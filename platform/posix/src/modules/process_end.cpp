#include <atomic>
#include <cstdlib>

#include "phn_platform_module.h"

namespace {

std::atomic<bool> watching = false;
std::atomic<bool> ending = false;

} // namespace

void PhnWatchProcessEnd()
{
    // What is registered once main runs is called before any module's fini section; what is registered before that,
    // while the program's own libraries are being initialised, is called after all of them.
    if (!watching.exchange(true))
        std::atexit([] { ending = true; });
}

int PhnProcessIsEnding()
{
    return ending ? 1 : 0;
}
