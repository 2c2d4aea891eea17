// Control lines from one place, carried out one after the other as far as they need not wait.
// Used by phnsim for its script and for its standard input.
#pragma once

#include "simulator/script/control.h"

#include <chrono>
#include <deque>
#include <istream>
#include <optional>
#include <string>

namespace simulator {

class LineQueue
{
public:
    explicit LineQueue(Control& control) : control_(control) {}

    // What cannot be read is reported, and not queued.
    void Add(const Place& place, const std::string& text);
    void Add(const Place& place, const ControlLine& line) { lines_.push_back({place, {}, line}); }
    // All lines of a script, called `file`; throws std::runtime_error when it cannot be read.
    void AddAll(std::istream& script, const std::string& file);

    // Carries out what can be carried out now.
    void Advance();
    bool IsDone() const { return lines_.empty() && !Waits(); }
    // For the host, which has not done it yet.
    bool WaitsForHost() const;
    // Reports that the line which waits, or would be next, waits in vain.
    void GiveUp(const std::string& why);

    // When the time that the last line waits for is over.
    std::optional<std::chrono::steady_clock::time_point> Due() const { return due_; }

private:
    struct Queued
    {
        Place place{};
        std::string text{};
        ControlLine line{};
    };

    bool Waits() const;

    Control& control_;
    std::deque<Queued> lines_;
    Queued last_; // carried out, perhaps waiting
    std::optional<std::chrono::steady_clock::time_point> due_;
};

} // namespace simulator
