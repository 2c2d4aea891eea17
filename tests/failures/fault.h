// What is made to fail in a session: a call of the stand-in or an allocation, once or from then on, and cases of it.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include <windows.h>

#include "failures/allocation_faults.h"
#include "failures/session.h"
#include "phn_platform_test.h"

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

inline std::string ToString(const Fault& fault)
{
    std::string text = fault.call.empty() ? "allocation" : fault.call + " error " + std::to_string(fault.error);
    text += " behind " + std::to_string(fault.skip);
    return text + (fault.count == kForEver ? " from then on" : " once");
}

inline bool HasStruck(const Fault& fault)
{
    return fault.call.empty() ? allocation_faults::Made() > fault.skip
                              : platform_test::PendingFailures(fault.call.c_str()) < fault.count;
}

inline std::string ToString(const Case& one)
{
    std::string text;
    for (const Fault& fault : one.faults)
        text += (text.empty() ? "" : ", ") + ToString(fault);
    if (!one.handset.empty())
        text += ", handset " + one.handset;
    return one.subject.empty() ? text : one.subject + ": " + text;
}

inline void Arm(const Case& one)
{
    for (const Fault& fault : one.faults) {
        if (fault.call.empty())
            allocation_faults::Arm(fault.skip, fault.count == kForEver ? UINT64_MAX : fault.count);
        else
            platform_test::FailCall(fault.call.c_str(), fault.error, fault.skip, fault.count);
    }
}

// Ends every failure. Has one of them come about?
inline bool Disarm(const Case& one)
{
    const bool hasStruck = std::ranges::any_of(one.faults, HasStruck);
    allocation_faults::Disarm();
    platform_test::ClearFailures();
    return hasStruck;
}
