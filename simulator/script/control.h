// The control lines of phnsim: one line of text in, one answer out, on standard input and in scripts.
// A new control line is one row of the table in control.cpp.
#pragma once

#include "simulator/lines/simulator.h"
#include "simulator/script/history.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace simulator {

// Where a line stands.
struct Place
{
    std::string file;
    unsigned line = 0;
    bool isStrict = false; // what is wrong ends phnsim
};

struct Control;

inline constexpr std::size_t kLongestControlLine = 65536;

// A line that has been read: what it does, and what the lines behind it wait for.
struct ControlLine
{
    ControlLine() = default;
    ControlLine(std::function<void(Control& control)> action) : run(std::move(action)) {}

    std::function<void(Control& control)> run = [](Control&) {};
    bool isRepeatable = true;  // may stand behind "after" and "every"
    bool needsHandset = false; // the simulated one
    std::chrono::milliseconds pause{0};
    std::uint32_t deed = 0; // as in history.h, so often
    std::uint64_t count = 0;
};

struct Timer
{
    Place place;
    ControlLine line;
    std::chrono::milliseconds period;
    std::chrono::steady_clock::time_point due;
};

struct Control
{
    Simulator& simulator;
    History& history;
    Wakeup& wakeup;         // raised for what the loop has to look at: what the host did, the members below
    std::string dataFile;   // where "save" and "load" go when no file is named
    bool hasHandset = true; // not a recording's, nor one behind another port
    std::function<void(std::string_view)> print;
    Handset::TraceSink trace; // where "trace on" sends the frames
    std::vector<Timer> timers{};
    std::atomic<bool> isOver = false;     // may be set on any thread
    std::mutex mutex{};                   // of what follows
    std::vector<std::string> posted{};    // lines to be carried out
    std::optional<std::string> failure{}; // the first one; where it is a line's, at a strict place, which it names

    void End();
    void Fail(const std::string& sentence);
    std::optional<std::string> Failure();
    // A line to be carried out behind those posted before, on any thread; false when too many of them wait.
    bool Post(const std::string& line);
    std::vector<std::string> TakePosted();
    // Prints "error: ...", or ends in failure.
    void Report(const Place& place, const std::string& wrong);
};

// Throws std::invalid_argument, as does the line when it is run: that, or another std::exception. A line without words
// does nothing.
ControlLine ParseControlLine(std::string_view line, const Place& place);

// Reports what goes wrong.
void RunControlLine(Control& control, const ControlLine& line, const Place& place);

} // namespace simulator
