#include "callback/host_functions.h"

#include <mutex>
#include <utility>

namespace {

std::mutex mutex;
std::vector<Told> told;
std::function<void(uint32_t)> action;

void Note(uint32_t type)
{
    const std::scoped_lock lock(mutex);
    told.push_back({type, GetCurrentThreadId()});
}

} // namespace

void PHN_CALL Tell(uint32_t type)
{
    Note(type);
    if (action)
        action(type);
}

void PHN_CALL TellOther(uint32_t type)
{
    Note(type + 100);
}

std::vector<Told> TakeTold()
{
    const std::scoped_lock lock(mutex);
    return std::exchange(told, {});
}

std::vector<uint32_t> TakeTypes()
{
    std::vector<uint32_t> types;
    for (const Told& one : TakeTold())
        types.push_back(one.type);
    return types;
}

void SetAction(std::function<void(uint32_t)> newAction)
{
    action = std::move(newAction);
}
