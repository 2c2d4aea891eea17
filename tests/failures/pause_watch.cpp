#include "failures/pause_watch.h"

#include <algorithm>

#include "failures/allocation_faults.h"

void PauseWatch::Watch(const std::stop_token& stop)
{
    using namespace std::chrono;
    constexpr milliseconds kBeat(10);
    allocation_faults::SpareThisThread();
    for (auto last = steady_clock::now(); !stop.stop_requested();) {
        std::this_thread::sleep_for(kBeat);
        const auto now = steady_clock::now();
        longest_ = std::max(longest_.load(), duration_cast<milliseconds>(now - last).count());
        last = now;
    }
}
