#include "failures/fault.h"

#include <cstdint>

#include "failures/allocation_faults.h"
#include "phn_platform_test.h"

std::string ToString(const Fault& fault)
{
    std::string text = fault.call.empty() ? "allocation" : fault.call + " error " + std::to_string(fault.error);
    text += " behind " + std::to_string(fault.skip);
    return text + (fault.count == kForEver ? " from then on" : " once");
}

void Arm(const Fault& fault)
{
    if (fault.call.empty())
        allocation_faults::Arm(fault.skip, fault.count == kForEver ? UINT64_MAX : fault.count);
    else
        platform_test::FailCall(fault.call.c_str(), fault.error, fault.skip, fault.count);
}

bool Disarm(const Fault& fault)
{
    const bool hasStruck = fault.call.empty() ? allocation_faults::Made() > fault.skip
                                              : platform_test::PendingFailures(fault.call.c_str()) < fault.count;
    allocation_faults::Disarm();
    platform_test::ClearFailures();
    return hasStruck;
}
