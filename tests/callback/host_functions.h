// The functions that a test registers as a host does, and what they were told, in a record of the program.
#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <mutex>
#include <utility>
#include <vector>

#include "phnnrv.h"

struct Told
{
    uint32_t type;
    DWORD thread;
};

struct HostRecord
{
    std::mutex mutex;
    std::vector<Told> told;
    std::function<void(uint32_t)> action;
};
inline HostRecord hostRecord;

inline void Note(uint32_t type)
{
    const std::scoped_lock lock(hostRecord.mutex);
    hostRecord.told.push_back({type, GetCurrentThreadId()});
}

inline void PHN_CALL Tell(uint32_t type)
{
    Note(type);
    if (hostRecord.action)
        hostRecord.action(type);
}

// Notes the type as 100 more, so that it can be told from the other.
inline void PHN_CALL TellOther(uint32_t type)
{
    Note(type + 100);
}

// What both were told since the last call.
inline std::vector<Told> TakeTold()
{
    const std::scoped_lock lock(hostRecord.mutex);
    return std::exchange(hostRecord.told, {});
}

inline std::vector<uint32_t> TakeTypes()
{
    std::vector<uint32_t> types;
    for (const Told& one : TakeTold())
        types.push_back(one.type);
    return types;
}

// Also runs in Tell, behind the note; empty for nothing. Set it while nothing can be told.
inline void SetAction(std::function<void(uint32_t type)> action)
{
    hostRecord.action = std::move(action);
}
