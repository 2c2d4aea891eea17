// Control lines at work: a script's, those that somebody types or sends, and what is due at a time, until one of them
// ends it. Run() works on the calling thread; Take() and Stop() may be called from any other.
#pragma once

#include "simulator/script/line_queue.h"

#include <cstdint>
#include <deque>
#include <functional>
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
    // After it, until Stop(): whoever gives a line is told `why` it is not carried out.
    void Refuse(const std::string& why);

    // A line without its end. One that finds no room, as too many wait, is reported.
    void Take(std::string line);
    // Called on the thread at work once the lines taken before have been carried out.
    void Take(std::function<void()> turn);
    // The end, for which a script that is not done is told `why`.
    void Stop(std::string why);

private:
    struct Taken
    {
        Place place{};
        std::string text{};
        std::function<void()> turn{}; // instead of a line
    };

    std::optional<Taken> Next();
    bool IsStopped();
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

    std::mutex mutex_; // of what other threads say
    Place place_;
    std::deque<Taken> taken_;
    std::size_t takenBytes_ = 0;
    bool isFull_ = false; // until none of them is left
    std::optional<std::string> stopped_;
};

} // namespace simulator
