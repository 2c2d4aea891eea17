// Wakes the thread that works on control lines when there may be something new for it.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>

namespace simulator {

class Wakeup
{
public:
    using Time = std::chrono::steady_clock::time_point;

    // On any thread.
    void Raise()
    {
        const std::scoped_lock lock(mutex_);
        isRaised_ = true;
        raised_.notify_one();
    }

    // Until it has been raised since the last wait, or until `end`.
    void Wait(std::optional<Time> end)
    {
        std::unique_lock lock(mutex_);
        const auto isRaised = [this] { return isRaised_; };
        if (end)
            raised_.wait_until(lock, *end, isRaised);
        else
            raised_.wait(lock, isRaised);
        isRaised_ = false;
    }

private:
    std::mutex mutex_;
    std::condition_variable raised_;
    bool isRaised_ = false;
};

} // namespace simulator
