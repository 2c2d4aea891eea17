// What is made to fail in a session: a call of the stand-in or an allocation, once or from then on, and cases of it.
#pragma once

#include <string>
#include <vector>

#include <windows.h>

#include "failures/session.h"

constexpr unsigned kForEver = 0xFFFFFFFF;

struct Fault
{
    std::string call; // empty: an allocation
    DWORD error = 0;
    unsigned skip = 0; // how many are left alone first
    unsigned count = 1;
};

// The faults strike throughout the session or, with a subject, while that is called.
struct Case
{
    std::vector<Fault> faults;
    std::string subject{};
    std::string handset{}; // a fault of the simulated handset, as phnsim knows it
};

std::string ToString(const Case& one);

void Arm(const Case& one);
// Ends every failure. Has one of them come about?
bool Disarm(const Case& one);
