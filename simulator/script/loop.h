// Control lines at work: a script's, those that somebody types or sends, and what is due at a time, until one of them
// ends it. Run() works on the calling thread; Take() and Stop() may be called from any other.
#pragma once

#include "simulator/script/line_queue.h"

#include <cstdint>
#include <deque>
#include <mutex>
#include <optional>
#include <string>

namespace simulator {

class Loop
{
public:
    // `input` is the place of the lines taken; the host's closing of the port is the end, after so
    // many of them; 0: it is not.
    Loop(Control& control, Place input, std::uint64_t closings)
        : control_(control),
          closings_(closings),
          script_(control),
          input_(control),
          posted_(control),
          place_(std::move(input))
    {
    }

    LineQueue& Script() { return script_; }
    // Until the end, which control.failure tells when it is one.
    void Run();

    // A line without its end.
    void Take(std::string line);
    // The end, for which a script that is not done is told `why`.
    void Stop(std::string why);

private:
    void RunTimers();
    void TakeInput();
    void TakePosted();
    void EndOnceHostIsGone();
    void EndWhenStopped();
    std::optional<Wakeup::Time> Due() const;

    Control& control_;
    const std::uint64_t closings_;
    LineQueue script_;
    LineQueue input_;
    LineQueue posted_;
    Place place_;

    std::mutex mutex_; // of what other threads say
    std::deque<std::string> taken_;
    std::optional<std::string> stopped_;
};

} // namespace simulator
