// Holds a thread, and those that it starts, to the system calls that a session of the library makes.
#pragma once

#include <cstddef>

// The process ends with a line that names the first call that is not in the list.
void AllowSessionCallsOnly();

std::size_t SessionCallCount();
