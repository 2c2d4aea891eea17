#include "simulator/phnsim/end_request.h"

#include <windows.h>

#include <mutex>
#include <utility>

namespace simulator {
namespace {

std::mutex mutex;
std::function<void()> toTell;

BOOL WINAPI Tell(DWORD)
{
    const std::scoped_lock lock(mutex);
    if (toTell)
        toTell();
    return TRUE;
}

void Set(std::function<void()> told)
{
    const std::scoped_lock lock(mutex);
    toTell = std::move(told);
}

} // namespace

void PrepareForEndRequests() {}

std::shared_ptr<void> WatchEndRequests(std::function<void()> told)
{
    Set(std::move(told));
    SetConsoleCtrlHandler(Tell, TRUE);
    return {&toTell, [](void*) { Set(nullptr); }};
}

} // namespace simulator
