// Allocations that fail. This program's operator new stands in for everybody's, the library's included: what a thread
// of the library's makes counts always, what the host's thread makes only inside a LibraryScope.
#pragma once

#include <cstdint>

namespace allocation_faults {

// To be called by the host's thread, whose own allocations never fail.
void SpareThisThread();

// The allocation behind the first `skip` ones fails, and `count` - 1 that follow it.
void Arm(uint64_t skip, uint64_t count);
void Disarm();

// Since Arm.
uint64_t Made();

// How many there are now in the whole process, the host's own among them.
int64_t Living();

// Encloses a call into the library or the stand-in.
class LibraryScope
{
public:
    LibraryScope();
    ~LibraryScope();

private:
    bool wasSpared_;
};

} // namespace allocation_faults
