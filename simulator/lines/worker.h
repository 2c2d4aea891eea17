// One function at work beside its owner: on a thread of its own, or, on Windows, on one of the system's thread pool.
// The end of such a one may also be awaited while a library is being unloaded, when no thread can end.
#pragma once

#include <functional>
#include <memory>

namespace simulator {

class Worker
{
public:
    explicit Worker(std::function<void()> work); // throws std::system_error
    ~Worker();                                   // waits, as Join does
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    // Waits until the function has returned. Where the system has not begun it yet, it may never.
    void Join();
    // Is the caller inside the function?
    bool IsCurrent() const;

private:
    struct System;
    std::unique_ptr<System> system_;
};

} // namespace simulator
