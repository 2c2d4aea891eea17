#include "threads/waitable.h"

#include <algorithm>

namespace platform {
namespace {

// Takes the first signalled object; false if there is none.
bool TakeAny(const Lock& lock, const WaitableList& objects, DWORD& result)
{
    DWORD index = 0;
    for (const auto& object : objects) {
        if (object->IsSignalled(lock)) {
            result = (object->Acquire(lock) ? WAIT_ABANDONED_0 : WAIT_OBJECT_0) + index;
            return true;
        }
        index++;
    }
    return false;
}

// Takes all objects if all are signalled, and none otherwise.
bool TakeAll(const Lock& lock, const WaitableList& objects, DWORD& result)
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

void WaitForChange(Lock& lock, const WaitableList& objects, TimePoint deadline)
{
    std::array<Source, MAXIMUM_WAIT_OBJECTS> sources;
    std::size_t count = 0;
    std::shared_ptr<Carrier> carrier;
    for (const auto& object : objects) {
        sources[count++] = object->ChangesWith();
        if (!object->IsSignalled(lock))
            deadline = std::min(deadline, object->IsDueAt(lock));
        if (!carrier)
            carrier = object->CarriedBy(lock);
    }
    if (!carrier || !carrier->CarryOn(lock, {sources.data(), count}, deadline))
        WaitForWake(lock, {sources.data(), count}, deadline);
}

} // namespace

DWORD WaitFor(Lock& lock, const WaitableList& objects, bool all, DWORD milliseconds, TimePoint deadline)
{
    DWORD result = WAIT_TIMEOUT;
    const auto take = [&] { return all ? TakeAll(lock, objects, result) : TakeAny(lock, objects, result); };
    if (take())
        return result;
    const StatedWait wait(lock, milliseconds, deadline);
    while (Now() < deadline) {
        WaitForChange(lock, objects, deadline);
        if (take())
            return result;
    }
    return WAIT_TIMEOUT;
}

} // namespace platform
