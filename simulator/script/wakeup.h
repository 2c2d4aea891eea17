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
        isWaiting_ = true;
        waiting_.notify_all();
        const auto isRaised = [this] { return isRaised_; };
        if (end)
            raised_.wait_until(lock, *end, isRaised);
        else
            raised_.wait(lock, isRaised);
        isRaised_ = isWaiting_ = false;
    }

    // Until all that it was raised for is done, at most for so long. On any other thread.
    void WaitUntilServed(std::chrono::milliseconds limit)
    {
        std::unique_lock lock(mutex_);
        waiting_.wait_for(lock, limit, [this] { return isWaiting_ && !isRaised_; });
    }

private:
    std::mutex mutex_;
    std::condition_variable raised_;
    std::condition_variable waiting_;
    bool isRaised_ = false;
    bool isWaiting_ = false;
};

} // namespace simulator
