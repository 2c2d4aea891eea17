// The functions that a test registers as a host does, and what they were told, in a record of the program.
#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <vector>

#include "phnnrv.h"

struct Told
{
    uint32_t type;
    DWORD thread;
};

void PHN_CALL Tell(uint32_t type);
// Notes the type as 100 more, so that it can be told from the other.
void PHN_CALL TellOther(uint32_t type);

// What both were told since the last call.
std::vector<Told> TakeTold();
std::vector<uint32_t> TakeTypes();

// Also runs in Tell, behind the note; empty for nothing. Set it while nothing can be told.
void SetAction(std::function<void(uint32_t type)> action);
