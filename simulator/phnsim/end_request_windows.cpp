#include "simulator/phnsim/end_request.h"

#include <windows.h>

#include <mutex>
#include <utility>

namespace simulator {
namespace {

std::mutex mutex;
std::function<void()> toTell;

// After a console's closing, and all but Ctrl-C and Ctrl-Break, the system ends the process as soon as this returns: so
// it does not before the program, which still writes what is to be kept, has ended by itself. The system's patience,
// some seconds, is the limit.
BOOL WINAPI Tell(DWORD event)
{
    {
        const std::scoped_lock lock(mutex);
        if (toTell)
            toTell();
    }
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT)
        WaitForSingleObject(GetCurrentProcess(), INFINITE);
    return TRUE;
}

void Set(std::function<void()> told)
{
    const std::scoped_lock lock(mutex);
    toTell = std::move(told);
}

} // namespace

void PrepareProcess() {}

std::shared_ptr<void> WatchEndRequests(std::function<void()> told)
{
    Set(std::move(told));
    SetConsoleCtrlHandler(Tell, TRUE);
    return {&toTell, [](void*) { Set(nullptr); }};
}

} // namespace simulator
