#include "waitable.h"

#include <algorithm>

namespace platform {
namespace {

// Takes the first signalled object; false if there is none.
bool TakeAny(const Lock& lock, WaitableList objects, DWORD& result)
{
    for (DWORD i = 0; i < objects.size(); i++) {
        if (objects[i]->IsSignalled(lock)) {
            result = (objects[i]->Acquire(lock) ? WAIT_ABANDONED_0 : WAIT_OBJECT_0) + i;
            return true;
        }
    }
    return false;
}

// Takes all objects if all are signalled, and none otherwise.
bool TakeAll(const Lock& lock, WaitableList objects, DWORD& result)
{
    if (!std::ranges::all_of(objects, [&](const auto& object) { return object->IsSignalled(lock); }))
        return false;
    result = WAIT_OBJECT_0;
    for (const auto& object : objects) {
        if (object->Acquire(lock))
            result = WAIT_ABANDONED_0;
    }
    return true;
}

} // namespace

DWORD WaitFor(Lock& lock, WaitableList objects, bool all, DWORD milliseconds)
{
    DWORD result = WAIT_TIMEOUT;
    BlockFor(lock, milliseconds, AfterSilence(milliseconds),
             [&] { return all ? TakeAll(lock, objects, result) : TakeAny(lock, objects, result); });
    return result;
}

std::vector<std::shared_ptr<Waitable>> WaitablesOf(const HANDLE* handles, DWORD count)
{
    std::vector<std::shared_ptr<Waitable>> objects;
    objects.reserve(count);
    for (DWORD i = 0; i < count; i++)
        objects.push_back(FromHandle<Waitable>(handles[i]));
    return objects;
}

} // namespace platform
