// Whether the machine stood still: a thread that looks at the clock every few milliseconds sees by how much it was
// late.
#pragma once

#include <atomic>
#include <chrono>
#include <thread>

class PauseWatch
{
public:
    PauseWatch() : thread_([this](const std::stop_token& stop) { Watch(stop); }) {}

    std::chrono::milliseconds Longest() const { return std::chrono::milliseconds(longest_.load()); }

private:
    void Watch(const std::stop_token& stop);

    std::atomic<std::chrono::milliseconds::rep> longest_ = 0;
    std::jthread thread_;
};
