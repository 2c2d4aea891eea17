// What a system asks a program to end with: signals, or Ctrl-C in a console.
#pragma once

#include <functional>
#include <memory>

namespace simulator {

// Before the program starts any thread. What it writes from here on is its owner's alone.
void PrepareProcess();

// Calls `told`, on another thread, each time that the end is asked for, as long as the result lives. One at a time.
std::shared_ptr<void> WatchEndRequests(std::function<void()> told);

} // namespace simulator
