// What is made to fail in a session: a call of the stand-in or an allocation, once or from then on.
#pragma once

#include <string>

#include <windows.h>

constexpr unsigned kForEver = 0xFFFFFFFF;

struct Fault
{
    std::string call; // empty: an allocation
    DWORD error = 0;
    unsigned skip = 0; // how many are left alone first
    unsigned count = 1;
};

std::string ToString(const Fault& fault);

void Arm(const Fault& fault);
// Ends every failure. Has this one come about?
bool Disarm(const Fault& fault);
