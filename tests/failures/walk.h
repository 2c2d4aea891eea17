// The walk over failures: each case is a process of its own, forked where no thread is, that runs a session with its
// failures, and then a short one without any. Several workers share the cases, each with a handset of its own.
#pragma once

#include <string>
#include <vector>

#include "failures/fault.h"

// How often each call (by its place in kCallErrors) and how many allocations occur in a session without failures.
struct Census
{
    std::vector<unsigned> calls;
    unsigned allocations;
};

struct WalkResult
{
    size_t runs = 0;
    unsigned struck = 0;              // runs in which the failure has come about
    unsigned again = 0;               // runs that went wrong while the machine stood still and were made again
    std::vector<std::string> wrong{}; // what was found, case by case
    double seconds = 0;
};

// Runs a session without failures, which all others are compared with. Throws std::runtime_error if it goes wrong.
Census TakeCensus(Attachment attachment = Attachment::Usb);

WalkResult Walk(std::vector<Case> cases, Attachment attachment = Attachment::Usb);
