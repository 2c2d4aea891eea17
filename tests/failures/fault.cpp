#include "failures/fault.h"

#include <algorithm>
#include <cstdint>

#include "failures/allocation_faults.h"
#include "phn_platform_test.h"

namespace {

std::string ToString(const Fault& fault)
{
    std::string text = fault.call.empty() ? "allocation" : fault.call + " error " + std::to_string(fault.error);
    text += " behind " + std::to_string(fault.skip);
    return text + (fault.count == kForEver ? " from then on" : " once");
}

bool HasStruck(const Fault& fault)
{
    return fault.call.empty() ? allocation_faults::Made() > fault.skip
                              : platform_test::PendingFailures(fault.call.c_str()) < fault.count;
}

} // namespace

std::string ToString(const Case& one)
{
    std::string text;
    for (const Fault& fault : one.faults)
        text += (text.empty() ? "" : ", ") + ToString(fault);
    if (!one.handset.empty())
        text += ", handset " + one.handset;
    return one.subject.empty() ? text : one.subject + ": " + text;
}

void Arm(const Case& one)
{
    for (const Fault& fault : one.faults) {
        if (fault.call.empty())
            allocation_faults::Arm(fault.skip, fault.count == kForEver ? UINT64_MAX : fault.count);
        else
            platform_test::FailCall(fault.call.c_str(), fault.error, fault.skip, fault.count);
    }
}

bool Disarm(const Case& one)
{
    const bool hasStruck = std::ranges::any_of(one.faults, HasStruck);
    allocation_faults::Disarm();
    platform_test::ClearFailures();
    return hasStruck;
}
